#include "runtime/DataNames.h"

#include <vector>

namespace Mero {

void DataNames::addReadsIn(const Value& tree)
{
    // Iterative: a template's nesting costs heap here, not stack.
    std::vector<const Value*> waiting{&tree};
    while (!waiting.empty()) {
        const Value& node = *waiting.back();
        waiting.pop_back();
        if (node.is(Kind::Array)) {
            for (const Value& element : node.array()) {
                waiting.push_back(&element);
            }
            continue;
        }
        if (!node.is(Kind::Object)) {
            continue;
        }
        // Read as the script factory reads a node's code and name.
        if (memberOf(node, "$").number() == 19) {
            const std::string& name = memberOf(node, "n").string();
            all = all || name == "$root";
            names.insert(name);
        }
        for (const auto& [key, value] : node.object()) {
            waiting.push_back(&value);
        }
    }
}

}  // namespace Mero
