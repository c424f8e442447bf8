#include "bridge/AndroidBuf.h"

#include <cstring>
#include <iostream>

#include "bridge/AndroidLog.h"
#include "bridge/BridgeLog.h"

namespace Mero {

AndroidBuf::AndroidBuf()
{
    setp(buffer_, buffer_ + kBufferSize - 1);
}

int AndroidBuf::sync()
{
    if (pptr() == pbase()) {
        return 0;
    }
    const size_t length = static_cast<size_t>(pptr() - pbase());
    char text[kBufferSize + 1];
    std::memcpy(text, pbase(), length);
    text[length] = '\0';

    int result = 0;
    if (logEnabled) {
        result = __android_log_write(ANDROID_LOG_DEBUG, "mero_log_cpp", text) > 0 ? 1 : 0;
    }
    setp(buffer_, buffer_ + kBufferSize - 1);
    return result;
}

AndroidBuf::int_type AndroidBuf::overflow(int_type c)
{
    // Long-standing behaviour, kept on purpose: an end-of-file marker is
    // stored as the byte 0xFF, the character that overflowed is never stored,
    // and a successful log write is answered with end-of-file (which sets the
    // stream's error state until the next initMREngine clears it).
    const bool isEof = traits_type::eq_int_type(c, traits_type::eof());
    if (isEof) {
        *pptr() = static_cast<char>(0xFF);
        pbump(1);
    }
    if (sync() != 0) {
        return traits_type::eof();
    }
    return isEof ? 0 : c;
}

void redirectStdoutToAndroidLog()
{
    // Only the newest buffer is kept: once standard output points at its
    // successor nothing can reach the old one, and a process that creates
    // thousands of cards must not keep 50 KiB for each. Text still pending in
    // the old buffer is dropped, as it always was. Never freed at exit, since
    // the standard streams are flushed after static destructors run.
    static AndroidBuf* current = nullptr;
    AndroidBuf* previous = current;
    current = new AndroidBuf();
    std::cout.rdbuf(current);
    std::cout.clear();
    delete previous;
}

}  // namespace Mero
