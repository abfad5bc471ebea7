#pragma once

#include <QStringList>

class QTextStream;

/// The companion program for update packages: makes one from a manifest and prints one as a
/// manifest. `arguments` are those of the command line without the program's name. Results go to
/// `out`, errors to `err`. Returns the exit status: 0 when all is well, 2 when the job could not
/// be done.
int runUpdateTool(const QStringList& arguments, QTextStream& out, QTextStream& err);
