#pragma once

#include <chrono>

/// Lets the user interrupt the program (Ctrl+C, a closed terminal, or the system's wish that it
/// ends) where it is at no loss: what works for long asks isInterrupted() and ends. If it has not
/// ended within `patience`, as amid a read or a write that waits, the program ends there, without
/// its unfinished files; so it does the second time at once, but with them. What is ignored from
/// the start, as under nohup, stays so. To be called when there is something to lose: before, the
/// first time ends the program at once.
///
/// A reader of the standard output that goes away (`| head`) no longer ends the program either, see
/// noteReaderGone().
void watchForInterruption(std::chrono::seconds patience);

/// Whether the work is to end: on a signal, or since nobody reads what it tells.
bool isInterrupted();

/// To be called when the standard output takes no more since its reader has gone, who wanted no
/// more: the work ends early, and without a word of that.
void noteReaderGone();

bool isReaderGone();
