#pragma once

#include <QByteArray>
#include <QString>

/// Makes a copy of a document database as a power cut amid a change leaves it: documents of the
/// change stand in the file, and what undoes it in the journal beside it. The database itself stays
/// as it was. Returns what went wrong.
QByteArray makeInterruptedChange(const QString& database, const QString& copy);
