// The differential oracle of the JSON reader and writer: RapidJSON in strict
// mode (the RFC 8259 grammar, iterative so that deep nesting cannot overflow
// its stack). RapidJSON decides what is JSON and reads structure and strings;
// numbers it hands over as text, and the C library's strtod converts them
// (correctly rounded): RapidJSON's own conversion is wrong for some texts
// (0.0000000000000000000000000000001e-300 gives -2.1e301), and its integers
// lose the sign of -0. A number too large for a double is refused, as
// RapidJSON refuses it.
//
// For a text that the oracle accepts, Mero must read the same value, and what
// toJsonString writes of it must be read by the oracle back to that value.
// The comparison is exact, with the rules that Mero documents for itself:
// - numbers are bit-equal;
// - strings are byte-equal (neither side checks UTF-8: bytes pass through);
// - an escaped surrogate without its other half reads as U+FFFD in Mero;
//   RapidJSON refuses a lone high one and keeps a lone low one as it is, so
//   the oracle replaces such escapes with \uFFFD before RapidJSON reads them;
// - members are compared in order, which is stronger than as sets: both keep
//   the order of the text. Where a key repeats, RapidJSON keeps every member
//   and Mero the first value, reading a later container of the same kind into
//   the first one; the oracle applies that rule as it builds RapidJSON's value;
// - what is written is compared after what the writer leaves out or rounds:
//   nulls inside containers are skipped, numbers go through numberToString.
//
// No gtest here: the fuzz target uses it too.
#pragma once

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <bit>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "value/ErrorReporting.h"
#include "value/JsonParser.h"
#include "value/JsonWriter.h"
#include "value/Value.h"

namespace MeroTest {

// Deeper than this, values are not compared (the comparison recurses); the
// texts of the suite and of the fuzzer stay far below it.
constexpr int kMaxComparedDepth = 1000;

struct TooDeepToCompare {};

constexpr unsigned kStrictFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;

// Builds Mero Values from RapidJSON's events, with Mero's rule for repeated
// keys applied as the text is read: the first value stays, and a later object
// or array under the key is read into the first one when that is of the same
// kind (so its own repeated keys meet the members already there), and
// otherwise into a scratch container that is dropped.
class OracleBuilder : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, OracleBuilder> {
public:
    bool Null() { return add(Mero::Value()); }
    bool Bool(bool boolean) { return add(Mero::Value(boolean)); }
    bool RawNumber(const char* text, rapidjson::SizeType length, bool)
    {
        const std::string number(text, length);
        errno = 0;
        const double value = std::strtod(number.c_str(), nullptr);
        if (errno == ERANGE && std::isinf(value)) {
            numberTooBig = true;
            return false;
        }
        return add(Mero::Value(value));
    }
    bool String(const char* text, rapidjson::SizeType length, bool)
    {
        return add(Mero::Value(std::string(text, length)));
    }
    bool Key(const char* text, rapidjson::SizeType length, bool)
    {
        key_.assign(text, length);
        return true;
    }
    bool StartObject() { return start(Mero::Kind::Object); }
    bool EndObject(rapidjson::SizeType) { return end(); }
    bool StartArray() { return start(Mero::Kind::Array); }
    bool EndArray(rapidjson::SizeType) { return end(); }

