#include "check/PositionedJson.h"

#include <charconv>
#include <cstring>

#include "value/Utf8.h"

namespace Mero::Check {

const JsonNode* JsonNode::member(std::string_view key) const
{
    for (const auto& [name, value] : members) {
        if (name == key) {
            return &value;
        }
    }
    return nullptr;
}

Position JsonNode::keyPosition(std::string_view key) const
{
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (members[i].first == key) {
            return keyPositions[i];
        }
    }
    return at;
}

namespace {

// The word in double quotes. Appended rather than concatenated: GCC 12
// warns, falsely, of an overlapping copy in "\"" + std::string at -O3.
std::string quoted(std::string_view word)
{
    std::string text;
    text.reserve(word.size() + 2);
    text += '"';
    text += word;
    text += '"';
    return text;
}

// Deep enough for any template; a deeper text is refused, not recursed into.
constexpr int kMaxDepth = 256;

class Reader {
public:
    explicit Reader(std::string_view text) : text_(text) {}

    ReadResult read()
    {
        ReadResult result;
        skipSpace();
        if (atEnd()) {
            fail("the text is empty");
        } else {
            result.root = value(0);
            skipSpace();
            if (!failed_ && !atEnd()) {
                report(error(position(), "text after the end of the JSON value (the engine ignores it)"));
            }
        }
        result.complete = !failed_;
        result.findings = std::move(findings_);
        return result;
    }

private:
    JsonNode value(int depth)
    {
        JsonNode node;
        node.at = position();
        if (depth > kMaxDepth) {
            fail("nesting deeper than " + std::to_string(kMaxDepth) + " levels");
            return node;
        }
        if (atEnd()) {
            truncated();
            return node;
        }
        const char c = peek();
        if (c == '{') {
            node.kind = JsonNode::Kind::Object;
            object(node, depth);
        } else if (c == '[') {
            node.kind = JsonNode::Kind::Array;
            array(node, depth);
        } else if (c == '"') {
            node.kind = JsonNode::Kind::String;
            node.text = string();
        } else if (c == '-' || (c >= '0' && c <= '9')) {
            node.kind = JsonNode::Kind::Number;
            node.number = number();
        } else if (c >= 'a' && c <= 'z') {
            literal(node);
        } else {
            fail(std::string("unexpected ") + describe(c));
        }
        return node;
    }

    void object(JsonNode& node, int depth)
    {
        ++at_;
        bool first = true;
        while (nextEntry('}', first)) {
            if (peek() != '"') {
                return fail("a member name (a string in double quotes) expected, found " + describe(peek()));
            }
            const Position keyAt = position();
            std::string key = string();
            skipSpace();
            if (atEnd()) {
                return truncated();
            }
            if (peek() != ':') {
                return fail("':' expected after the member name \"" + key + "\"");
            }
            ++at_;
            skipSpace();
            JsonNode member = value(depth + 1);
            keep(node, std::move(key), keyAt, std::move(member));
        }
    }

    void keep(JsonNode& object, std::string key, Position keyAt, JsonNode member)
    {
        for (std::size_t i = 0; i < object.members.size(); ++i) {
            if (object.members[i].first == key) {
                const Position first = object.keyPositions[i];
                report(warning(keyAt, "duplicate key \"" + key + "\": the engine keeps the first value (line " +
                                          std::to_string(first.line) + ")"));
                return;
            }
        }
        object.members.push_back({std::move(key), std::move(member)});
        object.keyPositions.push_back(keyAt);
    }

    void array(JsonNode& node, int depth)
    {
        ++at_;
        bool first = true;
        while (nextEntry(']', first)) {
            node.items.push_back(value(depth + 1));
        }
    }

    // Moves to the next entry of a container: false when it closes (or the
    // text fails), true at the start of an entry, commas and their faults
    // dealt with.
    bool nextEntry(char closer, bool& first)
    {
        while (!failed_) {
            skipSpace();
            if (atEnd()) {
                truncated();
                return false;
            }
            if (peek() == closer) {
                ++at_;
                return false;
            }
            if (!first && !separator(closer)) {
                continue;
            }
            first = false;
            skipSpace();
            if (atEnd()) {
                truncated();
                return false;
            }
            return true;
        }
        return false;
    }

    // Between two entries: a comma, which the engine does not require. False
    // when the container closes right after the comma (a trailing comma).
    bool separator(char closer)
    {
        if (peek() != ',') {
            report(error(position(), "missing comma (the engine reads on without it)"));
            return true;
        }
        const Position comma = position();
        ++at_;
        skipSpace();
        if (!atEnd() && peek() == closer) {
            report(error(comma, "trailing comma"));
            return false;
        }
        return true;
    }

