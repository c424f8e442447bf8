#include "value/JsonParser.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "value/ErrorReporting.h"
#include "value/Utf8.h"

namespace Mero {

namespace {

using Token = JsonParser::Token;

// Containers nested deeper than this get no size hint (real texts are shallow;
// a hostile one must not make the hints as long as its nesting).
constexpr size_t kHintedDepth = 64;

// The lexer's table: a token's first byte and what it makes. Every other
// byte is an error token; a digit or "-" starts a number.
struct TokenStart {
    char byte;
    Token token;
};
constexpr TokenStart kTokenStarts[] = {
    {'{', Token::ObjectOpen}, {'}', Token::ObjectClose}, {'[', Token::ArrayOpen}, {']', Token::ArrayClose},
    {'"', Token::String},     {'t', Token::True},        {'f', Token::False},     {'n', Token::Null},
    {',', Token::Comma},      {':', Token::Colon},       {'-', Token::Number},    {'\0', Token::End},
};

constexpr std::array<Token, 256> kTokenOfByte = [] {
    std::array<Token, 256> table{};
    table.fill(Token::Error);
    for (const TokenStart& start : kTokenStarts) {
        table[static_cast<unsigned char>(start.byte)] = start.token;
    }
    for (char digit = '0'; digit <= '9'; ++digit) {
        table[static_cast<unsigned char>(digit)] = Token::Number;
    }
    return table;
}();

bool isWhitespace(char c)
{
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

int hexDigit(char c)
{
    if (isDigit(c)) {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// The first '"' or '\' in [p, end), or end. Eight bytes at a time where it
// can: most strings are plain text without either.
const char* findQuoteOrBackslash(const char* p, const char* end)
{
#if defined(__SSE2__)
    // Sixteen bytes in one compare: most keys fit, whole.
    const __m128i quote = _mm_set1_epi8('"');
    const __m128i backslash = _mm_set1_epi8('\\');
    while (end - p >= 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const auto hits = static_cast<unsigned>(
            _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(bytes, quote), _mm_cmpeq_epi8(bytes, backslash))));
        if (hits != 0) {
            return p + std::countr_zero(hits);
        }
        p += 16;
    }
#endif
    if constexpr (std::endian::native == std::endian::little) {
        constexpr uint64_t ones = 0x0101010101010101u;
        constexpr uint64_t highs = 0x8080808080808080u;
        while (end - p >= 8) {
            uint64_t word;
            std::memcpy(&word, p, 8);
            const uint64_t quotes = word ^ (ones * '"');
            const uint64_t backslashes = word ^ (ones * '\\');
            // A byte equal to the one sought becomes zero; the lowest zero
            // byte lights its high bit exactly (higher ones may be false hits).
            const uint64_t hits = (((quotes - ones) & ~quotes) | ((backslashes - ones) & ~backslashes)) & highs;
            if (hits != 0) {
                return p + (std::countr_zero(hits) >> 3);
            }
            p += 8;
        }
    }
    while (p < end && *p != '"' && *p != '\\') {
        ++p;
    }
    return p;
}

// The four hex digits at p as a number, or -1.
int32_t hexQuad(const char* p, const char* end)
{
    if (end - p < 4) {
        return -1;
    }
    int32_t value = 0;
    for (int i = 0; i < 4; ++i) {
        const int digit = hexDigit(p[i]);
        if (digit < 0) {
            return -1;
        }
        value = value * 16 + digit;
    }
    return value;
}

// Past the string that starts at p (on its opening quote), when its escapes
// are all ones a strict parser takes; else null.
const char* pastStrictString(const char* p, const char* end)
{
    p = findQuoteOrBackslash(p + 1, end);
    while (p < end && *p == '\\') {
        if (end - p < 2) {
            return nullptr;
        }
        switch (p[1]) {
        case '"': case '\\': case '/': case 'b': case 'f': case 'n': case 'r': case 't': p += 2; break;
        case 'u':
            if (hexQuad(p + 2, end) < 0) {
                return nullptr;
            }
            p += 6;
            break;
        default: return nullptr;
        }
        p = findQuoteOrBackslash(p, end);
    }
    return p < end ? p + 1 : nullptr;
}

// Past the number that starts at p, when it converts without a doubt: digits
// and points after an optional "-" and a digit, not long enough to leave a
// double's range. Else null. (An exponent stops it short: what follows is no
// separator, so the skip misses.)
const char* pastPlainNumber(const char* p, const char* end)
{
    const char* start = p;
    p += *p == '-' ? 1 : 0;
    if (p == end || !isDigit(*p)) {
        return nullptr;
    }
    while (p < end && (isDigit(*p) || *p == '.')) {
        ++p;
    }
    constexpr std::ptrdiff_t kLongest = 300;
    return p - start <= kLongest ? p : nullptr;
}

// Past the literal at p when it is spelled out whole; else null.
const char* pastLiteral(const char* p, const char* end)
{
    for (std::string_view literal : {"true", "false", "null"}) {
        if (literal[0] == *p) {
            const auto left = static_cast<size_t>(end - p);
            return left >= literal.size() && std::string_view(p, literal.size()) == literal ? p + literal.size()
                                                                                            : nullptr;
        }
    }
    return nullptr;
}

// Past the whitespace at p, a byte at a time: for the skip of a data set's
// members, whose text is mostly compact. In its loop of a few instructions a
// token, the run below costs more than it saves (5% on the feed's data).
inline const char* pastWhitespaceBytewise(const char* p, const char* end)
{
    while (p < end && isWhitespace(*p)) {
        ++p;
    }
    return p;
}

// Past the whitespace that starts at p. Pretty texts indent with long runs,
// taken sixteen bytes at a time where it can.
const char* pastWhitespaceRun(const char* p, const char* end)
{
#if defined(__SSE2__)
    while (end - p >= 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const __m128i spaces =
            _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(' ')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n')));
        const __m128i returnsAndTabs =
            _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\r')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\t')));
        const auto others = ~static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(spaces, returnsAndTabs))) & 0xFFFFu;
        if (others != 0) {
            return p + std::countr_zero(others);
        }
        p += 16;
    }
