#include "bridge/HostLink.h"

namespace Mero {

void HostLinkDeleter::operator()(HostLink* link) const noexcept
{
    // The global reference is deleted by releaseInstance, with the
    // environment of that call; nothing here may call into Java.
    delete link;
}

}  // namespace Mero
