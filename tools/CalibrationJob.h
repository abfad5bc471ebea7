#pragma once

#include <QCoreApplication>
#include <QPoint>
#include <QString>

#include <optional>

#include "render/page/BlankPaper.h"
#include "tools/JobResult.h"
#include "tools/PrintToolJob.h"

class CalibrationSheet;

/// Brings the print of a blank to its place on one's own printer: prints the test sheet for its
/// paper, and tells which offsets undo what was read off it. The database must be open if the
/// options name a blank; it is never changed.
class CalibrationJob : public PrintToolJob
{
    Q_DECLARE_TR_FUNCTIONS(CalibrationJob)

public:
    using PrintToolJob::PrintToolJob;

    JobResult printSheet();
    JobResult tellOffsets();

private:
    struct Blank
    {
        QString name;
        BlankPaper paper;
        QPoint offsets; // as they are set now, millimetres
        QString storedSize;
    };

    std::optional<Blank> findBlank();

    /// Whether scales and offsets for the blank make sense; false after a report.
    bool hasUsableSize(const Blank& blank);
    JobResult printToFile(const CalibrationSheet& sheet);
    JobResult printToPrinter(const CalibrationSheet& sheet);
    JobResult reportTooSmall();
    JobResult fail(const QString& reason);
};