#endif
    return pastWhitespaceBytewise(p, end);
}

// Past the whitespace at p, for the text a template is read from: templates
// are mostly pretty, with a space after every ':' and ',' and long indents.
inline const char* pastWhitespace(const char* p, const char* end)
{
    // Most tokens follow the last directly or after one space; every
    // whitespace byte is at most ' '.
    auto isAboveSpace = [](char c) { return static_cast<unsigned char>(c) > ' '; };
    if (p < end && isAboveSpace(*p)) {
        return p;
    }
    if (end - p >= 2 && *p == ' ' && isAboveSpace(p[1])) {
        return p + 1;
    }
    return pastWhitespaceRun(p, end);
}

// A key's bit among a frame's keyBits: from its length and its first and
// last bytes, where the keys of one object mostly differ.
uint64_t keyBit(std::string_view key)
{
    if (key.empty()) {
        return 1;
    }
    const auto first = static_cast<unsigned char>(key.front());
    const auto last = static_cast<unsigned char>(key.back());
    return uint64_t{1} << ((key.size() * 7 + first * 3 + last) & 63);
}
constexpr uint64_t kAllKeys = ~uint64_t{0};

constexpr double kExactPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                        1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Most numbers in templates and data have few digits: when the mantissa and
// the power of ten are both exact doubles, one multiplication or division
// rounds correctly, and that is the exact value. False when the text is not
// such a number (the general conversion takes it then).
bool readSimpleNumber(const char* p, const char* end, double& number)
{
    const bool negative = *p == '-';
    p += negative ? 1 : 0;
    uint64_t mantissa = 0;
    int digits = 0;
    int scale = 0;
    const char* integer = p;
    for (; p < end && isDigit(*p); ++p, ++digits) {
        mantissa = mantissa * 10 + static_cast<uint64_t>(*p - '0');
    }
    if (p == integer) {
        return false;
    }
    if (p < end && *p == '.') {
        const char* fraction = ++p;
        for (; p < end && isDigit(*p); ++p, ++digits) {
            mantissa = mantissa * 10 + static_cast<uint64_t>(*p - '0');
        }
        if (p == fraction) {
            return false;
        }
        scale = -static_cast<int>(p - fraction);
    }
    if (p < end && (*p == 'e' || *p == 'E')) {
        ++p;
        const bool negativeExponent = p < end && *p == '-';
        p += p < end && (*p == '-' || *p == '+') ? 1 : 0;
        const char* exponentStart = p;
        int exponent = 0;
        for (; p < end && isDigit(*p) && exponent < 1000; ++p) {
            exponent = exponent * 10 + (*p - '0');
        }
        if (p == exponentStart) {
            return false;
        }
        scale += negativeExponent ? -exponent : exponent;
    }
    if (p != end || digits > 19 || mantissa > (uint64_t{1} << 53) || scale < -22 || scale > 22) {
        return false;
    }
    const double magnitude = static_cast<double>(mantissa);
    number = scale < 0 ? magnitude / kExactPowersOfTen[-scale] : magnitude * kExactPowersOfTen[scale];
    number = negative ? -number : number;
    return true;
}

