#pragma once

#include <QtGlobal>

class QElapsedTimer;
class QFile;

/// True if one of the arguments, the program's name included, is "--v" in letters of any case.
bool versionRequested(int argc, const char* const* argv);

/// Writes the version and a line end to standard output.
void printVersion();

/// Milliseconds that the splash has still to stand after `elapsedMs` of its 2000; 0 if what is left
/// is not worth an event loop. An invalid timer counts as one that has just been started.
int remainingSplashMs(bool timerValid, qint64 elapsedMs);

/// Keeps the event loop running until the splash, shown when the timer was started, has had its
/// time.
void holdSplash(const QElapsedTimer& shown);

/// Applies the update package if it stands at its place; without one nothing is done.
void applyPendingUpdate(QFile& package);

/// The whole program: start-up in its order, the main window, the event loop. Returns the exit code
/// of the process. No failure on the way ends it. `argc` and `argv` must stay valid for as long as
/// the call runs; Qt takes its own options out of them.
int runApplication(int& argc, char** argv);
