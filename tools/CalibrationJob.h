#pragma once

#include <QPoint>
#include <QString>

#include <optional>

#include "render/BlankPaper.h"
#include "tools/JobResult.h"
#include "tools/PrintOptions.h"

class CalibrationSheet;
class QTextStream;

/// Brings the print of a blank to its place on one's own printer: prints the test sheet for its
/// paper, and tells which offsets undo what was read off it. The database must be open if the
/// options name a blank; it is never changed.
class CalibrationJob
{
public:
    /// Finished files and the offsets are told on `out`, failures on `err`.
    CalibrationJob(const PrintOptions& options, QTextStream& out, QTextStream& err);

    JobResult printSheet();
    JobResult tellOffsets();

private:
    struct Blank
    {
        QString name;
        BlankPaper paper;
        QPoint offsets; // as they are set now, millimetres
    };

    std::optional<Blank> findBlank();
    JobResult printToFile(const CalibrationSheet& sheet);
    JobResult printToPrinter(const CalibrationSheet& sheet);
    JobResult reportTooSmall();
    JobResult fail(const QString& reason);

    const PrintOptions& m_options;
    QTextStream& m_out;
    QTextStream& m_err;
};