// Most numbers are short whole numbers, read as they are scanned: past the
// one at p, its value in `number`, when it is one: an optional "-", at most
// fifteen digits (they always convert exactly), and no point, exponent or
// further digit after them. Else null.
const char* pastShortWholeNumber(const char* p, const char* end, double& number)
{
    constexpr std::ptrdiff_t kExactDigits = 15;
    const bool negative = *p == '-';
    const char* const digits = p + (negative ? 1 : 0);
    // One digit more than kExactDigits is read, to tell a longer number.
    const char* const limit = end - digits > kExactDigits ? digits + kExactDigits + 1 : end;
    p = digits;
    uint64_t whole = 0;
    for (; p < limit && isDigit(*p); ++p) {
        whole = whole * 10 + static_cast<uint64_t>(*p - '0');
    }
    const bool ended = p == end || (!isDigit(*p) && *p != '.' && *p != 'e' && *p != 'E');
    if (p == digits || p - digits > kExactDigits || !ended) {
        return nullptr;
    }
    number = negative ? -static_cast<double>(whole) : static_cast<double>(whole);
    return p;
}

// Whether the number text [p, end), out of a double's range, is too small
// rather than too large: its leading digit stands below the units.
bool isBelowOne(const char* p, const char* end)
{
    p += *p == '-' ? 1 : 0;
    while (p < end && *p == '0') {
        ++p;
    }
    long order = -1;  // the power of ten of the leading nonzero digit
    for (; p < end && isDigit(*p); ++p) {
        ++order;
    }
    if (order < 0 && p < end && *p == '.') {
        for (++p; p < end && *p == '0'; ++p) {
            --order;
        }
    }
    while (p < end && *p != 'e' && *p != 'E') {
        ++p;
    }
    if (p < end) {
        ++p;
        const bool negative = p < end && *p == '-';
        p += p < end && (*p == '-' || *p == '+') ? 1 : 0;
        long exponent = 0;
        for (; p < end && isDigit(*p) && exponent < 1000000; ++p) {
            exponent = exponent * 10 + (*p - '0');
        }
        order += negative ? -exponent : exponent;
    }
    return order < 0;
}

// The general conversion, exact and locale-independent. It reads the longest
// number at the start of [start, end), as the standard conversion does.
double convertNumber(const char* start, const char* end)
{
    double number = 0.0;
    auto [last, error] = std::from_chars(start, end, number);
    if (error == std::errc::invalid_argument) {
        throw std::invalid_argument("stod");  // a lone "-"
    }
    if (error == std::errc::result_out_of_range) {
        if (!isBelowOne(start, last)) {
            throw std::out_of_range("stod");
        }
        // Too small for a double: it reads as zero, as strict parsers read it.
        number = *start == '-' ? -0.0 : 0.0;
    }
    return number;
}

}  // namespace

ValueObject JsonParser::dropObject_;
ValueArray JsonParser::dropArray_;

Value JsonParser::read(std::string_view text)
{
    JsonParser parser;
    parser.parse(text);
    return std::move(parser.root_);
}

