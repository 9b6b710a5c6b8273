#include "shell/startup_log.h"

#include <QElapsedTimer>
#include <QtGlobal>
#include <cstdio>
#include <ctime>

namespace quillop {

void startupMark(const char* what) {
    static const bool enabled = qEnvironmentVariableIntValue("QUILLOP_STARTUP_LOG") != 0;
    static QElapsedTimer clock;
    if (!enabled) return;
    if (!clock.isValid()) {
        clock.start();
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        std::fprintf(stderr, "startup epoch ns %lld\n", now.tv_sec * 1000000000LL + now.tv_nsec);
    }
    std::fprintf(stderr, "startup %7.1f ms  %s\n", clock.nsecsElapsed() / 1e6, what);
}

}  // namespace quillop
