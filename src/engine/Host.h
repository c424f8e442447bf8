// Host: what an engine instance needs of the app that embeds it, beyond the
// services script calls (runtime/RuntimeServices.h): the card's views, and a
// line in the host's log. The bridge implements it over JNI; tests and tools
// implement it in C++. The engine never includes the bridge.
#pragma once

#include <string>

#include "render/ViewHost.h"

namespace Mero {

class Host : public ViewHost {
public:
    // Whether the host may still be called; false once the instance that
    // holds it has been released.
    virtual bool attached() const = 0;

    // A line in the host's log, under the bridge's own tag.
    virtual void logLine(const std::string& text) = 0;
};

}  // namespace Mero