inline JsonParser::Token JsonParser::peek()
{
    cursor_ = pastWhitespace(cursor_, end_);
    // The text need not be zero-terminated: at end we read nothing and answer
    // what a terminating zero byte would.
    return cursor_ < end_ ? kTokenOfByte[static_cast<unsigned char>(*cursor_)] : Token::End;
}

inline void JsonParser::step()
{
    if (cursor_ < end_) {
        ++cursor_;
    }
}

// Reads the string under the cursor (on its opening quote) and leaves the
// cursor past its closing quote. The result views the text itself when the
// string holds no escape, and `buffer` otherwise; an unterminated string runs
// to the end. In line: every key and string value comes here.
inline std::string_view JsonParser::readString(std::string& buffer)
{
    const char* start = ++cursor_;
    const char* stop = findQuoteOrBackslash(start, end_);
    if (stop == end_) {
        cursor_ = end_;
        return {start, static_cast<size_t>(stop - start)};
    }
    if (*stop == '"') {
        cursor_ = stop + 1;
        return {start, static_cast<size_t>(stop - start)};
    }
    cursor_ = stop;
    return readEscapedString(start, buffer);
}

void JsonParser::parse(const char* begin, const char* end)
{
    begin_ = begin;
    end_ = end;
    cursor_ = begin;
    stack_.clear();
    // Room for the depth of a template at once: grown by doubling, the
    // stack and the hints took ten allocations a template.
    constexpr size_t kUsualDepth = 16;
    stack_.reserve(kUsualDepth);
    sizeHints_.reserve(kUsualDepth);
    rootMembers_.clear();
    if (repeated_) {
        repeated_->clear();
    }
    reported_ = false;
    skipMissed_ = false;
    rootEnd_ = static_cast<size_t>(end - begin);
    bool rootOpen = true;

    if (peek() != Token::ObjectOpen) {
        report("Syntax error: '{' expected.");
    }
    stack_.push_back({&root_.object(), nullptr, rootKeys_ != nullptr ? Members::KeptIfNamed : Members::Kept,
                      root_.object().empty() ? 0 : kAllKeys});
    step();

    while (cursor_ != end_) {
        readPlainMembers();
        if (cursor_ == end_) {
            break;
        }
        const Token token = peek();
        if (token == Token::ObjectClose || token == Token::ArrayClose) {
            // Closers are not matched to their openers: "]" closes an object
            // too. One after the root has closed ends the parse.
            if (stack_.empty()) {
                break;
            }
            if (stack_.size() == 1) {
                rootEnd_ = static_cast<size_t>(cursor_ - begin);
                rootOpen = false;
            }
            close();
            step();
            continue;
        }
        if (token == Token::Comma) {
            step();  // commas are optional separators
            continue;
        }
        if (token == Token::Error || stack_.empty()) {
            break;  // a stray byte, or anything after the root: stop quietly
        }
        if (!readMember(stack_.back(), token)) {
            break;
        }
    }
    if (rootOpen) {
        rootEnd_ = static_cast<size_t>(cursor_ - begin);  // where the parse stopped
    }
}

// The common case, read in one tight loop with the cursor held locally: the
// members of kept containers below the root, each a string key, a colon and
// a value that is a container, a string, a number or a literal; the commas
// between them and the closers of those containers. At anything else (and
// at the text's end) it stops where that member or token begins, whitespace
// before it included, so the careful reading that takes over does with it
// exactly what it would have done from the start.
void JsonParser::readPlainMembers()
{
    const char* p = cursor_;
    const char* const end = end_;
    while (stack_.size() > 1 && stack_.back().members == Members::Kept) {
        Frame& top = stack_.back();
        const char* const member = p;
        p = pastWhitespace(p, end);
        if (p == end) {
            p = member;
            break;
        }
        const char c = *p;
        if (c == ',') {
            ++p;
            continue;
        }
        if (c == '}' || c == ']') {
            if (top.openedAt != nullptr && c == '}') {
                rememberObject(top, p);
            }
            close();
            ++p;
            continue;
        }
        std::string_view key;
        if (top.object != nullptr) {
            if (c != '"') {
                p = member;
                break;
            }
            // A key with an escape is left to the careful reading: decoding
            // it may report, and the member may yet be handed back.
            const char* const keyEnd = findQuoteOrBackslash(p + 1, end);
            if (keyEnd == end || *keyEnd != '"') {
                p = member;
                break;
            }
            key = {p + 1, static_cast<size_t>(keyEnd - p - 1)};
            p = pastWhitespace(keyEnd + 1, end);
            p = p != end && *p == ':' ? pastWhitespace(p + 1, end) : end;
            if (p == end) {
                p = member;
                break;
            }
        }
        const char* const next = readPlainValue(top, key, p);
        if (next == nullptr) {
            p = member;
            break;
        }
        p = next;
    }
    cursor_ = p;
}

