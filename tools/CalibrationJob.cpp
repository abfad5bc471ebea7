#include "tools/CalibrationJob.h"

#include <QFileInfo>
#include <QLocale>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QStringList>
#include <QTextStream>
#include <QVariant>

#include "app/TargetFile.h"
#include "app/TerminalText.h"
#include "blanks/BlankRecord.h"
#include "printing/PdfFile.h"
#include "printing/calibration/CalibrationSheet.h"
#include "printing/calibration/OffsetWords.h"
#include "printing/calibration/PrintOffsets.h"
#include "render/page/PagePicture.h"
#include "render/page/PageRows.h"
#include "store/RecordLookup.h"

namespace {

QString cantReadBlanks(const QString& reason)
{
    return CalibrationJob::tr("can't read the blanks: %1").arg(reason);
}

} // namespace

JobResult CalibrationJob::printSheet()
{
    const std::optional<Blank> blank = findBlank();
    if (!blank || !hasUsableSize(*blank)) {
        return JobResult::NotDone;
    }
    beginWork(); // a sheet is printed whole
    const CalibrationSheet sheet(blank->paper, blank->name);
    return m_options.target() == PrintOptions::Target::Printer ? printToPrinter(sheet)
                                                               : printToFile(sheet);
}

JobResult CalibrationJob::printToFile(const CalibrationSheet& sheet)
{
    removeLeftovers(QFileInfo(m_options.output()).path());
    PdfFile file(m_options.output());
    CalibrationSheet::Result result = CalibrationSheet::Result::PrinterRefused;
    const bool isPrinted = file.open() && file.addPage([&](QPrinter& printer, QPainter& painter) {
        result = sheet.print(printer, painter);
        return result == CalibrationSheet::Result::Printed;
    });
    if (result == CalibrationSheet::Result::PaperTooSmall) {
        return reportTooSmall();
    }
    if (!isPrinted || !file.commit()) {
        reportUnwritable(file.path());
        return JobResult::NotDone;
    }
    tellFile(file.path());
    return JobResult::Done;
}

JobResult CalibrationJob::printToPrinter(const CalibrationSheet& sheet)
{
    if (!hasPrinter()) {
        return JobResult::NotDone;
    }
    QPrinter printer(QPrinterInfo::printerInfo(m_options.printer()), QPrinter::HighResolution);
    QPainter painter;
    switch (sheet.print(printer, painter)) {
    case CalibrationSheet::Result::Printed:
        return JobResult::Done;
    case CalibrationSheet::Result::PaperTooSmall:
        return reportTooSmall();
    case CalibrationSheet::Result::PrinterRefused:
        break;
    }
    return fail(tr("the printer refused the sheet"));
}

JobResult CalibrationJob::reportTooSmall()
{
    return fail(tr("the blank's sheet is smaller than %1 mm, too small for scales")
                    .arg(CalibrationSheet::smallestSide));
}

JobResult CalibrationJob::tellOffsets()
{
    constexpr int width = 297; // millimetres, as of a new blank
    constexpr int height = 210;
    std::optional<Blank> blank = Blank{
        QString(), BlankPaper(PaperOrientation::landscape, PaperFormat::a4, QSizeF(width, height)),
        QPoint(), QString()};
    if (!m_options.blank().isEmpty()) {
        blank = findBlank();
    }
    if (!blank || !hasUsableSize(*blank)) {
        return JobResult::NotDone;
    }
    const PrintOffsets offsets(blank->paper.unitLength());
    const QPointF read = m_options.readOffsets();
    const OffsetWords words(QLocale::system());
    m_out << words.inWords(offsets.offsetFor(read.x()), OffsetWords::Axis::X) << '\n'
          << words.inWords(offsets.offsetFor(read.y()), OffsetWords::Axis::Y) << '\n';
    if (!blank->offsets.isNull()) {
        m_out << tr("The blank \"%1\" has X %2 mm, Y %3 mm now: the new values replace "
                    "them.")
                     .arg(onOneLine(blank->name), QString::number(blank->offsets.x()),
                          QString::number(blank->offsets.y()))
              << '\n';
    }
    return JobResult::Done;
}

/// The blank with the ID or else the name of the options.
std::optional<CalibrationJob::Blank> CalibrationJob::findBlank()
{
    QString error;
    const QVariantList ids = recordsByIdOrName("blanks", "NAME", m_options.blank(), &error);
    if (ids.isEmpty()) {
        fail(error.isEmpty() ? tr("there is no blank %1").arg(m_options.blank())
                             : cantReadBlanks(error));
        return std::nullopt;
    }
    if (ids.size() > 1) {
        // Their paper may differ, and so may the offsets.
        QStringList texts;
        for (const QVariant& id : ids) {
            texts << id.toString();
        }
        fail(tr("several blanks have this name, give an ID: %1").arg(texts.join(", ")));
        return std::nullopt;
    }
    const std::optional<PageBlank> row = PageBlank::read(ids.first(), PageBlank(), &error);
    if (!row) {
        fail(cantReadBlanks(error));
        return std::nullopt;
    }
    return Blank{row->name, row->paper(), row->offset, row->storedSize};
}

bool CalibrationJob::hasUsableSize(const Blank& blank)
{
    if (blank.paper.unitLength() > 0 && !isLargerThanPaper(blank.paper.pageSize())) {
        return true;
    }
    report(tr("no sheet has such a size: %1 mm, blank %2").arg(blank.storedSize, blank.name));
    return false;
}

JobResult CalibrationJob::fail(const QString& reason)
{
    report(reason);
    return JobResult::NotDone;
}
