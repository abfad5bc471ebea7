#pragma once

#include <QString>

class QTextStream;

/// Makes a program speak the language of its user (see Translation): the system's locale decides.
/// The application object must exist.
void useUserLanguage();

/// Writes all that a stream of the standard output holds back; false, with what to say of it in
/// `error` (may be null), if the output took not all that went there. See noteReaderGone() too.
bool flushOutput(QTextStream& out, QString* error = nullptr);