// The value at p (not at the text's end) for readPlainMembers: stored under
// `key`, and where it ends; or null, storing nothing, when it is not a plain
// value. Reports and exceptions are the careful reading's, met at the same
// point of the text.
const char* JsonParser::readPlainValue(Frame& top, std::string_view key, const char* p)
{
    switch (*p) {
    case '{': {
        // A member certainly new to its object (or an array's element) may
        // be an object read before, or become one that is shared.
        const bool fresh = repeated_ && (top.object == nullptr || (top.keyBits & keyBit(key)) == 0);
        RepeatedObjects::Probe probe;
        if (fresh) {
            const RepeatedObjects::Found found = repeated_->find(p, end_);
            if (found.object != nullptr) {
                store(top, key, *found.object);
                return p + found.length;
            }
            probe = found.probe;
        }
        open(top, key, Kind::Object);
        stack_.back().openedAt = fresh ? p : nullptr;
        stack_.back().probe = probe;
        return p + 1;
    }
    case '[': open(top, key, Kind::Array); return p + 1;
    case '"':
        cursor_ = p;
        store(top, key, std::string(readString(textBuffer_)));
        return cursor_;
    // Literals are known by their first letter; the skip stops at the text's end.
    case 't': store(top, key, true); return p + std::min<std::ptrdiff_t>(4, end_ - p);
    case 'f': store(top, key, false); return p + std::min<std::ptrdiff_t>(5, end_ - p);
    case 'n': store(top, key); return p + std::min<std::ptrdiff_t>(4, end_ - p);
    default:
        if (!isDigit(*p) && *p != '-') {
            return nullptr;
        }
        cursor_ = p;
        store(top, key, readNumber());
        return cursor_;
    }
}

// Reads one member of an object (key, colon, value) or one element of an
// array into `top`. False when the parse must stop.
bool JsonParser::readMember(Frame& top, Token token)
{
    std::string_view key;
    const char* start = cursor_;
    if (top.object != nullptr) {
        if (token != Token::String) {
            report("object key is failed");
            return false;
        }
        key = readString(keyBuffer_);
        if (peek() != Token::Colon) {
            report("object member separator is failed");
            return false;
        }
        step();
        token = peek();
    }
    if (top.members == Members::Kept) [[likely]] {
        return readValue<true>(top, key, token);
    }
    if (top.members == Members::Dropped) {
        return readValue<false>(top, key, token);
    }
    return readRootMember(top, key, token, start);
}

// A member of the root when only some are kept; it began at `start`.
bool JsonParser::readRootMember(Frame& top, std::string_view key, Token token, const char* start)
{
    const bool kept = rootKeys_->contains(key);
    rootMembers_.push_back({std::string(key), static_cast<size_t>(start - begin_), kept});
    return kept ? readValue<true>(top, key, token) : readValue<false>(top, key, token);
}

JsonParser::LeftOut JsonParser::leftOut() const
{
    // A member's text runs to where the next one begins (the separators after
    // it come along); the last one's to where the root ended.
    auto endOf = [this](size_t i) { return i + 1 < rootMembers_.size() ? rootMembers_[i + 1].start : rootEnd_; };
    size_t length = 0;
    for (size_t i = 0; i < rootMembers_.size(); ++i) {
        length += rootMembers_[i].kept ? 0 : endOf(i) - rootMembers_[i].start;
    }
    LeftOut leftOut;
    KeySet seen;
    if (length > 0) {
        leftOut.text.reserve(length + 1);
        leftOut.text += '{';
    }
    for (size_t i = 0; i < rootMembers_.size(); ++i) {
        const RootMember& member = rootMembers_[i];
        if (seen.insert(member.key).second) {
            leftOut.order.push_back(member.key);
        }
        if (!member.kept) {
            leftOut.text.append(begin_ + member.start, endOf(i) - member.start);
        }
    }
    return leftOut;
}

