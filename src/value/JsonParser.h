// JsonParser: reads JSON text into a Value whose root is always an object.
//
// Lenient and non-recursive: it keeps an explicit stack of the containers
// that are open instead of calling itself, so nesting depth costs heap, not
// stack. What it accepts beyond strict JSON is deliberate (templates depend on
// it): commas are optional, "]" closes objects too, duplicate keys keep the
// first value, literals are recognised by their first letter, numbers have no
// exponent, and the first unexpected token ends the parse keeping what was
// read.
#pragma once

#include <deque>
#include <string_view>
#include <vector>

#include "value/Value.h"

namespace Mero {

class JsonParser {
public:
    enum class Token {
        End = 0,
        ObjectOpen = 1,
        ObjectClose = 2,
        ArrayOpen = 3,
        ArrayClose = 4,
        String = 5,
        Number = 6,
        True = 7,
        False = 8,
        Null = 9,
        Comma = 10,
        Colon = 11,
        Error = 12,
    };

    // Reads [begin, end) into root(). Never reads at or past end. Errors go
    // through reportError, so they throw while debugMode is set; a lone "-"
    // or an out-of-range number throws std::invalid_argument or
    // std::out_of_range as the standard conversion does.
    void parse(const char* begin, const char* end);
    void parse(std::string_view text) { parse(text.data(), text.data() + text.size()); }

    Value& root() { return root_; }

    // Convenience: parse a whole text and hand back its root.
    static Value read(std::string_view text);

private:
    Token peek();
    void step();
    std::string readString();
    std::string readEscapedString();
    double readNumber();
    void skipLiteral(size_t length);
    bool readMember(Value& top);
    bool readValue(Value& top, std::string key);
    void storeValue(Value& top, std::string key, Value value);

    Value root_ = Value(Kind::Object);
    std::vector<Value*> stack_;
    // Stands in for a duplicate key whose first value is not a container:
    // the later container's members are read into it and dropped.
    std::deque<Value> scratch_;
    const char* begin_ = nullptr;
    const char* end_ = nullptr;
    const char* cursor_ = nullptr;
};

}  // namespace Mero
