// Every property an element can have, once: its template key, its host id,
// how its value is read and where it goes, what a change does, and its
// default. The C++ host ids (PropertyId), the binding of every node kind,
// the slots a host view is made from, the Java constants of the host (made
// from this file by the build) and the template checker all read it here.
//
// Host ids are the host contract: the host sorts them into buffers by
// hundreds (0-99 floats, 100-199 ints, 200-299 strings, 300-399 booleans, at
// id mod 100), so the gaps are intended. Padding ids run left, top, right,
// bottom; border ids left, right, top, bottom.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Mero {

// How an element's value is read, and where it goes.
enum class PropertyInput : uint8_t {
    Visibility,    // a boolean: the node is shown or hidden
    YogaSize,      // a size to Yoga: points, percent or auto
    YogaLength,    // a size to Yoga: points or percent
    YogaPoints,    // a size to Yoga: points only
    YogaNumber,    // a number to Yoga
    YogaEnum,      // a number truncated to one of Yoga's enumerations
    Size,          // a size, turned into a number for the host
    Number,        // a number for the host
    Text,          // a string for the host
    Bool,          // a boolean for the host
    LayoutResult,  // no template key: a laid-out value the host receives
    Name,          // a string read once (ids, event names, local names)
    Flag,          // a boolean read once
    Literal,       // kept as the template gives it, never evaluated
    EvaluatedOnce, // an expression evaluated once, at construction
    Transitions,   // the "transition" record
    Children,      // the child elements
    TypeCode,      // the element's "$"
};

enum PropertyFlag : uint8_t {
    NoFlags = 0,
    // A change lays the card out again at the next flush.
    AffectsLayout = 1,
    // A change measures the node's content again (text, when it has a
    // measure function) and so lays the card out again.
    Remeasure = 2,
    // A change is animated when "transition" names the transition key (or
    // holds "all").
    Animatable = 4,
    // Animated only by the transition key itself: "all" does not apply.
    OwnTransitionOnly = 8,
};

