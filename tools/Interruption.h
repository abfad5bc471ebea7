#pragma once

/// Lets the user interrupt the program (Ctrl+C, or the system's wish that it ends) where it is at
/// no loss: what works for long asks isInterrupted() and ends. A second time ends it at once. To be
/// called when there is something to lose: before, the first time ends the program at once, amid a
/// query or a read that waits too.
void watchForInterruption();

bool isInterrupted();