    Mero::Value root;
    bool numberTooBig = false;

private:
    // Values share their containers, so each open one is held by a copy.
    bool start(Mero::Kind kind)
    {
        Mero::Value fresh(kind);
        if (open_.empty()) {
            root = fresh;
            open_.push_back(fresh);
            return true;
        }
        Mero::Value& top = open_.back();
        if (top.is(Mero::Kind::Array)) {
            top.array().push_back(fresh);
            open_.push_back(fresh);
            return true;
        }
        auto [member, inserted] = top.object().try_emplace(key_, fresh);
        open_.push_back(inserted || member->second.is(kind) ? member->second : fresh);
        return true;
    }
    bool end()
    {
        open_.pop_back();
        return true;
    }
    bool add(Mero::Value value)
    {
        if (open_.empty()) {
            root = std::move(value);
        } else if (open_.back().is(Mero::Kind::Array)) {
            open_.back().array().push_back(std::move(value));
        } else {
            open_.back().object().try_emplace(key_, std::move(value));
        }
        return true;
    }
    std::vector<Mero::Value> open_;
    std::string key_;
};

// The code unit that a \u escape at `at` writes, or -1 when there is none.
inline int escapedUnit(std::string_view text, size_t at)
{
    if (at + 6 > text.size() || text[at] != '\\' || text[at + 1] != 'u') {
        return -1;
    }
    unsigned unit = 0;
    const char* digits = text.data() + at + 2;
    return std::from_chars(digits, digits + 4, unit, 16).ptr == digits + 4 ? static_cast<int>(unit) : -1;
}

// `text` with every escaped surrogate that is not half of a pair written as \uFFFD.
inline std::string withLoneSurrogatesReplaced(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        if (text[i] != '\\') {
            out += text[i++];
            continue;
        }
        const int unit = escapedUnit(text, i);
        if (unit < 0xD800 || unit > 0xDFFF) {
            out.append(text.substr(i, 2));  // the backslash and the escaped byte
            i += 2;
            continue;
        }
        const int next = escapedUnit(text, i + 6);
        if (unit <= 0xDBFF && next >= 0xDC00 && next <= 0xDFFF) {
            out.append(text.substr(i, 12));
            i += 12;
        } else {
            out += "\\uFFFD";
            i += 6;
        }
    }
    return out;
}

// The oracle's value of `text`, or nothing when it rejects it (the reason in `why`).
inline std::optional<Mero::Value> oracleRead(std::string_view original, std::string* why = nullptr)
{
    const std::string text = withLoneSurrogatesReplaced(original);
    OracleBuilder builder;
    rapidjson::Reader reader;
    rapidjson::MemoryStream stream(text.data(), text.size());
    const rapidjson::ParseResult result = reader.Parse<kStrictFlags>(stream, builder);
    if (result.IsError()) {
        if (why != nullptr) {
            *why = builder.numberTooBig ? "number too big for a double"
                                        : std::string(rapidjson::GetParseError_En(result.Code())) + " at offset " +
                                              std::to_string(result.Offset());
        }
        return std::nullopt;
    }
    return builder.root;
}

inline bool sameNumber(double expected, double actual)
{
    return std::bit_cast<uint64_t>(expected) == std::bit_cast<uint64_t>(actual);
}

// Where `actual` first differs from `expected`, or "" when they are equal.
inline std::string differenceBetween(const Mero::Value& expected, const Mero::Value& actual,
                                     const std::string& path = "$", int depth = 0)
{
    using Mero::Kind;
    if (depth > kMaxComparedDepth) {
        throw TooDeepToCompare{};
    }
    if (expected.kind() != actual.kind()) {
        return path + ": kind " + std::to_string(actual.kindNumber()) + ", expected " +
               std::to_string(expected.kindNumber());
    }
    switch (expected.kind()) {
    case Kind::Number:
        if (!sameNumber(expected.number(), actual.number())) {
            std::ostringstream out;
            out.precision(17);
            out << path << ": " << actual.number() << ", expected " << expected.number();
            return out.str();
        }
        return "";
    case Kind::String:
        return expected.string() == actual.string()
                   ? ""
                   : path + ": \"" + actual.string() + "\", expected \"" + expected.string() + "\"";
    case Kind::Boolean: return expected.boolean() == actual.boolean() ? "" : path + ": the other boolean";
    case Kind::Array: {
        const Mero::ValueArray& want = expected.array();
        const Mero::ValueArray& got = actual.array();
        if (want.size() != got.size()) {
            return path + ": " + std::to_string(got.size()) + " elements, expected " + std::to_string(want.size());
        }
        for (size_t i = 0; i < want.size(); ++i) {
            std::string difference =
                differenceBetween(want[i], got[i], path + "[" + std::to_string(i) + "]", depth + 1);
            if (!difference.empty()) {
                return difference;
            }
        }
        return "";
    }
    case Kind::Object: {
        const Mero::ValueObject& want = expected.object();
        const Mero::ValueObject& got = actual.object();
        if (want.size() != got.size()) {
            return path + ": " + std::to_string(got.size()) + " members, expected " + std::to_string(want.size());
        }
        for (auto wanted = want.begin(), found = got.begin(); wanted != want.end(); ++wanted, ++found) {
            if (wanted->first != found->first) {
                return path + ": member \"" + found->first + "\" where \"" + wanted->first + "\" was expected";
            }
            std::string difference =
                differenceBetween(wanted->second, found->second, path + "." + wanted->first, depth + 1);
            if (!difference.empty()) {
                return difference;
            }
        }
        return "";
    }
    default: return "";
    }
}

