#pragma once

#include <QStringList>

class QTextStream;

/// The companion program for the database: creates an empty one or a whole sample directory, and
/// checks an existing one. `arguments` are those of the command line without the program's name.
/// Results go to `out`, errors to `err`. Returns the exit status: 0 when all is well, 1 when a
/// check has findings, 2 when the job could not be done.
int runDatabaseTool(const QStringList& arguments, QTextStream& out, QTextStream& err);