// ROW(Enum, "key", hostId, Input, Flags, "transitionKey", numberDefault, "textDefault")
// hostId is -1 where the host receives nothing under an id. A kind binds its
// properties in the order of its list in NodeKinds.cpp, not of this table.
#define MERO_PROPERTIES(ROW)                                                                           \
    ROW(Type, "$", -1, TypeCode, NoFlags, "", 0, "")                                                   \
    ROW(NodeId, "nodeId", -1, Name, NoFlags, "", 0, "")                                                \
    ROW(OnClick, "onClick", -1, Name, NoFlags, "", 0, "")                                              \
    ROW(IsEmpty, "isEmpty", -1, Flag, NoFlags, "", 0, "")                                              \
    ROW(Transition, "transition", -1, Transitions, NoFlags, "", 0, "")                                 \
    ROW(LoopAnimation, "loopAnimation", -1, EvaluatedOnce, NoFlags, "", 0, "")                         \
    ROW(Visible, "visible", -1, Visibility, AffectsLayout, "", 1, "")                                  \
    ROW(Width, "width", 0, YogaSize, AffectsLayout | Animatable, "width", 0, "")                       \
    ROW(Height, "height", 1, YogaSize, AffectsLayout | Animatable, "height", 0, "")                    \
    ROW(X, "x", 2, LayoutResult, Animatable | OwnTransitionOnly, "x", 0, "")                           \
    ROW(Y, "y", 3, LayoutResult, Animatable | OwnTransitionOnly, "y", 0, "")                           \
    ROW(MinWidth, "minWidth", -1, YogaLength, AffectsLayout, "", 0, "")                                \
    ROW(MinHeight, "minHeight", -1, YogaLength, AffectsLayout, "", 0, "")                              \
    ROW(MaxWidth, "maxWidth", -1, YogaLength, AffectsLayout, "", 0, "")                                \
    ROW(MaxHeight, "maxHeight", -1, YogaLength, AffectsLayout, "", 0, "")                              \
    ROW(MarginLeft, "marginLeft", -1, YogaLength, AffectsLayout, "", 0, "")                            \
    ROW(MarginTop, "marginTop", -1, YogaLength, AffectsLayout, "", 0, "")                              \
    ROW(MarginRight, "marginRight", -1, YogaLength, AffectsLayout, "", 0, "")                          \
    ROW(MarginBottom, "marginBottom", -1, YogaLength, AffectsLayout, "", 0, "")                        \
    ROW(PaddingLeft, "paddingLeft", 4, YogaLength, AffectsLayout, "", 0, "")                           \
    ROW(PaddingTop, "paddingTop", 5, YogaLength, AffectsLayout, "", 0, "")                             \
    ROW(PaddingRight, "paddingRight", 6, YogaLength, AffectsLayout, "", 0, "")                         \
    ROW(PaddingBottom, "paddingBottom", 7, YogaLength, AffectsLayout, "", 0, "")                       \
    ROW(BorderLeft, "borderLeft", 20, YogaPoints, AffectsLayout, "", 0, "")                            \
    ROW(BorderTop, "borderTop", 22, YogaPoints, AffectsLayout, "", 0, "")                              \
    ROW(BorderRight, "borderRight", 21, YogaPoints, AffectsLayout, "", 0, "")                          \
    ROW(BorderBottom, "borderBottom", 23, YogaPoints, AffectsLayout, "", 0, "")                        \
    ROW(Position, "position", -1, YogaNumber, AffectsLayout, "", 0, "")                                \
    ROW(Left, "left", -1, YogaLength, AffectsLayout, "", 0, "")                                        \
    ROW(Top, "top", -1, YogaLength, AffectsLayout, "", 0, "")                                          \
    ROW(Right, "right", -1, YogaLength, AffectsLayout, "", 0, "")                                      \
    ROW(Bottom, "bottom", -1, YogaLength, AffectsLayout, "", 0, "")                                    \
    ROW(FlexGrow, "flexGrow", -1, YogaNumber, AffectsLayout, "", 0, "")                                \
    ROW(FlexShrink, "flexShrink", -1, YogaNumber, AffectsLayout, "", 0, "")                            \
    ROW(CornerLeftTop, "cornerLeftTop", 16, Size, NoFlags, "", 0, "")                                  \
    ROW(CornerRightTop, "cornerRightTop", 17, Size, NoFlags, "", 0, "")                                \
    ROW(CornerRightBottom, "cornerRightBottom", 18, Size, NoFlags, "", 0, "")                          \
    ROW(CornerLeftBottom, "cornerLeftBottom", 19, Size, NoFlags, "", 0, "")                            \
    ROW(BackgroundColor, "backgroundColor", 201, Text, Animatable, "backgroundColor", 0, "#00000000")  \
    ROW(Opacity, "opacity", 8, Number, Animatable, "opacity", 1, "")                                   \
    ROW(BorderColor, "borderColor", 202, Text, NoFlags, "", 0, "#000000FF")                            \
    ROW(ScaleX, "scaleX", 9, Number, Animatable, "transform", 1, "")                                   \
    ROW(ScaleY, "scaleY", 10, Number, Animatable, "transform", 1, "")                                  \
    ROW(AnchorPointX, "anchorPointX", 11, Number, Animatable, "transform", 0.5, "")                    \
    ROW(AnchorPointY, "anchorPointY", 12, Number, Animatable, "transform", 0.5, "")                    \
    ROW(RotationX, "rotationX", 13, Number, Animatable, "transform", 0, "")                            \
    ROW(RotationY, "rotationY", 14, Number, Animatable, "transform", 0, "")                            \
    ROW(RotationZ, "rotationZ", 15, Number, Animatable, "transform", 0, "")                            \
    ROW(TranslateX, "translateX", 36, Number, Animatable, "transform", 0, "")                          \
    ROW(TranslateY, "translateY", 37, Number, Animatable, "transform", 0, "")                          \
    ROW(BackgroundGradient, "backgroundGradient", -1, Literal, NoFlags, "", 0, "")                     \
    ROW(Children, "children", -1, Children, NoFlags, "", 0, "")                                        \
    ROW(FlexDirection, "flexDirection", -1, YogaEnum, AffectsLayout, "", 2, "")                        \
    ROW(JustifyContent, "justifyContent", -1, YogaEnum, AffectsLayout, "", 0, "")                      \
    ROW(AlignItems, "alignItems", -1, YogaEnum, AffectsLayout, "", 1, "")                              \
    ROW(AlignContent, "alignContent", -1, YogaEnum, AffectsLayout, "", 1, "")                          \
    ROW(FlexWrap, "flexWrap", -1, YogaEnum, AffectsLayout, "", 0, "")                                  \
    ROW(List, "list", -1, EvaluatedOnce, NoFlags, "", 0, "")                                           \
    ROW(Index, "index", -1, Name, NoFlags, "", 0, "")                                                  \
    ROW(Item, "item", -1, Name, NoFlags, "", 0, "")                                                    \
    ROW(OnSwiperChange, "onSwiperChange", -1, Literal, NoFlags, "", 0, "")                             \
    ROW(SwiperDuration, "duration", 31, Number, NoFlags, "", 0, "")                                    \
    ROW(SwiperInterval, "interval", 32, Number, NoFlags, "", 0, "")                                    \
    ROW(Autoplay, "autoplay", 301, Bool, NoFlags, "", 0, "")                                           \
    ROW(Circular, "circular", 300, Bool, NoFlags, "", 0, "")                                           \
    ROW(SwiperDirection, "swiperDirection", 104, Number, NoFlags, "", 0, "")                           \
    ROW(Touchable, "touchable", 302, Bool, NoFlags, "", 0, "")                                         \
    ROW(Text, "text", 203, Text, Remeasure, "", 0, "")                                                 \
    ROW(TextColor, "textColor", 204, Text, NoFlags, "", 0, "#000000FF")                                \
    ROW(MaxLines, "maxLines", 100, Number, Remeasure, "", 0, "")                                       \
    ROW(TextAlign, "textAlign", 102, Number, NoFlags, "", 0, "")                                       \
    ROW(FontWeight, "fontWeight", 101, Number, NoFlags, "", 0, "")                                     \
    ROW(FontSize, "fontSize", 24, Size, Remeasure, "", 0, "")                                          \
    ROW(LineHeight, "lineHeight", 25, Size, Remeasure, "", 0, "")                                      \
    ROW(TextInterval, "textInterval", 26, Size, Remeasure, "", 0, "")                                  \
    ROW(Src, "src", 206, Text, NoFlags, "", 0, "")                                                     \
    ROW(ScaleMode, "scaleMode", 103, Number, NoFlags, "", 0, "")                                       \
    ROW(RatingScore, "rating_score", 28, Number, NoFlags, "", 0, "")                                   \
    ROW(RatingStarColor, "rating_star_color", 210, Text, NoFlags, "", 0, "")                           \
    ROW(RatingStarSize, "rating_star_size", 29, Number, NoFlags, "", 0, "")                            \
    ROW(RatingEmptyOpacity, "rating_empty_opacity", 30, Number, NoFlags, "", 0, "")                    \
    ROW(BlurRadius, "blurRadius", 39, Number, NoFlags, "", 0, "")                                      \
    ROW(BlurAlpha, "blurAlpha", 40, Number, NoFlags, "", 0, "")                                        \
    ROW(CustomType, "customType", 223, Text, NoFlags, "", 0, "")                                       \
    ROW(Extra, "extra", 209, Text, NoFlags, "", 0, "")                                                 \
    ROW(BusinessData, "businessData", -1, Literal, NoFlags, "", 0, "")                                 \
    ROW(DlColorNormal, "dl_color_normal", 211, Text, Animatable, "dl_color_normal", 0, "")             \
    ROW(DlColorText, "dl_color_text", 212, Text, Animatable, "dl_color_text", 0, "")                   \
    ROW(DlColorInitial, "dl_color_initial", 213, Text, Animatable, "dl_color_initial", 0, "")          \
    ROW(DlColorProgress, "dl_color_progress", 214, Text, Animatable, "dl_color_progress", 0, "")       \
    ROW(DlColorProgressBg, "dl_color_progressBg", 215, Text, Animatable, "dl_color_progressBg", 0, "") \
    ROW(DlTextNormal, "dl_text_normal", 216, Text, NoFlags, "", 0, "")                                 \
    ROW(DlTextActive, "dl_text_active", 217, Text, NoFlags, "", 0, "")                                 \
    ROW(DlTextPaused, "dl_text_paused", 218, Text, NoFlags, "", 0, "")                                 \
    ROW(DlTextFinished, "dl_text_finished", 219, Text, NoFlags, "", 0, "")                             \
    ROW(DlTextInstalled, "dl_text_installed", 220, Text, NoFlags, "", 0, "")                           \
    ROW(VideoModel, "videoModel", 224, Text, NoFlags, "", 0, "")                                       \
    ROW(VideoId, "videoId", 225, Text, NoFlags, "", 0, "")                                             \
    ROW(PlayUrl, "playUrl", 226, Text, NoFlags, "", 0, "")                                             \
    ROW(Token, "token", 227, Text, NoFlags, "", 0, "")                                                 \
    ROW(Domain, "domain", 228, Text, NoFlags, "", 0, "")                                               \
    ROW(Poster, "poster", 229, Text, NoFlags, "", 0, "")                                               \
    ROW(Muted, "muted", 303, Bool, NoFlags, "", 0, "")                                                 \
    ROW(Loop, "loop", 304, Bool, NoFlags, "", 0, "")                                                   \
    ROW(PauseOnHide, "pauseOnHide", 305, Bool, NoFlags, "", 0, "")                                     \
    ROW(AutoPrepare, "autoPrepare", 307, Bool, NoFlags, "", 0, "")                                     \
    ROW(DisplayMode, "displayMode", 107, Number, NoFlags, "", 0, "")                                   \
    ROW(FullscreenMode, "fullscreenMode", 106, Number, NoFlags, "", 0, "")                             \
    ROW(InitTime, "initTime", 38, Number, NoFlags, "", 0, "")                                          \
    ROW(PreloadKey, "preloadKey", 230, Text, NoFlags, "", 0, "")                                       \
    ROW(CacheSize, "cacheSize", 108, Number, NoFlags, "", 0, "")                                       \
    ROW(Tag, "tag", 231, Text, NoFlags, "", 0, "")                                                     \
    ROW(SubTag, "subTag", 232, Text, NoFlags, "", 0, "")

