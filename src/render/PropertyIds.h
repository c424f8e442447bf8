// Host property ids: the numbers under which a node's values reach its host
// component. They are part of the host contract (the host sorts them into
// buffers by hundreds), so the gaps are intended: never renumber.
#pragma once

#include <cstdint>

namespace Mero::PropertyId {

// Layout results, sent by applyLayout. Padding runs left, top, right, bottom;
// border runs left, right, top, bottom.
inline constexpr uint32_t Width = 0;
inline constexpr uint32_t Height = 1;
inline constexpr uint32_t X = 2;
inline constexpr uint32_t Y = 3;
inline constexpr uint32_t PaddingLeft = 4;
inline constexpr uint32_t PaddingTop = 5;
inline constexpr uint32_t PaddingRight = 6;
inline constexpr uint32_t PaddingBottom = 7;
inline constexpr uint32_t BorderLeft = 20;
inline constexpr uint32_t BorderRight = 21;
inline constexpr uint32_t BorderTop = 22;
inline constexpr uint32_t BorderBottom = 23;

// Common style.
inline constexpr uint32_t Opacity = 8;
inline constexpr uint32_t ScaleX = 9;
inline constexpr uint32_t ScaleY = 10;
inline constexpr uint32_t AnchorPointX = 11;
inline constexpr uint32_t AnchorPointY = 12;
inline constexpr uint32_t RotationX = 13;
inline constexpr uint32_t RotationY = 14;
inline constexpr uint32_t RotationZ = 15;
inline constexpr uint32_t CornerLeftTop = 16;
inline constexpr uint32_t CornerRightTop = 17;
inline constexpr uint32_t CornerRightBottom = 18;
inline constexpr uint32_t CornerLeftBottom = 19;
inline constexpr uint32_t TranslateX = 36;
inline constexpr uint32_t TranslateY = 37;
inline constexpr uint32_t BackgroundColor = 201;
inline constexpr uint32_t BorderColor = 202;

// Text.
inline constexpr uint32_t FontSize = 24;
inline constexpr uint32_t LineHeight = 25;
inline constexpr uint32_t TextInterval = 26;
inline constexpr uint32_t MaxLines = 100;
inline constexpr uint32_t FontWeight = 101;
inline constexpr uint32_t TextAlign = 102;
inline constexpr uint32_t Text = 203;
inline constexpr uint32_t TextColor = 204;

// Image.
inline constexpr uint32_t ScaleMode = 103;
inline constexpr uint32_t Src = 206;

// Rating.
inline constexpr uint32_t RatingScore = 28;
inline constexpr uint32_t RatingStarSize = 29;
inline constexpr uint32_t RatingEmptyOpacity = 30;
inline constexpr uint32_t RatingStarColor = 210;

// Blur.
inline constexpr uint32_t BlurRadius = 39;
inline constexpr uint32_t BlurAlpha = 40;

// Custom.
inline constexpr uint32_t Extra = 209;
inline constexpr uint32_t CustomType = 223;

// Download / progress button.
inline constexpr uint32_t ColorNormal = 211;
inline constexpr uint32_t ColorText = 212;
inline constexpr uint32_t ColorInitial = 213;
inline constexpr uint32_t ColorProgress = 214;
inline constexpr uint32_t ColorProgressBackground = 215;
inline constexpr uint32_t TextNormal = 216;
inline constexpr uint32_t TextActive = 217;
inline constexpr uint32_t TextPaused = 218;
inline constexpr uint32_t TextFinished = 219;
inline constexpr uint32_t TextInstalled = 220;

// Swiper ("autoplay" is shared with the video).
inline constexpr uint32_t SwiperDuration = 31;
inline constexpr uint32_t SwiperInterval = 32;
inline constexpr uint32_t SwiperDirection = 104;
inline constexpr uint32_t Circular = 300;
inline constexpr uint32_t Autoplay = 301;
inline constexpr uint32_t Touchable = 302;

// Video (306 is not used).
inline constexpr uint32_t InitTime = 38;
inline constexpr uint32_t FullscreenMode = 106;
inline constexpr uint32_t DisplayMode = 107;
inline constexpr uint32_t CacheSize = 108;
inline constexpr uint32_t VideoModel = 224;
inline constexpr uint32_t VideoId = 225;
inline constexpr uint32_t PlayUrl = 226;
inline constexpr uint32_t Token = 227;
inline constexpr uint32_t Domain = 228;
inline constexpr uint32_t Poster = 229;
inline constexpr uint32_t PreloadKey = 230;
inline constexpr uint32_t Tag = 231;
inline constexpr uint32_t SubTag = 232;
inline constexpr uint32_t Muted = 303;
inline constexpr uint32_t Loop = 304;
inline constexpr uint32_t PauseOnHide = 305;
inline constexpr uint32_t AutoPrepare = 307;

}  // namespace Mero::PropertyId
