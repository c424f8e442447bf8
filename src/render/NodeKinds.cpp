#include "render/NodeKinds.h"

#include <algorithm>
#include <bit>
#include <array>
#include <string>
#include <cstdint>

#include "runtime/NumberConversion.h"
#include "value/ValueObject.h"

namespace Mero {

namespace {

using P = Property;

// The order is observable: two properties bound to one variable are updated
// in binding order.
constexpr std::array kCommon{
    P::Type, P::NodeId, P::OnClick, P::IsEmpty, P::Transition, P::LoopAnimation, P::Visible,
    P::Width, P::Height, P::MinWidth, P::MinHeight, P::MaxWidth, P::MaxHeight,
    P::MarginLeft, P::MarginTop, P::MarginRight, P::MarginBottom,
    P::PaddingLeft, P::PaddingTop, P::PaddingRight, P::PaddingBottom,
    P::BorderLeft, P::BorderTop, P::BorderRight, P::BorderBottom,
    P::Position, P::Left, P::Top, P::Right, P::Bottom, P::FlexGrow, P::FlexShrink,
    P::CornerLeftTop, P::CornerRightTop, P::CornerRightBottom, P::CornerLeftBottom,
    P::BackgroundColor, P::Opacity, P::BorderColor, P::ScaleX, P::ScaleY, P::AnchorPointX, P::AnchorPointY,
    P::RotationX, P::RotationY, P::RotationZ, P::TranslateX, P::TranslateY, P::BackgroundGradient,
    P::X, P::Y,
};

constexpr std::array kFlex{P::Children, P::FlexDirection, P::JustifyContent, P::AlignItems, P::AlignContent,
                           P::FlexWrap};
constexpr std::array kFor{P::Children,     P::FlexDirection, P::JustifyContent, P::AlignItems, P::AlignContent,
                          P::FlexWrap,     P::List,          P::Index,          P::Item};
constexpr std::array kSwiper{P::Children,      P::FlexDirection,  P::JustifyContent, P::AlignItems,
                             P::AlignContent,  P::FlexWrap,       P::List,           P::Index,
                             P::Item,          P::OnSwiperChange, P::SwiperDuration, P::SwiperInterval,
                             P::Autoplay,      P::Circular,       P::SwiperDirection, P::Touchable};
// What changes a text's size measures it again; weight and alignment
// deliberately do not.
constexpr std::array kText{P::Text,      P::TextColor, P::MaxLines,   P::TextAlign,
                           P::FontWeight, P::FontSize,  P::LineHeight, P::TextInterval};
constexpr std::array kImage{P::Src, P::ScaleMode};
// Its colours may animate; its texts and font do not.
constexpr std::array kProgress{P::BusinessData,    P::FontSize,        P::FontWeight,   P::DlColorNormal,
                               P::DlColorText,     P::DlColorInitial,  P::DlColorProgress, P::DlColorProgressBg,
                               P::DlTextNormal,    P::DlTextActive,    P::DlTextPaused, P::DlTextFinished,
                               P::DlTextInstalled};
constexpr std::array kRating{P::RatingScore, P::RatingStarColor, P::RatingStarSize, P::RatingEmptyOpacity};
constexpr std::array kCustom{P::CustomType, P::Extra};
constexpr std::array kVideo{P::VideoModel,  P::VideoId,       P::PlayUrl,        P::Token,       P::Domain,
                            P::Poster,      P::Autoplay,      P::Muted,          P::Loop,        P::PauseOnHide,
                            P::AutoPrepare, P::DisplayMode,   P::FullscreenMode, P::InitTime,    P::PreloadKey,
                            P::CacheSize,   P::Tag,           P::SubTag};
constexpr std::array kBlur{P::BlurRadius, P::BlurAlpha};
constexpr std::array<Property, 0> kNone{};

constexpr std::array kKinds{
    NodeKind{0, "view", NodeClass::View, Measure::None, kNone},
    NodeKind{2, "list", NodeClass::For, Measure::None, kFor},
    NodeKind{3, "flex", NodeClass::Flex, Measure::None, kFlex},
    NodeKind{4, "text", NodeClass::Leaf, Measure::Text, kText},
    NodeKind{5, "image", NodeClass::Leaf, Measure::Image, kImage},
    NodeKind{6, "download", NodeClass::Leaf, Measure::None, kProgress},
    NodeKind{7, "rating", NodeClass::Leaf, Measure::None, kRating},
    NodeKind{8, "swiper", NodeClass::Swiper, Measure::None, kSwiper},
    NodeKind{9, "custom", NodeClass::Leaf, Measure::Custom, kCustom},
    NodeKind{10, "video", NodeClass::Leaf, Measure::None, kVideo},
    NodeKind{11, "blur", NodeClass::Leaf, Measure::None, kBlur},
};
// A node marks which of its kind's own properties its element names in 32 bits.
static_assert(std::ranges::all_of(kKinds, [](const NodeKind& kind) { return kind.properties.size() <= 32; }));
// A code without a kind builds a plain view: the first kind.
static_assert(kKinds[0].code == 0 && kKinds[0].nodeClass == NodeClass::View);

// Each common property's bit, 0 for the others.
constexpr auto kCommonBits = [] {
    static_assert(kCommon.size() <= 64, "one bit per common property");
    std::array<uint64_t, kProperties.size()> bits{};
    for (std::size_t i = 0; i < kCommon.size(); ++i) {
        bits[static_cast<std::size_t>(kCommon[i])] = uint64_t{1} << i;
    }
    return bits;
}();

// Where each property stands in each kind's list, -1 where it does not:
// every member of every element asks.
constexpr auto kKindSlots = [] {
    std::array<std::array<int8_t, kProperties.size()>, kKinds.size()> table{};
    for (std::size_t k = 0; k < kKinds.size(); ++k) {
        table[k].fill(-1);
        for (std::size_t slot = 0; slot < kKinds[k].properties.size(); ++slot) {
            int8_t& entry = table[k][static_cast<std::size_t>(kKinds[k].properties[slot])];
            entry = entry < 0 ? static_cast<int8_t>(slot) : entry;  // the first, as a search finds
        }
    }
    return table;
}();

// Every member of every element is looked up here when a card is built, so
// the keys get a table of their own: open addressing over a hash of the
// length and three of the bytes (the keys differ there; a collision only
// costs a probe), a few times more slots than keys. Made when the library
// is compiled, as are the tables above: a table made on first use costs a
// guard on every lookup.
constexpr std::size_t kKeySlots = 512;

constexpr std::size_t keySlot(std::string_view key)
{
    if (key.empty()) {
        return 0;
    }
    auto byte = [key](std::size_t i) { return static_cast<uint32_t>(static_cast<unsigned char>(key[i])); };
    const std::size_t size = key.size();
    const uint32_t mixed = static_cast<uint32_t>(size) ^ (byte(0) << 8) ^ (byte(size / 2) << 16) ^ (byte(size - 1) << 24);
    return (mixed * 2654435761U) >> (32 - 9);
}
static_assert(kKeySlots == 1U << 9);

// Each slot holds a property's number plus one (0: free): the table takes
// 512 bytes, a few cache lines a lookup instead of one a slot. The keys it
// is checked against sit together apart from the property table's rows.
constexpr auto kKeys = [] {
    std::array<std::string_view, kProperties.size()> keys{};
    for (std::size_t i = 0; i < kProperties.size(); ++i) {
        keys[i] = kProperties[i].key;
    }
    return keys;
}();
static_assert(kProperties.size() < 255, "a property's number plus one fits a byte");

constexpr auto kKeyTable = [] {
    std::array<uint8_t, kKeySlots> slots{};
    for (const PropertyInfo& row : kProperties) {
        if (row.input == PropertyInput::LayoutResult) {
            continue;
        }
        std::size_t i = keySlot(row.key);
        while (slots[i] != 0 && kKeys[slots[i] - 1U] != row.key) {
            i = (i + 1) & (kKeySlots - 1);
        }
        if (slots[i] == 0) {
            slots[i] = static_cast<uint8_t>(static_cast<std::size_t>(row.property) + 1);  // a repeated key keeps its first row
        }
    }
    return slots;
}();

// Inline here: every member of every element comes through namedProperties.
[[gnu::always_inline]] inline std::optional<Property> findPropertyOfKey(std::string_view key)
{
    for (std::size_t i = keySlot(key); kKeyTable[i] != 0; i = (i + 1) & (kKeySlots - 1)) {
        const std::size_t property = kKeyTable[i] - 1U;
        if (sameKey(kKeys[property], key)) {
            return static_cast<Property>(property);
        }
    }
    return std::nullopt;
}

}  // namespace

std::span<const Property> commonProperties()
{
    return kCommon;
}

std::span<const NodeKind> nodeKinds()
{
    return kKinds;
}

const NodeKind* kindOfCode(uint32_t code)
{
    auto found = std::find_if(kKinds.begin(), kKinds.end(), [code](const NodeKind& kind) { return kind.code == code; });
    return found != kKinds.end() ? &*found : nullptr;
}

uint64_t commonBit(Property property)
{
    return kCommonBits[static_cast<std::size_t>(property)];
}

NamedProperties namedProperties(const Value& element)
{
    NamedProperties named;
    const ValueObject& members = element.object();
    // The kind first: it numbers the own properties.
    auto type = members.find(keyOf(Property::Type));
    named.type = truncateToUint32(type == members.end() ? 0.0 : type->second.number());
    named.kind = kindOfCode(named.type);
    const NodeKind& kind = named.kind != nullptr ? *named.kind : kKinds[0];
    const auto& kindSlots = kKindSlots[static_cast<std::size_t>(&kind - kKinds.data())];
    for (const auto& [key, value] : members) {
        const std::optional<Property> property = findPropertyOfKey(key);
        if (!property) {
            continue;
        }
        if (const uint64_t bit = kCommonBits[static_cast<std::size_t>(*property)]; bit != 0) {
            named.common |= bit;
            named.commonMembers[static_cast<std::size_t>(std::countr_zero(bit))] = &value;
        }
        if (const int slot = kindSlots[static_cast<std::size_t>(*property)]; slot >= 0) {
            named.ownMembers[static_cast<std::size_t>(slot)] = &value;
            named.ownNamed |= uint32_t{1} << slot;
            if (!value.isNull() && isHostValue(info(*property).input)) {
                named.own |= uint32_t{1} << slot;
            }
        }
    }
    return named;
}

const Value& NamedProperties::commonMember(Property property) const
{
    static const Value absent;
    const uint64_t bit = commonBit(property);
    return (common & bit) != 0 ? *commonMembers[static_cast<std::size_t>(std::countr_zero(bit))] : absent;
}

const Value* NamedProperties::ownMember(Property property) const
{
    const int slot = kindSlotOf(kind != nullptr ? *kind : kKinds[0], property);
    const Value* member =
        slot >= 0 && (ownNamed & (uint32_t{1} << slot)) != 0 ? ownMembers[static_cast<std::size_t>(slot)] : nullptr;
    return member != nullptr && !member->isNull() ? member : nullptr;
}

int kindSlotOf(const NodeKind& kind, Property property)
{
    return kKindSlots[static_cast<std::size_t>(&kind - kKinds.data())][static_cast<std::size_t>(property)];
}


std::optional<Property> propertyOfKey(std::string_view key)
{
    return findPropertyOfKey(key);
}

}  // namespace Mero
