// JSON with object keys sorted, so tests can compare whole values whatever
// order their members were inserted in. Null members are written (unlike
// toJsonString), so a test sees every member that was read.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "value/Value.h"

namespace MeroTest {

inline std::string canonicalJson(const Mero::Value& value)
{
    using Mero::Kind;
    switch (value.kind()) {
    case Kind::Null: return "null";
    case Kind::Number: return Mero::numberToString(value.number());
    case Kind::String: return "\"" + value.string() + "\"";
    case Kind::Boolean: return value.boolean() ? "true" : "false";
    case Kind::Array: {
        std::string out = "[";
        for (const Mero::Value& element : value.array()) {
            out += (out.size() > 1 ? "," : "") + canonicalJson(element);
        }
        return out + "]";
    }
    case Kind::Object: {
        std::vector<std::string> keys;
        for (const auto& member : value.object()) {
            keys.push_back(member.first);
        }
        std::sort(keys.begin(), keys.end());
        std::string out = "{";
        for (const std::string& key : keys) {
            out += (out.size() > 1 ? ",\"" : "\"") + key + "\":" + canonicalJson(value.object().at(key));
        }
        return out + "}";
    }
    case Kind::Callback: return "callback";
    default: return "<kind " + std::to_string(value.kindNumber()) + ">";
    }
}

}  // namespace MeroTest
