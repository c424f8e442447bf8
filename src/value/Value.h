// Value: the one dynamic value of the engine.
//
// Template data, script variables, function arguments and results, bridge
// payloads and render properties are all Values. A Value is a kind word plus a
// payload. Strings are held by value; arrays, objects and callbacks are held
// through shared pointers, so copying a Value never copies a container and a
// copy shares its container with the source.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Mero {

class Value;

using ValueArray = std::vector<Value>;
class ValueObject;  // the members of an object, in insertion order (ValueObject.h)
using ValueCallback = std::function<Value(std::vector<Value>&&)>;
using ArrayPtr = std::shared_ptr<ValueArray>;
using ObjectPtr = std::shared_ptr<ValueObject>;
using CallbackPtr = std::shared_ptr<ValueCallback>;

// The kind word. It is a plain 32-bit number: a Value made from an
// out-of-range kind keeps that number.
enum class Kind : int32_t {
    Null = 0,
    Number = 1,
    String = 2,
    Boolean = 3,
    Array = 4,
    Object = 5,
    Callback = 6,
    // Statement completions, not data (see the statement runtime).
    Completed = 7,
    Break = 8,
    Continue = 9,
};

// Bytes of long strings that Value copies have duplicated. A
// copy of a megabyte-long string is one step of script but a megabyte of
// work and memory: the script runtime charges these bytes to the entry that
// copies them (see runtime/ScriptRun.h). Strings shorter than
// kCountedStringBytes are not counted; their copies cost what a step does.
// Per thread, as the entries that are charged run on one thread each.
inline thread_local std::size_t copiedStringBytes = 0;
inline constexpr std::size_t kCountedStringBytes = 256;

class Value {
public:
    // Payload alternatives, in this order: number, boolean, string, array,
    // object, callback. Their indexes differ from the kind numbers on purpose;
    // never use one for the other.
    using Payload = std::variant<double, bool, std::string, ArrayPtr, ObjectPtr, CallbackPtr>;

    Value() noexcept = default;

    // A Value of the given kind with that kind's default payload. Arrays and
    // objects get a fresh container each time; a callback is reported as
    // unsupported ("callbackValue not support") and, if reporting returns,
    // gets an empty callable.
    explicit Value(Kind kind);

    Value(double number) noexcept : payload_(number), kind_(Kind::Number) {}
    template <std::integral Integer>
    requires(!std::same_as<Integer, bool>) Value(Integer number)
    noexcept : Value(static_cast<double>(number)) {}
    Value(bool boolean) noexcept : payload_(boolean), kind_(Kind::Boolean) {}
    Value(std::string text) noexcept : payload_(std::move(text)), kind_(Kind::String) {}
    Value(std::string_view text) : Value(std::string(text)) {}
    Value(const char* text) : Value(std::string(text)) {}
    Value(ArrayPtr array) noexcept : payload_(std::move(array)), kind_(Kind::Array) {}
    Value(ObjectPtr object) noexcept : payload_(std::move(object)), kind_(Kind::Object) {}
    Value(CallbackPtr callback) noexcept : payload_(std::move(callback)), kind_(Kind::Callback) {}

    Value(const Value& other) : payload_(other.payload_), kind_(other.kind_) { countStringCopy(); }
    Value& operator=(const Value& other)
    {
        kind_ = other.kind_;
        payload_ = other.payload_;
        countStringCopy();
        return *this;
    }
    // A moved-from Value reads as null.
    Value(Value&& other) noexcept;
    Value& operator=(Value&& other) noexcept;
    ~Value()
    {
        // Only containers need more than the payload's own destructor.
        if (payload_.index() == 3 || payload_.index() == 4) {
            releaseContainer();
        }
    }

    Kind kind() const noexcept { return kind_; }
    int32_t kindNumber() const noexcept { return static_cast<int32_t>(kind_); }
    bool is(Kind kind) const noexcept { return kind_ == kind; }
    bool isNull() const noexcept { return kind_ == Kind::Null; }
    const Payload& payload() const noexcept { return payload_; }