// `value` as the writer is meant to render it: without the nulls inside
// containers, numbers as numberToString rounds them.
inline Mero::Value asWritten(const Mero::Value& value, int depth = 0)
{
    using Mero::Kind;
    using Mero::Value;
    if (depth > kMaxComparedDepth) {
        throw TooDeepToCompare{};
    }
    switch (value.kind()) {
    case Kind::Number: return Value(std::stod(Mero::numberToString(value.number())));
    case Kind::Array: {
        Value array(Kind::Array);
        for (const Value& element : value.array()) {
            if (!element.isNull()) {
                array.array().push_back(asWritten(element, depth + 1));
            }
        }
        return array;
    }
    case Kind::Object: {
        Value object(Kind::Object);
        for (const auto& [key, member] : value.object()) {
            if (!member.isNull()) {
                object.object().try_emplace(key, asWritten(member, depth + 1));
            }
        }
        return object;
    }
    default: return value;
    }
}

// The text wrapped as the value of a one-member object, since Mero's reader
// needs an object at the root.
inline std::string wrapped(std::string_view text)
{
    return "{\"v\":" + std::string(text) + "}";
}

struct OracleVerdict {
    bool accepted = false;   // by RapidJSON
    bool compared = false;   // false when too deep to compare
    std::string difference;  // empty when Mero agrees
};

// Reads `text` (a whole text, object at the root) with Mero as a release
// build does (reports printed to a sink, not thrown) and checks it against
// the oracle. Texts the oracle rejects must only be read without harm.
inline OracleVerdict checkAgainstOracle(std::string_view text)
{
    OracleVerdict verdict;
    std::optional<Mero::Value> expected = oracleRead(text);
    verdict.accepted = expected.has_value();

    const bool savedDebugMode = Mero::debugMode;
    Mero::debugMode = verdict.accepted;  // a valid text must read without a report
    std::ostringstream sink;
    std::streambuf* savedOut = std::cout.rdbuf(sink.rdbuf());
    std::optional<Mero::Value> read;
    try {
        read = Mero::JsonParser::read(text);
    } catch (const std::exception& error) {
        // a lone "-" or an out-of-range number may throw a conversion's own
        // exception, in a text that is not JSON
        const bool conversion = dynamic_cast<const std::invalid_argument*>(&error) != nullptr ||
                                dynamic_cast<const std::out_of_range*>(&error) != nullptr;
        if (verdict.accepted || !conversion) {
            verdict.difference = std::string("the reader threw: ") + error.what();
        }
    }
    std::cout.rdbuf(savedOut);
    Mero::debugMode = savedDebugMode;
    if (!verdict.accepted || !read) {
        return verdict;
    }

    try {
        verdict.difference = differenceBetween(*expected, *read);
        if (verdict.difference.empty()) {
            const std::string written = Mero::toJsonString(*read);
            std::string why;
            std::optional<Mero::Value> reread = oracleRead(written, &why);
            verdict.difference = !reread ? "RapidJSON rejects what was written (" + why + "): " + written
                                         : differenceBetween(asWritten(*read), *reread, "written $");
        }
        verdict.compared = true;
    } catch (const TooDeepToCompare&) {
        verdict.difference.clear();
    }
    return verdict;
}

}  // namespace MeroTest
