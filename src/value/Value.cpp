#include "value/Value.h"

#include <charconv>
#include <utility>
#include <vector>

#include "value/ErrorReporting.h"
#include "value/RecyclingAllocator.h"

namespace Mero {

namespace {

// What a read of the wrong kind gives: one immutable default per type.
template <typename T>
const T& sharedDefault()
{
    static const T value{};
    return value;
}

// What a writable access of the wrong kind gives: a scratch value made
// default again at every such access, so that a write through it reaches
// no other Value (it is lost, as the value has no member of that kind).
template <typename T>
T& scratchDefault()
{
    thread_local T value{};
    value = T{};
    return value;
}

// Destroying a deeply nested value must not recurse once per level, or a
// hostile text nested a million deep would overflow the stack. Containers met
// below kMaxTeardownDepth are released later, by the outermost destructor.
constexpr int kMaxTeardownDepth = 256;
thread_local int teardownDepth = 0;
thread_local std::vector<std::shared_ptr<void>>* deferredTeardown = nullptr;

void releaseShared(std::shared_ptr<void> container)
{
    if (container.use_count() != 1) {
        return;  // someone else still holds it: dropping our share is shallow
    }
    if (teardownDepth >= kMaxTeardownDepth) {
        deferredTeardown->push_back(std::move(container));
        return;
    }
    ++teardownDepth;
    if (teardownDepth == 1) {
        std::vector<std::shared_ptr<void>> deferred;
        deferredTeardown = &deferred;
        container.reset();
        while (!deferred.empty()) {
            std::shared_ptr<void> next = std::move(deferred.back());
            deferred.pop_back();
            next.reset();
        }
        deferredTeardown = nullptr;
    } else {
        container.reset();
    }
    --teardownDepth;
}

}  // namespace

namespace {

// A kind's default payload, made in place: every container a reader or a
// script makes starts here.
Value::Payload defaultPayload(Kind kind)
{
    switch (kind) {
    case Kind::String: return std::string();
    case Kind::Boolean: return false;
    case Kind::Array: return std::allocate_shared<ValueArray>(RecyclingAllocator<ValueArray>());
    case Kind::Object: return std::allocate_shared<ValueObject>(RecyclingAllocator<ValueObject>());
    case Kind::Callback:
        reportError("callbackValue not support");
        return std::make_shared<ValueCallback>();
    default: return 0.0;  // null, number, completions and unknown kinds
    }
}

}  // namespace

Value::Value(Kind kind) : payload_(defaultPayload(kind)), kind_(kind) {}

Value::Value(Value&& other) noexcept : payload_(std::move(other.payload_)), kind_(other.kind_)
{
    other.kind_ = Kind::Null;
    other.payload_ = 0.0;
}

Value& Value::operator=(Value&& other) noexcept
{
    if (this != &other) {
        kind_ = other.kind_;
        payload_ = std::move(other.payload_);
        other.kind_ = Kind::Null;
        other.payload_ = 0.0;
    }
    return *this;
}

void Value::releaseContainer() noexcept
{
    if (auto* array = std::get_if<ArrayPtr>(&payload_)) {
        releaseShared(std::move(*array));
    } else if (auto* object = std::get_if<ObjectPtr>(&payload_)) {
        releaseShared(std::move(*object));
    }
}

double& Value::number()
{
    return kind_ == Kind::Number ? std::get<double>(payload_) : scratchDefault<double>();
}

std::string& Value::string()
{
    return kind_ == Kind::String ? std::get<std::string>(payload_) : scratchDefault<std::string>();
}
const std::string& Value::defaultString()
{
    return sharedDefault<std::string>();
}

bool& Value::boolean()
{
    return kind_ == Kind::Boolean ? std::get<bool>(payload_) : scratchDefault<bool>();
}

ValueArray& Value::array()
{
    return kind_ == Kind::Array ? *std::get<ArrayPtr>(payload_) : scratchDefault<ValueArray>();
}
const ValueArray& Value::defaultArray()
{
    return sharedDefault<ValueArray>();
}

ValueObject& Value::object()
{
    return kind_ == Kind::Object ? *std::get<ObjectPtr>(payload_) : scratchDefault<ValueObject>();
}
const ValueObject& Value::defaultObject()
{
    return sharedDefault<ValueObject>();
}

ArrayPtr Value::arrayPtr() const
{
    const auto* array = std::get_if<ArrayPtr>(&payload_);
    return kind_ == Kind::Array && array ? *array : nullptr;
}

ObjectPtr Value::objectPtr() const
{
    const auto* object = std::get_if<ObjectPtr>(&payload_);
    return kind_ == Kind::Object && object ? *object : nullptr;
}

CallbackPtr Value::callbackPtr() const
{
    const auto* callback = std::get_if<CallbackPtr>(&payload_);
    return kind_ == Kind::Callback && callback ? *callback : nullptr;
}

Value Value::makeArray(ValueArray elements)
{
    return Value(std::allocate_shared<ValueArray>(RecyclingAllocator<ValueArray>(), std::move(elements)));
}

Value Value::makeObject()
{
    return Value(Kind::Object);
}

Value Value::makeObject(ValueObject members)
{
    return Value(std::allocate_shared<ValueObject>(RecyclingAllocator<ValueObject>(), std::move(members)));
}

const Value& memberOf(const Value& object, std::string_view key)
{
    static const Value absent;
    const ValueObject& members = object.object();
    auto found = members.find(key);
    return found == members.end() ? absent : found->second;
}

Value deepCopy(const Value& source)
{
    // A container becomes a new empty one of its kind, filled below; any
    // other value is copied as it is.
    auto emptied = [](const Value& value) { return value.is(Kind::Array) || value.is(Kind::Object) ? Value(value.kind()) : value; };
    auto isContainer = [](const Value& value) { return value.is(Kind::Array) || value.is(Kind::Object); };
    Value copy = emptied(source);
    // Containers whose members are still to be copied, with their copies.
    // A container is filled whole before any of its members is, so the
    // addresses of those members stay put.
    std::vector<std::pair<const Value*, Value*>> waiting{{&source, &copy}};
    while (!waiting.empty()) {
        auto [from, to] = waiting.back();
        waiting.pop_back();
        if (from->is(Kind::Array)) {
            const ValueArray& elements = from->array();
            ValueArray& copies = to->array();
            copies.reserve(elements.size());
            for (const Value& element : elements) {
                copies.push_back(emptied(element));
            }
            for (std::size_t i = 0; i < elements.size(); ++i) {
                if (isContainer(elements[i])) {
                    waiting.emplace_back(&elements[i], &copies[i]);
                }
            }
        } else if (from->is(Kind::Object)) {
            const ValueObject& members = from->object();
            ValueObject& copies = to->object();
            copies.reserve(members.size());
            for (const auto& [key, value] : members) {
                copies.try_emplace(key, emptied(value));
            }
            auto copied = copies.begin();
            for (const auto& member : members) {
                if (isContainer(member.second)) {
                    waiting.emplace_back(&member.second, &copied->second);
                }
                ++copied;
            }
        }
    }
    return copy;
}

bool isFalsy(const Value& value) noexcept
{
    switch (value.kind()) {
    case Kind::Null: return true;
    case Kind::Number: return value.number() == 0.0;
    case Kind::String: return value.string().empty();
    case Kind::Boolean: return !value.boolean();
    default: return false;
    }
}

bool equals(const Value& left, const Value& right) noexcept
{
    if (left.kind() != right.kind()) {
        return false;
    }
    switch (left.kind()) {
    case Kind::Number: return left.number() == right.number();
    case Kind::String: return left.string() == right.string();
    case Kind::Boolean: return left.boolean() == right.boolean();
    default: return false;
    }
}

std::string numberToString(double number)
{
    // Fixed notation never needs more than 309 integer digits + sign + point + 6.
    char text[400];
    auto [end, error] = std::to_chars(text, text + sizeof text, number, std::chars_format::fixed, 6);
    (void)error;  // cannot fail with this buffer
    std::string_view result(text, static_cast<size_t>(end - text));
    if (result.find('.') != std::string_view::npos) {
        while (result.back() == '0') {
            result.remove_suffix(1);
        }
        if (result.back() == '.') {
            result.remove_suffix(1);
        }
    }
    return std::string(result);
}

}  // namespace Mero
