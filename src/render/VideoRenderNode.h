// VideoRenderNode (type code 10): a video player. Properties are bound in
// table order.
#pragma once

#include <array>

#include "render/PropertyIds.h"
#include "render/ViewRenderNode.h"

namespace Mero {

class VideoRenderNode : public ViewRenderNode {
public:
    enum Slot : std::size_t {
        VideoModel,
        VideoId,
        PlayUrl,
        Token,
        Domain,
        Poster,
        Autoplay,
        Muted,
        Loop,
        PauseOnHide,
        AutoPrepare,
        DisplayMode,
        FullscreenMode,
        InitTime,
        PreloadKey,
        CacheSize,
        Tag,
        SubTag,
        SlotCount
    };
    static constexpr std::array<LeafProperty, SlotCount> propertyTable{{
        leafText("videoModel", PropertyId::VideoModel),
        leafText("videoId", PropertyId::VideoId),
        leafText("playUrl", PropertyId::PlayUrl),
        leafText("token", PropertyId::Token),
        leafText("domain", PropertyId::Domain),
        leafText("poster", PropertyId::Poster),
        leafBool("autoplay", PropertyId::Autoplay),
        leafBool("muted", PropertyId::Muted),
        leafBool("loop", PropertyId::Loop),
        leafBool("pauseOnHide", PropertyId::PauseOnHide),
        leafBool("autoPrepare", PropertyId::AutoPrepare),
        leafNumber("displayMode", PropertyId::DisplayMode),
        leafNumber("fullscreenMode", PropertyId::FullscreenMode),
        leafNumber("initTime", PropertyId::InitTime),
        leafText("preloadKey", PropertyId::PreloadKey),
        leafNumber("cacheSize", PropertyId::CacheSize),
        leafText("tag", PropertyId::Tag),
        leafText("subTag", PropertyId::SubTag),
    }};

    VideoRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree, LocalScope localScope)
        : ViewRenderNode(element, parentNode, renderTree, std::move(localScope))
    {
        bindLeafProperties(element, propertyTable, values);
    }

    std::array<Value, SlotCount> values;
};

}  // namespace Mero
