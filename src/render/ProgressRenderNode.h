// ProgressRenderNode (type code 6): the download / progress button. Its
// colours may animate; its texts and font do not.
#pragma once

#include <array>

#include "render/PropertyIds.h"
#include "render/ViewRenderNode.h"

namespace Mero {

class ProgressRenderNode : public ViewRenderNode {
public:
    enum Slot : std::size_t {
        FontSize,
        FontWeight,
        ColorNormal,
        ColorText,
        ColorInitial,
        ColorProgress,
        ColorProgressBackground,
        TextNormal,
        TextActive,
        TextPaused,
        TextFinished,
        TextInstalled,
        SlotCount
    };
    static constexpr std::array<LeafProperty, SlotCount> propertyTable{{
        leafSize("fontSize", PropertyId::FontSize),
        leafNumber("fontWeight", PropertyId::FontWeight),
        leafText("dl_color_normal", PropertyId::ColorNormal, {}, Animatable),
        leafText("dl_color_text", PropertyId::ColorText, {}, Animatable),
        leafText("dl_color_initial", PropertyId::ColorInitial, {}, Animatable),
        leafText("dl_color_progress", PropertyId::ColorProgress, {}, Animatable),
        leafText("dl_color_progressBg", PropertyId::ColorProgressBackground, {}, Animatable),
        leafText("dl_text_normal", PropertyId::TextNormal),
        leafText("dl_text_active", PropertyId::TextActive),
        leafText("dl_text_paused", PropertyId::TextPaused),
        leafText("dl_text_finished", PropertyId::TextFinished),
        leafText("dl_text_installed", PropertyId::TextInstalled),
    }};

    ProgressRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                       LocalScope localScope);

    Value businessData;  // kept as the template gives it, unevaluated
    std::array<Value, SlotCount> values;
};

}  // namespace Mero
