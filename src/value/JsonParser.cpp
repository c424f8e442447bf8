#include "value/JsonParser.h"

#include <charconv>
#include <cstring>
#include <stdexcept>

#include "value/ErrorReporting.h"

namespace Mero {

namespace {

bool isWhitespace(char c)
{
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

JsonParser::Token classify(char c)
{
    using Token = JsonParser::Token;
    switch (c) {
    case '\0': return Token::End;
    case '{': return Token::ObjectOpen;
    case '}': return Token::ObjectClose;
    case '[': return Token::ArrayOpen;
    case ']': return Token::ArrayClose;
    case '"': return Token::String;
    case 't': return Token::True;
    case 'f': return Token::False;
    case 'n': return Token::Null;
    case ',': return Token::Comma;
    case ':': return Token::Colon;
    default: return c == '-' || isDigit(c) ? Token::Number : Token::Error;
    }
}

bool isClose(JsonParser::Token token)
{
    return token == JsonParser::Token::ObjectClose || token == JsonParser::Token::ArrayClose;
}

}  // namespace

Value JsonParser::read(std::string_view text)
{
    JsonParser parser;
    parser.parse(text);
    return std::move(parser.root_);
}

JsonParser::Token JsonParser::peek()
{
    while (cursor_ < end_ && isWhitespace(*cursor_)) {
        ++cursor_;
    }
    // The text need not be zero-terminated: at end we read nothing and answer
    // what a terminating zero byte would.
    return cursor_ < end_ ? classify(*cursor_) : Token::End;
}

void JsonParser::step()
{
    if (cursor_ < end_) {
        ++cursor_;
    }
}

void JsonParser::parse(const char* begin, const char* end)
{
    begin_ = begin;
    end_ = end;
    cursor_ = begin;
    stack_.clear();

    if (peek() != Token::ObjectOpen) {
        reportError("Syntax error: '{' expected.");
    }
    stack_.push_back(&root_);
    step();

    while (cursor_ != end_) {
        const Token token = peek();
        if (isClose(token)) {
            // Closers are not matched to their openers: "]" closes an object
            // too. One after the root has closed ends the parse.
            if (stack_.empty()) {
                break;
            }
            stack_.pop_back();
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
        if (!readMember(*stack_.back())) {
            break;
        }
    }
}

// Reads one member of an object (key, colon, value) or one element of an
// array into `top`. False when the parse must stop.
bool JsonParser::readMember(Value& top)
{
    std::string key;
    if (top.is(Kind::Object)) {
        if (peek() != Token::String) {
            reportError("object key is failed");
            return false;
        }
        key = readString();
        if (peek() != Token::Colon) {
            reportError("object member separator is failed");
            return false;
        }
        step();
    }
    return readValue(top, std::move(key));
}

bool JsonParser::readValue(Value& top, std::string key)
{
    switch (peek()) {
    case Token::ObjectOpen:
        step();
        storeValue(top, std::move(key), Value(Kind::Object));
        return true;
    case Token::ArrayOpen:
        step();
        storeValue(top, std::move(key), Value(Kind::Array));
        return true;
    case Token::String: storeValue(top, std::move(key), Value(readString())); return true;
    case Token::Number: storeValue(top, std::move(key), Value(readNumber())); return true;
    case Token::True:
        skipLiteral(4);
        storeValue(top, std::move(key), Value(true));
        return true;
    case Token::False:
        skipLiteral(5);
        storeValue(top, std::move(key), Value(false));
        return true;
    case Token::Null:
        skipLiteral(4);
        storeValue(top, std::move(key), Value());
        return true;
    default: reportError("object value is failed"); return false;
    }
}

void JsonParser::storeValue(Value& top, std::string key, Value value)
{
    const Kind kind = value.kind();
    const bool isContainer = kind == Kind::Object || kind == Kind::Array;
    Value* stored = nullptr;
    if (top.is(Kind::Object)) {
        // A duplicate key keeps its first value.
        stored = &top.object().try_emplace(std::move(key), std::move(value)).first->second;
    } else {
        stored = &top.array().emplace_back(std::move(value));
    }
    if (!isContainer) {
        return;
    }
    // A container under a duplicate key is read into the first value when
    // that is a container too; otherwise into a scratch value that is dropped.
    if (!stored->is(Kind::Object) && !stored->is(Kind::Array)) {
        stored = &scratch_.emplace_back(Value(kind));
    }
    stack_.push_back(stored);
}

std::string JsonParser::readString()
{
    ++cursor_;  // the opening quote
    const size_t left = static_cast<size_t>(end_ - cursor_);
    const char* quote = static_cast<const char*>(std::memchr(cursor_, '"', left));
    const char* stop = quote != nullptr ? quote : end_;
    // Most strings hold no escape: take them in one piece.
    if (std::memchr(cursor_, '\\', static_cast<size_t>(stop - cursor_)) == nullptr) {
        std::string text(cursor_, stop);
        cursor_ = quote != nullptr ? quote + 1 : end_;
        return text;
    }
    return readEscapedString();
}

std::string JsonParser::readEscapedString()
{
    std::string text;
    while (cursor_ < end_) {
        const char* run = cursor_;
        while (cursor_ < end_ && *cursor_ != '"' && *cursor_ != '\\') {
            ++cursor_;
        }
        text.append(run, cursor_);
        if (cursor_ == end_) {
            break;
        }
        if (*cursor_ == '"') {
            ++cursor_;
            return text;
        }
        ++cursor_;  // the backslash
        if (cursor_ == end_) {
            break;
        }
        switch (*cursor_++) {
        case 't': text += '\t'; break;
        case '/': text += '/'; break;
        case '\\': text += '\\'; break;
        case 'b': text += '\b'; break;
        case 'f': text += '\f'; break;
        case 'n': text += '\n'; break;
        case 'r': text += '\r'; break;
        case '"': text += '"'; break;
        default:
            // No \u escapes. If reporting returns, both bytes are dropped.
            reportError("string escape error");
            break;
        }
    }
    return text;
}

double JsonParser::readNumber()
{
    const char* start = cursor_++;
    while (cursor_ < end_ && (isDigit(*cursor_) || *cursor_ == '.')) {
        ++cursor_;
    }
    // The standard conversion: it stops at a second point, throws
    // invalid_argument for a lone "-" and out_of_range past a double's range.
    double number = 0.0;
    auto [last, error] = std::from_chars(start, cursor_, number);
    (void)last;
    if (error == std::errc::invalid_argument) {
        throw std::invalid_argument("stod");
    }
    if (error == std::errc::result_out_of_range) {
        throw std::out_of_range("stod");
    }
    return number;
}

void JsonParser::skipLiteral(size_t length)
{
    // Only the first letter is checked; the skip is bounded by the text's end.
    cursor_ += std::min(length, static_cast<size_t>(end_ - cursor_));
}

}  // namespace Mero
