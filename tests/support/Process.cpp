#include "support/Process.h"

#include <QProcess>

ProcessResult runProcess(const QString& program, const QStringList& arguments,
                         const QByteArray& input, int timeoutMs)
{
    ProcessResult result;
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted()) {
        result.err = process.errorString().toUtf8();
        return result;
    }
    process.write(input);
    process.closeWriteChannel();
    const bool finished = process.waitForFinished(timeoutMs);
    if (!finished) {
        process.kill();
        process.waitForFinished();
    }
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    if (finished && process.exitStatus() == QProcess::NormalExit) {
        result.exitCode = process.exitCode();
    }
    return result;
}

ProcessResult runPython(const QString& script, const QStringList& arguments)
{
    return runProcess(ZELVORA_PYTHON, QStringList{"-c", script} + arguments);
}
