#include "tools/Interruption.h"

#include <csignal>

namespace {

volatile std::sig_atomic_t interrupted = 0;

} // namespace

extern "C" {
static void noteInterruption(int signal)
{
    interrupted = 1;
    std::signal(signal, SIG_DFL);
}
}

void watchForInterruption()
{
    std::signal(SIGINT, noteInterruption);
    std::signal(SIGTERM, noteInterruption);
}

bool isInterrupted()
{
    return interrupted != 0;
}
