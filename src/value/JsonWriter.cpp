#include "value/JsonWriter.h"

#include <cmath>
#include <limits>
#include <vector>

#include "value/Limits.h"

namespace Mero {

namespace {

// Walks a value depth-first without recursion and tells the writer what it
// meets. A Writer provides:
//   bool accepts(const Value&)                      whether a child is written at all
//   void beginChild(bool first, const std::string* key)  before an accepted child
//   void endChild()                                 after it (a container: after its close)
//   void leaf(const Value&), openArray(), closeArray(), openObject(), closeObject()
//   bool full() const                                whether to stop here
// Arrays and objects may be shared, so a small value can stand for an
// enormous text: the writer's `full` is what bounds the walk.
template <typename Writer>
void walk(const Value& root, Writer& writer)
{
    struct Frame {
        const ValueArray* array;
        size_t index;
        ValueObject::const_iterator member;
        ValueObject::const_iterator membersEnd;
        bool wroteAny;
    };
    std::vector<Frame> stack;
    const Value* next = &root;

    while (!writer.full()) {
        if (next != nullptr) {
            if (next->is(Kind::Array)) {
                writer.openArray();
                stack.push_back({&next->array(), 0, {}, {}, false});
            } else if (next->is(Kind::Object)) {
                writer.openObject();
                const ValueObject& object = next->object();
                stack.push_back({nullptr, 0, object.begin(), object.end(), false});
            } else {
                writer.leaf(*next);
                if (!stack.empty()) {
                    writer.endChild();
                }
            }
            next = nullptr;
        }
        if (stack.empty()) {
            return;
        }

        Frame& frame = stack.back();
        const Value* child = nullptr;
        const std::string* key = nullptr;
        if (frame.array != nullptr && frame.index < frame.array->size()) {
            child = &(*frame.array)[frame.index++];
        } else if (frame.array == nullptr && frame.member != frame.membersEnd) {
            key = &frame.member->first;
            child = &frame.member->second;
            ++frame.member;
        }

        if (child == nullptr) {
            frame.array != nullptr ? writer.closeArray() : writer.closeObject();
            stack.pop_back();
            if (!stack.empty()) {
                writer.endChild();
            }
        } else if (writer.accepts(*child)) {
            writer.beginChild(!frame.wroteAny, key);
            frame.wroteAny = true;
            next = child;
        }
    }
}

struct JsonTextWriter {
    std::string out;
    std::size_t maxBytes;

    bool full() const { return out.size() > maxBytes; }

    bool accepts(const Value& child) const { return !child.isNull(); }
    void beginChild(bool first, const std::string* key)
    {
        if (!first) {
            out += ',';
        }
        if (key != nullptr) {
            writeString(*key);
            out += ':';
        }
    }
    void endChild() {}
    void openArray() { out += '['; }
    void closeArray() { out += ']'; }
    void openObject() { out += '{'; }
    void closeObject() { out += '}'; }

    void leaf(const Value& value)
    {
        switch (value.kind()) {
        case Kind::Null: out += "null"; break;
        case Kind::Number: writeNumber(value.number()); break;
        case Kind::String: writeString(value.string()); break;
        case Kind::Boolean: out += value.boolean() ? "true" : "false"; break;
        default: break;  // callbacks and completions write nothing
        }
    }

    // JSON has no NaN or infinity.
    void writeNumber(double number)
    {
        if (std::isfinite(number)) {
            out += numberToString(number);
        } else {
            out += "null";
        }
    }

    // Quotes, backslashes and control characters are escaped; every other
    // byte, "/" and UTF-8 included, is written as it is.
    void writeString(const std::string& text)
    {
        out += '"';
        const char* run = text.data();
        const char* end = run + text.size();
        for (const char* p = run; p < end; ++p) {
            const auto byte = static_cast<unsigned char>(*p);
            if (byte >= 0x20 && byte != '"' && byte != '\\') {
                continue;
            }
            out.append(run, p);
            run = p + 1;
            writeEscape(byte);
        }
        out.append(run, end);
        out += '"';
    }

    void writeEscape(unsigned char byte)
    {
        static constexpr char kHex[] = "0123456789abcdef";
        switch (byte) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\b': out += "\\b"; break;
        case '\f': out += "\\f"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            out += "\\u00";
            out += kHex[byte >> 4];
            out += kHex[byte & 0xF];
            break;
        }
    }
};

struct StreamTextWriter {
    std::ostream& out;
    std::size_t written = 0;  // about: numbers count 8

    bool full() const { return written > Limits::kMaxStringBytes; }

    bool accepts(const Value&) const { return true; }
    void beginChild(bool, const std::string* key)
    {
        if (key != nullptr) {
            out << *key << ':';
        }
    }
    void endChild() { out << ','; }
    void openArray() { out << '['; }
    void closeArray() { out << ']'; }
    void openObject() { out << '{'; }
    void closeObject() { out << '}'; }

    void leaf(const Value& value)
    {
        written += value.is(Kind::String) ? value.string().size() + 1 : 8;
        switch (value.kind()) {
        case Kind::Null: out << "null"; break;
        case Kind::Number: out << value.number(); break;
        case Kind::String: out << value.string(); break;
        case Kind::Boolean: out << (value.boolean() ? "true" : "false"); break;
        case Kind::Callback: out << "callback"; break;
        default: break;  // completions write nothing
        }
    }
};

}  // namespace

std::optional<std::string> toJsonString(const Value& value, std::size_t maxBytes)
{
    JsonTextWriter writer{{}, maxBytes};
    walk(value, writer);
    if (writer.full()) {
        return std::nullopt;
    }
    return std::move(writer.out);
}

std::string toJsonString(const Value& value)
{
    return *toJsonString(value, std::numeric_limits<std::size_t>::max());
}

std::ostream& operator<<(std::ostream& stream, const Value& value)
{
    StreamTextWriter writer{stream};
    walk(value, writer);
    return stream;
}

}  // namespace Mero
