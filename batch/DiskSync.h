#pragma once

class QFile;

/// Waits until all that was written to the open file is on the disk, where a power cut leaves it.
/// False if it can't be written there.
bool syncToDisk(QFile& file);
