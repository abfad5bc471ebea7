#pragma once

#include <QString>

class QTextStream;

/// One of two wordings of a message: the Russian one if the user's locale is Russian, the English
/// one otherwise.
QString inUserLanguage(const QString& russian, const QString& english);

/// Writes all that a stream of the standard output holds back; false, with what to say of it in
/// `error` (may be null), if the output took not all that went there. See noteReaderGone() too.
bool flushOutput(QTextStream& out, QString* error = nullptr);

/// Lets a stream to a terminal write Cyrillic letters: one whose encoding has none (the "C" locale)
/// still gets readable UTF-8.
void prepareTerminal(QTextStream& stream);