void JsonParser::restoreRoot(const ValueObject& kept, const LeftOut& leftOut, ValueObject& into)
{
    JsonParser parser;
    parser.setQuiet();
    parser.parse(leftOut.text);
    const ValueObject& readAgain = parser.root().object();
    for (const std::string& key : leftOut.order) {
        auto found = kept.find(key);
        if (found != kept.end()) {
            into.try_emplace(key, found->second);
        } else if ((found = readAgain.find(key)) != readAgain.end()) {
            into.try_emplace(key, found->second);
        }
    }
}

// Skips the container under the cursor when it is strict JSON of at most
// kSkippedDepth levels, in one pass that builds nothing: what the careful
// reading would do with it (read it all, report nothing, keep nothing) is then
// known. Anything else (a lenient form, an exponent, an escape or a literal to
// check, the text's end) leaves the cursor where it was, for the careful
// reading; after one such miss the rest of the text is read carefully, so a
// text is never scanned more than twice.
bool JsonParser::skipStrictContainer()
{
    constexpr int kSkippedDepth = 64;
    if (skipMissed_) {
        return false;
    }
    const char* p = cursor_;
    uint64_t objects = 0;  // bit d: the container open at depth d is an object
    int depth = 0;
    enum class Next { Value, Key, AfterValue };
    Next next = Next::Value;
    while (p != nullptr) {
        p = pastWhitespaceBytewise(p, end_);
        if (p == end_) {
            break;
        }
        if (next == Next::Key) {
            const char* pastKey = *p == '"' ? pastStrictString(p, end_) : nullptr;
            p = pastKey != nullptr ? pastWhitespaceBytewise(pastKey, end_) : nullptr;
            p = p != nullptr && p < end_ && *p == ':' ? p + 1 : nullptr;
            next = Next::Value;
            continue;
        }
        const char c = *p;
        const bool inObject = depth > 0 && ((objects >> (depth - 1)) & 1) != 0;
        if (next == Next::AfterValue) {
            if (c == ',') {
                ++p;
                next = inObject ? Next::Key : Next::Value;
            } else if (c == (inObject ? '}' : ']')) {
                ++p;
                if (--depth == 0) {
                    cursor_ = p;
                    return true;
                }
            } else {
                p = nullptr;
            }
            continue;
        }
        if (c == '{' || c == '[') {
            if (depth == kSkippedDepth) {
                break;
            }
            objects = c == '{' ? objects | (uint64_t{1} << depth) : objects & ~(uint64_t{1} << depth);
            ++depth;
            const char* inside = pastWhitespaceBytewise(p + 1, end_);
            if (inside < end_ && *inside == (c == '{' ? '}' : ']')) {
                p = inside + 1;  // empty
                if (--depth == 0) {
                    cursor_ = p;
                    return true;
                }
                next = Next::AfterValue;
            } else {
                p = inside;
                next = c == '{' ? Next::Key : Next::Value;
            }
            continue;
        }
        if (depth == 0) {
            break;  // not on a container
        }
        p = c == '"' ? pastStrictString(p, end_) : isDigit(c) || c == '-' ? pastPlainNumber(p, end_) : pastLiteral(p, end_);
        next = Next::AfterValue;
    }
    skipMissed_ = true;
    return false;
}