    void literal(JsonNode& node)
    {
        const Position start = position();
        const std::size_t begin = at_;
        while (!atEnd() && peek() >= 'a' && peek() <= 'z') {
            ++at_;
        }
        const std::string_view word = text_.substr(begin, at_ - begin);
        if (word == "true" || word == "false") {
            node.kind = JsonNode::Kind::Boolean;
            node.boolean = word == "true";
            return;
        }
        if (word == "null") {
            return;
        }
        const char first = word.front();
        if (first == 't' || first == 'f' || first == 'n') {
            // The engine knows a literal by its first letter.
            node.kind = first == 'n' ? JsonNode::Kind::Null : JsonNode::Kind::Boolean;
            node.boolean = first == 't';
            const char* meant = first == 't' ? "true" : first == 'f' ? "false" : "null";
            report(error(start, quoted(word) + " is not a JSON literal (the engine reads it as " + meant + ")"));
            return;
        }
        at_ = begin;
        fail("unexpected " + quoted(word));
    }

    double number()
    {
        const Position start = position();
        const std::size_t begin = at_;
        auto digits = [this] {
            std::size_t count = 0;
            while (!atEnd() && peek() >= '0' && peek() <= '9') {
                ++at_;
                ++count;
            }
            return count;
        };
        bool valid = true;
        if (peek() == '-') {
            ++at_;
        }
        const std::size_t integerStart = at_;
        const std::size_t integerDigits = digits();
        valid = integerDigits > 0 && !(integerDigits > 1 && text_[integerStart] == '0');
        if (!atEnd() && peek() == '.') {
            ++at_;
            valid = digits() > 0 && valid;
        }
        if (!atEnd() && (peek() == 'e' || peek() == 'E')) {
            ++at_;
            if (!atEnd() && (peek() == '+' || peek() == '-')) {
                ++at_;
            }
            valid = digits() > 0 && valid;
        }
        const std::string_view spelled = text_.substr(begin, at_ - begin);
        if (!valid) {
            report(error(start, quoted(spelled) + " is not a JSON number"));
        }
        double parsed = 0.0;
        std::from_chars(spelled.data(), spelled.data() + spelled.size(), parsed);
        return parsed;
    }

    std::string string()
    {
        ++at_;
        std::string out;
        while (true) {
            if (atEnd()) {
                truncated();
                return out;
            }
            const auto c = static_cast<unsigned char>(text_[at_]);
            if (c == '"') {
                ++at_;
                return out;
            }
            if (c < 0x20) {
                report(error(position(), "a raw control character in a string (write it as an escape)"));
            }
            if (c == '\\') {
                escape(out);
                continue;
            }
            out += static_cast<char>(c);
            ++at_;
            if (c == '\n') {
                newLine();
            }
        }
    }

    void escape(std::string& out)
    {
        const Position start = position();
        ++at_;
        if (atEnd()) {
            return;
        }
        const char c = text_[at_++];
        switch (c) {
        case '"': out += '"'; return;
        case '\\': out += '\\'; return;
        case '/': out += '/'; return;
        case 'b': out += '\b'; return;
        case 'f': out += '\f'; return;
        case 'n': out += '\n'; return;
        case 'r': out += '\r'; return;
        case 't': out += '\t'; return;
        case 'u': {
            uint32_t unit = 0;
            if (at_ + 4 > text_.size() ||
                std::from_chars(text_.data() + at_, text_.data() + at_ + 4, unit, 16).ptr != text_.data() + at_ + 4) {
                report(error(start, "a \\u escape needs four hex digits"));
                return;
            }
            at_ += 4;
            appendUtf8(out, unit);
            return;
        }
        default: report(error(start, std::string("unknown escape \\") + c)); return;
        }
    }

    void skipSpace()
    {
        while (!atEnd()) {
            const char c = text_[at_];
            if (c == '\n') {
                ++at_;
                newLine();
            } else if (c == ' ' || c == '\t' || c == '\r') {
                ++at_;
            } else {
                return;
            }
        }
    }

    void newLine()
    {
        ++line_;
        lineStart_ = at_;
    }

    Position position() const
    {
        return {line_, static_cast<uint32_t>(at_ - lineStart_ + 1)};
    }

    static std::string describe(char c)
    {
        return std::string("'") + c + "'";
    }

    void truncated()
    {
        fail("the text ends before the JSON value is complete (the engine keeps what it read)");
    }

    void fail(std::string message)
    {
        if (!failed_) {
            report(error(position(), std::move(message)));
        }
        failed_ = true;
    }

    void report(Finding finding) { findings_.push_back(std::move(finding)); }

    bool atEnd() const { return at_ >= text_.size(); }
    char peek() const { return text_[at_]; }

    std::string_view text_;
    std::size_t at_ = 0;
    uint32_t line_ = 1;
    std::size_t lineStart_ = 0;
    bool failed_ = false;
    std::vector<Finding> findings_;
};

}  // namespace

ReadResult readPositionedJson(std::string_view text)
{
    return Reader(text).read();
}

}  // namespace Mero::Check
