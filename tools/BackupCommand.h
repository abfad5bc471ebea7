#pragma once

#include <QStringList>

class QTextStream;

/// The command "backup" of the companion program for the database. `arguments` are those behind the
/// command's name: the database, the folder, and perhaps how many archives are to be kept. Tells on
/// `out` what was made and removed, and on `err`, in one line, what could not be done. True if all
/// was done.
bool runBackupCommand(const QStringList& arguments, QTextStream& out, QTextStream& err);
