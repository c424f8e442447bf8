// The services only the host can give, as the engine sees them.
//
// The engine instance installs one callable per service on its RuntimeEngine
// (RuntimeEngine::services); an engine without an instance (tests, tools) installs
// its own. An empty hook means "no host": each caller says what it then does.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "value/Value.h"

namespace Mero {

// A text-measurement request, filled by a text node's measure function.
struct TextContent {
    double width = 0.0;
    double height = 0.0;
    int32_t widthMode = 0;
    int32_t heightMode = 0;
    const std::string* text = nullptr;  // the node's own string, not owned
    double fontSize = 0.0;
    double lineHeight = 0.0;
    double textInterval = 0.0;
    int32_t maxLines = 0;
    int32_t textStyle = 0;   // sent beside maxLines: the text's font weight (see TextRenderNode)
    int32_t fontWeight = 0;  // travels in the record, not sent to the host
    int32_t reserved = 0;
};

// A job the host runs later (timeouts, video-time points).
using PendingJob = std::function<void()>;

// One video-time point: (time in seconds, job).
using VideoTimerEntry = std::pair<double, PendingJob>;
using VideoTimerList = std::vector<VideoTimerEntry>;
using VideoTimerListPtr = std::unique_ptr<VideoTimerList>;

// Receives a bridge reply once, by move.
using BridgeReply = std::function<void(Value&&)>;

struct RuntimeServices {
    // (text) -> (width, height)
    std::function<std::pair<double, double>(const TextContent&)> measureText;
    // (delay in milliseconds, job)
    std::function<void(double, PendingJob)> setTimeout;
    // (first, second, the whole list, moved)
    std::function<void(double, double, VideoTimerListPtr)> startVideoTimer;
    // (message)
    std::function<void(const std::string&)> log;
    // (method name, params, reply handler)
    std::function<void(const std::string&, const Value&, BridgeReply)> callBridge;
    // (method name, params, key path, reply handler)
    std::function<void(const std::string&, const Value&, const Value&, BridgeReply)> callBridgeWithKeyPath;
};

}  // namespace Mero
