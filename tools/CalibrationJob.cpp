#include "tools/CalibrationJob.h"

#include <QFileInfo>
#include <QLocale>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSqlError>
#include <QSqlQuery>
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
#include "store/RecordLookup.h"
#include "tools/Interruption.h"
#include "tools/UserLanguage.h"

namespace {

QString cantReadBlanks(const QString& reason)
{
    return inUserLanguage("не удалось прочитать бланки: ", "can't read the blanks: ") + reason;
}

} // namespace

JobResult CalibrationJob::printSheet()
{
    const std::optional<Blank> blank = findBlank();
    if (!blank) {
        return JobResult::NotDone;
    }
    watchForInterruption(); // a sheet is printed whole
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
    return fail(inUserLanguage("принтер не принял лист", "the printer refused the sheet"));
}

JobResult CalibrationJob::reportTooSmall()
{
    return fail(inUserLanguage("лист бланка меньше %1 мм, шкалы на нём не поместятся",
                               "the blank's sheet is smaller than %1 mm, too small for scales")
                    .arg(CalibrationSheet::smallestSide));
}

JobResult CalibrationJob::tellOffsets()
{
    constexpr int width = 297; // millimetres, as of a new blank
    constexpr int height = 210;
    std::optional<Blank> blank = Blank{
        QString(), BlankPaper(PaperOrientation::landscape, PaperFormat::a4, QSizeF(width, height)),
        QPoint()};
    if (!m_options.blank().isEmpty()) {
        blank = findBlank();
    }
    if (!blank) {
        return JobResult::NotDone;
    }
    const double unitLength = blank->paper.unitLength();
    if (unitLength <= 0) {
        return fail(inUserLanguage("ширина или высота бланка — ноль: ",
                                   "the blank's width or height is zero: ") +
                    blank->name);
    }
    const PrintOffsets offsets(unitLength);
    const QPointF read = m_options.readOffsets();
    const OffsetWords words(QLocale::system());
    m_out << words.inWords(offsets.offsetFor(read.x()), OffsetWords::Axis::X) << '\n'
          << words.inWords(offsets.offsetFor(read.y()), OffsetWords::Axis::Y) << '\n';
    if (!blank->offsets.isNull()) {
        m_out << inUserLanguage("Сейчас у бланка «%1» X %2 мм, Y %3 мм: новые числа заменяют их.",
                                "The blank \"%1\" has X %2 mm, Y %3 mm now: the new values replace "
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
        fail(error.isEmpty()
                 ? inUserLanguage("нет бланка ", "there is no blank ") + m_options.blank()
                 : cantReadBlanks(error));
        return std::nullopt;
    }
    if (ids.size() > 1) {
        // Their paper may differ, and so may the offsets.
        QStringList texts;
        for (const QVariant& id : ids) {
            texts << id.toString();
        }
        fail(inUserLanguage("бланков с таким названием несколько, укажите номер: ",
                            "several blanks have this name, give an ID: ") +
             texts.join(", "));
        return std::nullopt;
    }
    QSqlQuery query;
    query.setForwardOnly(true);
    query.prepare("SELECT * FROM blanks WHERE ID = ?");
    query.addBindValue(ids.first());
    if (!query.exec() || !query.next()) {
        fail(cantReadBlanks(query.lastError().text()));
        return std::nullopt;
    }
    return Blank{query.value("NAME").toString(), BlankPaper::ofRow(query),
                 QPoint(query.value("OFFSET_X").toInt(), query.value("OFFSET_Y").toInt())};
}

JobResult CalibrationJob::fail(const QString& reason)
{
    report(reason);
    return JobResult::NotDone;
}
