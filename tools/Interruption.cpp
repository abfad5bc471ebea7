#include "tools/Interruption.h"

#include <atomic>
#include <csignal>
#include <thread>

#include "app/UnfinishedFile.h"

namespace {

// Lock-free, as what a signal handler touches must be; read by another thread too.
std::atomic<int> interruption{0}; // the signal; 0: none
bool readerGone = false;

/// Ends the program in the place of what is stuck.
void guard(std::chrono::seconds patience)
{
    constexpr std::chrono::milliseconds pause(100);
    while (interruption == 0) {
        std::this_thread::sleep_for(pause);
    }
    std::this_thread::sleep_for(patience);
    UnfinishedFile::removeAll();
    std::signal(interruption, SIG_DFL);
    std::raise(interruption);
}

} // namespace

extern "C" {
static void noteInterruption(int signal)
{
    interruption = signal;
    std::signal(signal, SIG_DFL);
}
}

namespace {

void watch(int signal)
{
    if (std::signal(signal, noteInterruption) == SIG_IGN) {
        std::signal(signal, SIG_IGN);
    }
}

} // namespace

void watchForInterruption(std::chrono::seconds patience)
{
    watch(SIGINT);
    watch(SIGTERM);
#ifdef SIGHUP
    watch(SIGHUP);
#endif
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN); // what writes sees the error
#endif
    std::thread(guard, patience).detach();
}

bool isInterrupted()
{
    return interruption != 0 || readerGone;
}

void noteReaderGone()
{
    readerGone = true;
}

bool isReaderGone()
{
    return readerGone;
}
