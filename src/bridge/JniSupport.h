// Small JNI helpers shared by the natives and the host calls: the host's
// class names, and Java strings read as modified UTF-8 and released on scope
// exit. No JNI error is checked anywhere: a null class or method id, or a
// pending Java exception, is passed on to the next call.
#pragma once

#include <jni.h>

#include <string>
#include <string_view>

namespace Mero {

inline constexpr const char* kMeroNativeClass = "com/fernwick/android/ad/mero/native/MeroNative";
inline constexpr const char* kComponentClass = "com/fernwick/android/ad/mero/MRComponent";
inline constexpr const char* kGradientInfoClass = "com/fernwick/android/ad/mero/components/GradientInfo";
inline constexpr const char* kSwiperComponentClass = "com/fernwick/android/ad/mero/components/swiper/MRSwiperComponent";

// A Java string's modified-UTF-8 bytes, held for the length of one native.
class JniUtfString {
public:
    JniUtfString(JNIEnv* env, jstring text)
        : env_(env), text_(text), chars_(text != nullptr ? env->GetStringUTFChars(text, nullptr) : nullptr)
    {}
    ~JniUtfString()
    {
        if (chars_ != nullptr) {
            env_->ReleaseStringUTFChars(text_, chars_);
        }
    }
    JniUtfString(const JniUtfString&) = delete;
    JniUtfString& operator=(const JniUtfString&) = delete;

    // A null Java string reads as empty.
    std::string_view view() const { return chars_ != nullptr ? std::string_view(chars_) : std::string_view(); }
    std::string str() const { return std::string(view()); }

private:
    JNIEnv* env_;
    jstring text_;
    const char* chars_;
};

inline jstring newJavaString(JNIEnv* env, const std::string& text)
{
    return env->NewStringUTF(text.c_str());
}

}  // namespace Mero
