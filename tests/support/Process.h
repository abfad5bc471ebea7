#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// What a finished program left behind.
struct ProcessResult
{
    int exitCode = -1; ///< -1 if it could not be started, crashed or ran out of time
    QByteArray out;
    QByteArray err;
};

/// Runs a program to its end.
ProcessResult runProcess(const QString& program, const QStringList& arguments,
                         const QByteArray& input = QByteArray(), int timeoutMs = 60000);

/// Runs a Python script (its text) with Debian's interpreter; `arguments` become sys.argv[1:].
ProcessResult runPython(const QString& script, const QStringList& arguments = QStringList());