enum class Property : uint8_t {
#define MERO_PROPERTY_ENUM(name, key, id, input, flags, transition, number, text) name,
    MERO_PROPERTIES(MERO_PROPERTY_ENUM)
#undef MERO_PROPERTY_ENUM
};

struct PropertyInfo {
    Property property;
    std::string_view name;  // the enumerator's name: "AnchorPointX"
    std::string_view key;
    int32_t hostId;  // -1: none
    PropertyInput input;
    uint8_t flags;
    std::string_view transitionKey;  // empty: never animated
    double numberDefault;
    std::string_view textDefault;

    bool has(PropertyFlag flag) const { return (flags & flag) != 0; }
};

inline constexpr std::array kProperties{
#define MERO_PROPERTY_ROW(name, key, id, input, flags, transition, number, text) \
    PropertyInfo{Property::name, #name, key, id, PropertyInput::input, static_cast<uint8_t>(flags), transition, number, text},
    MERO_PROPERTIES(MERO_PROPERTY_ROW)
#undef MERO_PROPERTY_ROW
};

constexpr const PropertyInfo& info(Property property)
{
    return kProperties[static_cast<std::size_t>(property)];
}

constexpr std::string_view keyOf(Property property)
{
    return info(property).key;
}

// Whether a property's template value goes to Yoga (its host id, if any, is
// then that of its laid-out result).
constexpr bool isYogaInput(PropertyInput input)
{
    return input == PropertyInput::YogaSize || input == PropertyInput::YogaLength ||
           input == PropertyInput::YogaPoints || input == PropertyInput::YogaNumber ||
           input == PropertyInput::YogaEnum;
}

// Whether a kind's own property of this input is kept by its node, as the
// value its host view is made from.
constexpr bool isHostValue(PropertyInput input)
{
    return input == PropertyInput::Text || input == PropertyInput::Number || input == PropertyInput::Bool ||
           input == PropertyInput::Size || input == PropertyInput::Literal;
}

// The host id of a property that has one; for the properties below it is
// known at compile time.
constexpr uint32_t hostIdOf(Property property)
{
    return static_cast<uint32_t>(info(property).hostId);
}

// The property of a template key, when it has one.
std::optional<Property> propertyOfKey(std::string_view key);

// The host ids, by name: PropertyId::Opacity is 8. A property the host
// receives nothing under has kNoHostId.
inline constexpr uint32_t kNoHostId = static_cast<uint32_t>(-1);
namespace PropertyId {
#define MERO_PROPERTY_ID(name, key, id, input, flags, transition, number, text) \
    inline constexpr uint32_t name = static_cast<uint32_t>(id);
MERO_PROPERTIES(MERO_PROPERTY_ID)
#undef MERO_PROPERTY_ID
}  // namespace PropertyId

}  // namespace Mero
