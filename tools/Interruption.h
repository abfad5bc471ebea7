#pragma once

/// Lets the user interrupt the program (Ctrl+C, or the system's wish that it ends) where it is at
/// no loss: what works for long asks isInterrupted() and ends. A second time ends it at once.
void watchForInterruption();

bool isInterrupted();
