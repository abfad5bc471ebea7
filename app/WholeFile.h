#pragma once

#include <QByteArray>
#include <QString>

class QSaveFile;

// Files that come to be whole or not at all: until the last byte is written, an older file of the
// name stands as it was.

/// Gives the written file its name. False if not all of it could be written; an older file is then
/// as it was. QSaveFile::commit() alone overlooks a failure to write what it still held back.
bool commitWhole(QSaveFile& file);

/// Writes a file of this content. On failure puts the system's reason into `error` (may be null).
bool writeWholeFile(const QString& path, const QByteArray& content, QString* error = nullptr);
