#include "platform/FileSizeLimit.h"

#ifndef _WIN32
#include <csignal>
#endif

namespace lorvane {

void FailWritesBeyondTheFileSizeLimit() {
#ifndef _WIN32
    // Without the signal the write returns EFBIG, the error a stream reports as a failed write.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
}

} // namespace lorvane
