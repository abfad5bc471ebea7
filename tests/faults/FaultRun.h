#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

/// A call on a file below a directory that is made to fail, see FaultShim.cpp.
struct Fault
{
    QString mode; ///< "enospc", "eio", "eacces", "half", "full", "gone", "exit" or "kill"
    int at = 0;   ///< number of the call, from 1; 0: none fails
};

/// All modes.
const QStringList& faultModes();

/// What became of a program with a fault.
struct FaultRun
{
    QString struck;        ///< the call that failed and its number; empty: there were not so many
    bool isEnded = false;  ///< it came to an end of its own
    int exitCode = -1;     ///< if it did
    bool isPlanned = true; ///< it came to that end that the fault leaves it
    QStringList out;       ///< lines of its standard output
    QByteArray err;

    /// True if a line begins so.
    bool says(const QString& start) const;
};

/// Runs a program with a fault below the directory. With `waits` the program itself says from where
/// on its calls count.
FaultRun runWithFault(const QString& program, const QStringList& arguments,
                      const QString& directory, const Fault& fault, bool waits);

/// The files of a directory and their contents, by their paths in it.
using Files = QMap<QString, QByteArray>;

Files filesIn(const QString& directory);

/// Makes the directory hold these files and nothing else.
void putFiles(const QString& directory, const Files& files);

/// All rows of a database that the sqlite3 program finds sound, after it has undone what an
/// interrupted change left; what is wrong with it otherwise. Documents of the surname "Документ 77"
/// are left out if `withoutLast`.
QByteArray rowsOf(const QString& database, bool withoutLast = false);

/// A folder in memory if there is one, since every run begins with writing all files anew.
QString fastFolder();
