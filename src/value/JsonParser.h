// JsonParser: reads JSON text into a Value whose root is always an object.
//
// Every valid JSON text is read to the value a strict parser gives: escapes
// (\uXXXX and surrogate pairs included) are decoded to UTF-8, numbers follow
// the whole grammar and are converted exactly, whatever the locale. Beyond
// that it is lenient, deliberately (templates depend on it): commas are
// optional, "]" closes objects too, duplicate keys keep the first value,
// literals are recognised by their first letter, and the first unexpected
// token ends the parse keeping what was read.
//
// Non-recursive: it keeps an explicit stack of the containers that are open
// instead of calling itself, so nesting depth costs heap, not stack.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "value/RepeatedObjects.h"
#include "value/Value.h"

namespace Mero {

class JsonParser {
public:
    // What the first byte of a token makes it.
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
    // throws std::invalid_argument and a number beyond a double's range
    // std::out_of_range, as the standard conversion does.
    void parse(const char* begin, const char* end);
    void parse(std::string_view text) { parse(text.data(), text.data() + text.size()); }

    Value& root() { return root_; }

    // A quiet parser reports nothing: for a text read before, whose errors
    // have been reported once already. What it reads is the same.
    void setQuiet() { quiet_ = true; }
    // Whether the last parse met an error, reported or not.
    bool reported() const { return reported_; }

    // Members of the root whose key is not in `keys` are read, checked and
    // reported like any other, but not kept. Null (the default) keeps all.
    using KeySet = std::set<std::string, std::less<>>;
    void keepRootMembers(const KeySet* keys) { rootKeys_ = keys; }

    // An object written again byte for byte (under a new key, or as an
    // array's element) is shared with the first one read instead of being
    // read again (see RepeatedObjects). Only for a text whose Values nothing
    // changes in place (a template's). An object read after an error is not
    // remembered.
    void shareRepeatedObjects() { repeated_.emplace(); }

    // What a parse that kept only some root members left out: the text of
    // those members as it was, and every root key in the order it first came.
    struct LeftOut {
        std::string text;
        std::vector<std::string> order;
        bool empty() const { return text.empty(); }
        bool operator==(const LeftOut&) const = default;
    };
    // Right after such a parse, while its text is still there.
    LeftOut leftOut() const;
    // Adds to `into`, in the order of the text, what a whole parse would have
    // given of the root that `leftOut` describes: members that `into` lacks
    // are taken from `kept` (the members kept, as they are now) or else read
    // again, quietly, from the text left out.
    static void restoreRoot(const ValueObject& kept, const LeftOut& leftOut, ValueObject& into);

    // Convenience: parse a whole text and hand back its root.
    static Value read(std::string_view text);

private:
    // What becomes of the members of an open container.
    enum class Members : uint8_t {
        Kept,
        Dropped,  // read and checked, kept nowhere
        KeptIfNamed,  // the root's, when only some are kept
    };
    // One open container; exactly one of the two is set. They point at the
    // shared container itself, which never moves while it is being filled;
    // a dropped one's at dropObject_ or dropArray_, which stay empty, so that
    // it still reads as an object or an array.
    struct Frame {
        ValueObject* object;
        ValueArray* array;
        Members members = Members::Kept;
        // One bit per key stored in `object` (keyBit): a key whose bit is
        // clear is certainly not there yet, and goes in without a search.
        // All set when the object had members before the frame opened.
        uint64_t keyBits = 0;
        // The '{' of an object that may be shared (shareRepeatedObjects): a
        // new member of its parent, opened by the plain reading. Else null.
        const char* openedAt = nullptr;
        RepeatedObjects::Probe probe = {};  // what finding it learnt, for remembering it
    };

    Token peek();
    void step();
    void readPlainMembers();
    const char* readPlainValue(Frame& top, std::string_view key, const char* p);
    bool readMember(Frame& top, Token token);
    bool readRootMember(Frame& top, std::string_view key, Token token, const char* start);
    template <bool Keep>
    bool readValue(Frame& top, std::string_view key, Token token);
    template <typename... Args>
    Value& store(Frame& top, std::string_view key, Args&&... args);
    void open(Frame& top, std::string_view key, Kind kind);
    std::string_view readString(std::string& buffer);
    std::string_view readEscapedString(const char* start, std::string& buffer);
    void readUnicodeEscape(std::string& buffer);
    double readNumber();
    void skipLiteral(size_t length);
    bool skipStrictContainer();
    void report(std::string_view message) const;

    void close();
    void rememberObject(const Frame& top, const char* close);

    Value root_ = Value(Kind::Object);
    std::vector<Frame> stack_;
    // Per depth, the size of the last object and array closed there: siblings
    // tend to have the same shape, so a new container reserves that much and
    // is usually filled without growing.
    std::vector<std::pair<uint32_t, uint32_t>> sizeHints_;
    // Containers read under a duplicate key whose first value cannot take
    // them: their members are read and dropped with the parser.
    std::vector<Value> scratch_;
    // Where keys and strings that hold escapes are decoded.
    std::string keyBuffer_;
    std::string textBuffer_;
    const char* end_ = nullptr;
    const char* cursor_ = nullptr;
    bool quiet_ = false;
    mutable bool reported_ = false;
    bool skipMissed_ = false;
    const KeySet* rootKeys_ = nullptr;
    // Made only for a reader that shares: events read a small payload each.
    std::optional<RepeatedObjects> repeated_;
    // While only some root members are kept: where each began in the text,
    // under which key, whether it was kept; and where the root ended.
    struct RootMember {
        std::string key;
        size_t start;
        bool kept;
    };
    std::vector<RootMember> rootMembers_;
    const char* begin_ = nullptr;
    size_t rootEnd_ = 0;
    static ValueObject dropObject_;
    static ValueArray dropArray_;
};

}  // namespace Mero