    // Typed accessors. When the kind does not match they quietly return a
    // default (0.0, "", false, an empty array or object): through a const
    // Value one shared immutable default, through a mutable one a scratch
    // copy made default again at each such access, so a write through it
    // changes nothing another Value reads. When the kind matches but the
    // payload holds another alternative, std::bad_variant_access is thrown (a
    // fault elsewhere).
    double& number();
    const double& number() const;
    std::string& string();
    const std::string& string() const;
    bool& boolean();
    const bool& boolean() const;
    ValueArray& array();
    const ValueArray& array() const;
    ValueObject& object();
    const ValueObject& object() const;

    // The shared container or callable itself, or null for other kinds.
    ArrayPtr arrayPtr() const;
    ObjectPtr objectPtr() const;
    CallbackPtr callbackPtr() const;

    static Value makeArray(ValueArray elements = {});
    static Value makeObject();
    static Value makeObject(ValueObject members);

private:
    // What a const read of the wrong kind gives: one immutable default per
    // type (the reads themselves are inline: every binding makes several).
    static const std::string& defaultString();
    static const ValueArray& defaultArray();
    static const ValueObject& defaultObject();
    static constexpr double kDefaultNumber = 0.0;
    static constexpr bool kDefaultBoolean = false;

    void countStringCopy() noexcept
    {
        const auto* text = std::get_if<std::string>(&payload_);
        if (text != nullptr && text->size() >= kCountedStringBytes) {
            copiedStringBytes += text->size();
        }
    }
    void releaseContainer() noexcept;

    // The kind sits in the payload's tail padding: a Value is 40 bytes, not 48.
    [[no_unique_address]] Payload payload_ = 0.0;
    Kind kind_ = Kind::Null;
};

// The member `key` of an object Value, or a shared null when it is absent or
// `object` is not an object. Never inserts.
const Value& memberOf(const Value& object, std::string_view key);

// A copy that shares no array or object with `source`, however deep (a copy of
// a Value shares them): script changes arrays and objects in place, and a
// change made through one must not reach the other. Nesting costs heap here,
// not stack.
Value deepCopy(const Value& source);

// Truthiness: null, 0 (and -0), "" and false are falsy; NaN is truthy, and so
// is every array, object, callback and completion, even an empty one.
bool isFalsy(const Value& value) noexcept;

// Equal only when both have the same kind and it is number, string or
// boolean. Everything else is unequal, null against null and an array against
// itself included: templates rely on this.
bool equals(const Value& left, const Value& right) noexcept;

// Fixed notation with six decimals, trailing zeros and a trailing point
// removed: 1.5 -> "1.5", 2 -> "2", 1e-7 -> "0", -1e-7 -> "-0". There is no
// exponent form; the six-digit rounding is deliberate.
std::string numberToString(double number);

}  // namespace Mero

// Objects need Value complete; everything that includes Value.h gets both.
#include "value/ValueObject.h"

namespace Mero {

inline const double& Value::number() const
{
    return kind_ == Kind::Number ? std::get<double>(payload_) : kDefaultNumber;
}
inline const std::string& Value::string() const
{
    return kind_ == Kind::String ? std::get<std::string>(payload_) : defaultString();
}
inline const bool& Value::boolean() const
{
    return kind_ == Kind::Boolean ? std::get<bool>(payload_) : kDefaultBoolean;
}
inline const ValueArray& Value::array() const
{
    if (kind_ == Kind::Array) {
        return *std::get<ArrayPtr>(payload_);
    }
    return defaultArray();
}
inline const ValueObject& Value::object() const
{
    if (kind_ == Kind::Object) {
        return *std::get<ObjectPtr>(payload_);
    }
    return defaultObject();
}

}  // namespace Mero
