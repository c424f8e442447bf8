// Small JNI helpers shared by the natives and the host calls: the host's
// class names, and Java strings read and made as UTF-8 (through UTF-16, not
// JNI's modified UTF-8: see Utf16.h). No JNI error is checked anywhere: a null class or method id, or a
// pending Java exception, is passed on to the next call.
#pragma once

#include <jni.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "bridge/Utf16.h"

namespace Mero {

inline constexpr const char* kMeroNativeClass = "com/fernwick/android/ad/mero/native/MeroNative";
inline constexpr const char* kComponentClass = "com/fernwick/android/ad/mero/MRComponent";
inline constexpr const char* kGradientInfoClass = "com/fernwick/android/ad/mero/components/GradientInfo";
inline constexpr const char* kSwiperComponentClass = "com/fernwick/android/ad/mero/components/swiper/MRSwiperComponent";

// A Java string's text as UTF-8, read for the length of one native.
class JniUtfString {
public:
    JniUtfString(JNIEnv* env, jstring text)
    {
        if (text != nullptr) {
            std::u16string units(static_cast<size_t>(env->GetStringLength(text)), u'\0');
            env->GetStringRegion(text, 0, static_cast<jsize>(units.size()), reinterpret_cast<jchar*>(units.data()));
            text_ = utf8FromUtf16(units);
        }
    }

    // A null Java string reads as empty.
    std::string_view view() const { return text_; }
    std::string str() const { return text_; }

private:
    std::string text_;
};

inline jstring newJavaString(JNIEnv* env, std::string_view text)
{
    // Most texts are short (a view's ids, colours, words): their units go on
    // the stack instead of into a string of their own.
    constexpr std::size_t kShortText = 128;
    if (text.size() <= kShortText) {
        std::array<char16_t, kShortText> units;
        const std::size_t length = utf16FromUtf8(text, units.data());
        return env->NewString(reinterpret_cast<const jchar*>(units.data()), static_cast<jsize>(length));
    }
    const std::u16string units = utf16FromUtf8(text);
    return env->NewString(reinterpret_cast<const jchar*>(units.data()), static_cast<jsize>(units.size()));
}

}  // namespace Mero