// Reads a value into `top` under `key`. A value not kept is read all the
// same, with the same reports, and dropped: a container opens a frame that
// keeps nothing, unless it can be skipped whole.
template <bool Keep>
bool JsonParser::readValue(Frame& top, std::string_view key, Token token)
{
    if constexpr (!Keep) {
        if ((token == Token::ObjectOpen || token == Token::ArrayOpen) && skipStrictContainer()) {
            return true;
        }
    }
    switch (token) {
    case Token::ObjectOpen:
        step();
        if constexpr (Keep) {
            open(top, key, Kind::Object);
        } else {
            stack_.push_back({&dropObject_, nullptr, Members::Dropped});
        }
        return true;
    case Token::ArrayOpen:
        step();
        if constexpr (Keep) {
            open(top, key, Kind::Array);
        } else {
            stack_.push_back({nullptr, &dropArray_, Members::Dropped});
        }
        return true;
    case Token::String: {
        const std::string_view text = readString(textBuffer_);
        if constexpr (Keep) {
            store(top, key, std::string(text));
        }
        return true;
    }
    case Token::Number: {
        const double number = readNumber();  // dropped or not, it may throw
        if constexpr (Keep) {
            store(top, key, number);
        }
        return true;
    }
    case Token::True:
        skipLiteral(4);
        if constexpr (Keep) {
            store(top, key, true);
        }
        return true;
    case Token::False:
        skipLiteral(5);
        if constexpr (Keep) {
            store(top, key, false);
        }
        return true;
    case Token::Null:
        skipLiteral(4);
        if constexpr (Keep) {
            store(top, key);
        }
        return true;
    default: report("object value is failed"); return false;
    }
}

// Stores a value made from `args` in `top`: appended to an array, inserted
// into an object unless the key is there already (the first value stays).
template <typename... Args>
Value& JsonParser::store(Frame& top, std::string_view key, Args&&... args)
{
    if (top.object != nullptr) {
        const uint64_t bit = keyBit(key);
        if ((top.keyBits & bit) == 0) {
            top.keyBits |= bit;
            return top.object->emplaceAbsent(key, std::forward<Args>(args)...)->second;
        }
        return top.object->try_emplace(key, std::forward<Args>(args)...).first->second;
    }
    return top.array->emplace_back(std::forward<Args>(args)...);
}

void JsonParser::open(Frame& top, std::string_view key, Kind kind)
{
    Value& stored = store(top, key, kind);
    // Under a duplicate key, a container is read into the first value when
    // that is a container of the same kind, and otherwise into a scratch one
    // that is dropped. A first value that is shared (an object read before,
    // or a container inside one) is copied first, so that what is read into
    // it reaches no other place.
    if (repeated_ && stored.is(kind)) {
        if (kind == Kind::Object && std::get<ObjectPtr>(stored.payload()).use_count() > 1) {
            stored = Value::makeObject(ValueObject(stored.object()));
        } else if (kind == Kind::Array && std::get<ArrayPtr>(stored.payload()).use_count() > 1) {
            stored = Value::makeArray(ValueArray(stored.array()));
        }
    }
    Value& target = stored.is(kind) ? stored : scratch_.emplace_back(kind);
    const size_t depth = stack_.size();
    if (depth < kHintedDepth && sizeHints_.size() <= depth) {
        sizeHints_.resize(depth + 1);
    }
    const auto [objectHint, arrayHint] = depth < kHintedDepth ? sizeHints_[depth] : std::pair<uint32_t, uint32_t>{};
    if (kind == Kind::Object) {
        ValueObject& object = target.object();
        object.reserve(object.size() + objectHint);
        stack_.push_back({&object, nullptr, Members::Kept, object.empty() ? 0 : kAllKeys});
    } else {
        ValueArray& array = target.array();
        array.reserve(array.size() + arrayHint);
        stack_.push_back({nullptr, &array});
    }
}

// Remembers the object of `top`, closing at `close`, for the same text
// later: an object read without an error, which its parent holds.
void JsonParser::rememberObject(const Frame& top, const char* close)
{
    if (reported_ || stack_.size() < 2) {
        return;
    }
    // A new member is its container's last.
    const Frame& parent = stack_[stack_.size() - 2];
    const Value& made = parent.object != nullptr ? (parent.object->end() - 1)->second : parent.array->back();
    if (made.is(Kind::Object) && &made.object() == top.object) {
        repeated_->remember({top.openedAt, static_cast<size_t>(close + 1 - top.openedAt)}, top.probe, made.objectPtr());
    }
}

