#pragma once

#include <QStringList>

class QTextStream;

/// The companion program that prints documents without a window. `arguments` are those of the
/// command line without the program's name. Finished files are named on `out`, errors go to `err`.
/// Returns the exit status: 0 when all was printed, 1 when some documents were not, 2 when the job
/// could not be done.
int runPrintTool(const QStringList& arguments, QTextStream& out, QTextStream& err);
