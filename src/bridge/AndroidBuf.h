// AndroidBuf: the stream buffer that standard output is pointed at, so that
// everything the engine writes there (chiefly reportError's messages) reaches
// the Android log under "mero_log_cpp", one entry per flush.
#pragma once

#include <streambuf>

namespace Mero {

class AndroidBuf : public std::streambuf {
public:
    static constexpr int kBufferSize = 51200;

    AndroidBuf();
    ~AndroidBuf() override = default;

    AndroidBuf(const AndroidBuf&) = delete;
    AndroidBuf& operator=(const AndroidBuf&) = delete;

protected:
    int sync() override;
    int_type overflow(int_type c) override;

private:
    // The put area is one byte short of the buffer, room for the final NUL.
    char buffer_[kBufferSize];
};

// Points standard output at a new AndroidBuf and clears the stream's error
// state.
void redirectStdoutToAndroidLog();

}  // namespace Mero
