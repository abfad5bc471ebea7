#pragma once

#include <QCoreApplication>
#include <QString>

#include "tools/PrintOptions.h"
#include "tools/ProgressLine.h"

class QTextStream;

/// What every job of the printing program shares: it tells of finished files on `out`, and on `err`
/// of what can't be done.
class PrintToolJob
{
    Q_DECLARE_TR_FUNCTIONS(PrintToolJob)

public:
    PrintToolJob(const PrintOptions& options, QTextStream& out, QTextStream& err);

protected:
    /// Whether there is the printer that the options name; false after a report.
    bool hasPrinter();

    /// From here on there is something to lose: see watchForInterruption().
    void beginWork();

    void tellFile(const QString& path);
    void report(const QString& message);
    void reportUnwritable(const QString& path);
    void reportNoPrinter();

    const PrintOptions& m_options;
    QTextStream& m_out;
    QTextStream& m_err;
    ProgressLine m_progress;
};