void JsonParser::close()
{
    // Hints are capped, so one long list does not make every later one reserve as much.
    constexpr size_t kMaxHint = 64;
    const Frame& top = stack_.back();
    const size_t depth = stack_.size() - 1;
    if (depth < sizeHints_.size() && top.members != Members::Dropped) {
        auto& [objectHint, arrayHint] = sizeHints_[depth];
        (top.object != nullptr ? objectHint : arrayHint) =
            static_cast<uint32_t>(std::min(top.object != nullptr ? top.object->size() : top.array->size(), kMaxHint));
    }
    stack_.pop_back();
}

std::string_view JsonParser::readEscapedString(const char* start, std::string& buffer)
{
    buffer.assign(start, cursor_);
    while (cursor_ < end_) {
        ++cursor_;  // the backslash
        if (cursor_ == end_) {
            break;
        }
        switch (*cursor_++) {
        case 't': buffer += '\t'; break;
        case '/': buffer += '/'; break;
        case '\\': buffer += '\\'; break;
        case 'b': buffer += '\b'; break;
        case 'f': buffer += '\f'; break;
        case 'n': buffer += '\n'; break;
        case 'r': buffer += '\r'; break;
        case '"': buffer += '"'; break;
        case 'u': readUnicodeEscape(buffer); break;
        default:
            // If reporting returns, the backslash and the byte are dropped.
            report("string escape error");
            break;
        }
        const char* run = cursor_;
        cursor_ = findQuoteOrBackslash(cursor_, end_);
        buffer.append(run, cursor_);
        if (cursor_ < end_ && *cursor_ == '"') {
            ++cursor_;
            break;
        }
    }
    return buffer;
}

// After "\u": four hex digits, decoded to UTF-8. A high surrogate followed
// by an escaped low one makes one code point; a surrogate without its other
// half becomes U+FFFD, the replacement character.
void JsonParser::readUnicodeEscape(std::string& buffer)
{
    constexpr uint32_t kReplacement = 0xFFFD;
    const int32_t unit = hexQuad(cursor_, end_);
    if (unit < 0) {
        // If reporting returns, "\u" is dropped and the bytes after it stay.
        report("string escape error");
        return;
    }
    cursor_ += 4;
    const auto codeUnit = static_cast<uint32_t>(unit);
    if (codeUnit < 0xD800 || codeUnit > 0xDFFF) {
        appendUtf8(buffer, codeUnit);
        return;
    }
    if (codeUnit <= 0xDBFF && end_ - cursor_ >= 6 && cursor_[0] == '\\' && cursor_[1] == 'u') {
        const int32_t low = hexQuad(cursor_ + 2, end_);
        if (low >= 0xDC00 && low <= 0xDFFF) {
            cursor_ += 6;
            appendUtf8(buffer, 0x10000 + ((codeUnit - 0xD800) << 10) + (static_cast<uint32_t>(low) - 0xDC00));
            return;
        }
    }
    appendUtf8(buffer, kReplacement);
}

// A number is a "-" or digit, then digits and points, then an exponent. The
// value is that of the longest number at its start ("1.2.3" reads as 1.2).
double JsonParser::readNumber()
{
    double number = 0.0;
    const char* const past = pastShortWholeNumber(cursor_, end_, number);
    if (past != nullptr) {
        cursor_ = past;
        return number;
    }
    const char* start = cursor_++;
    while (cursor_ < end_ && (isDigit(*cursor_) || *cursor_ == '.')) {
        ++cursor_;
    }
    if (cursor_ < end_ && (*cursor_ == 'e' || *cursor_ == 'E')) {
        ++cursor_;
        if (cursor_ < end_ && (*cursor_ == '+' || *cursor_ == '-')) {
            ++cursor_;
        }
        while (cursor_ < end_ && isDigit(*cursor_)) {
            ++cursor_;
        }
    }
    return readSimpleNumber(start, cursor_, number) ? number : convertNumber(start, cursor_);
}

void JsonParser::report(std::string_view message) const
{
    reported_ = true;
    if (!quiet_) {
        reportError(message);
    }
}

void JsonParser::skipLiteral(size_t length)
{
    // Only the first letter is checked; the skip is bounded by the text's end.
    cursor_ += std::min(length, static_cast<size_t>(end_ - cursor_));
}

}  // namespace Mero
