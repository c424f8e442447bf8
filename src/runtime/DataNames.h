// DataNames: the members of the business data a template can read. Script
// reads data only through data reads ("$" 19), each naming one member, or the
// whole of it by the name "$root"; so a member that no data read of the
// template names can never be read, and need not be kept.
#pragma once

#include "value/JsonParser.h"
#include "value/Value.h"

namespace Mero {

struct DataNames {
    bool all = false;  // "$root" is read: every member can be
    JsonParser::KeySet names;

    // Adds the name of every data read anywhere in `tree`, script or not:
    // naming more than is read only keeps more.
    void addReadsIn(const Value& tree);
};

}  // namespace Mero
