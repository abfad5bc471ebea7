#pragma once

#include <QString>

class QTextStream;

/// Makes a program speak the language of its user (see Translation): the system's locale decides.
/// The application object must exist.
void useUserLanguage();

/// Writes all that a stream of the standard output holds back; false, with what to say of it in
/// `error`, if the output took not all that went there.
bool flushOutput(QTextStream& out, QString* error);

/// Lets a stream to a terminal write Cyrillic letters: one whose encoding has none (the "C" locale)
/// still gets readable UTF-8.
void prepareTerminal(QTextStream& stream);
