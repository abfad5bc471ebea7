#include "batch/CheckReport.h"

#include <QPainter>
#include <QPrinter>

#include <algorithm>

#include "app/WholeFile.h"
#include "batch/CsvText.h"
#include "batch/SheetChecks.h"
#include "batch/SheetText.h"
#include "preflight/PageCheck.h"
#include "preflight/ProofPicture.h"
#include "printing/PdfFile.h"

namespace {

QString severityWord(const Finding& finding)
{
    return finding.severity == Finding::Severity::Error ? "ошибка" : "замечание";
}

/// Paints the picture as large as the page takes it, and begins a page for it.
bool paintPage(QPrinter& printer, QPainter& painter, const QImage& picture)
{
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(picture.width() > picture.height() ? QPageLayout::Landscape
                                                                  : QPageLayout::Portrait);
    const bool isBegun = painter.isActive() ? printer.newPage() : painter.begin(&printer);
    if (!isBegun) {
        return false;
    }
    const QSizeF area = printer.pageLayout().paintRectPixels(printer.resolution()).size();
    const QSizeF size = QSizeF(picture.size()).scaled(area, Qt::KeepAspectRatio);
    painter.drawImage(QRectF(QPointF((area.width() - size.width()) / 2, 0), size), picture);
    return true;
}

} // namespace

CheckReport::CheckReport(const SheetChecks& checks, const QVector<int>& sheets)
    : m_checks(checks)
    , m_sheets(sheets)
    , m_words(QLocale(QLocale::Russian))
{
    std::sort(m_sheets.begin(), m_sheets.end());
}

bool CheckReport::writeCsv(const QString& path, QString* error) const
{
    QByteArray table = csvStart();
    table += csvRow({"Документ", "ФИО", "Класс", "Тип документа", "Серия", "Номер", "Бланк",
                     "Важность", "Рамка", "Замечание"});
    for (const int sheet : m_sheets) {
        const SheetChecks::Result& result = m_checks.result(sheet);
        if (result.findings.isEmpty()) {
            table += csvRow(csvLine(sheet, nullptr));
        }
        std::for_each(result.findings.cbegin(), result.findings.cend(),
                      [&](const Finding& finding) { table += csvRow(csvLine(sheet, &finding)); });
    }
    return writeWholeFile(path, table, error);
}

bool CheckReport::writePdf(const QString& path, const GoesOn& goesOn, QString* error) const
{
    const auto fail = [error](const QString& reason) {
        if (error) {
            *error = reason;
        }
        return false;
    };
    PdfFile file(path);
    if (!file.open()) {
        return fail("не удалось записать файл");
    }
    PageCheck check;
    bool hasPage = false;
    for (int i = 0; i < m_sheets.size(); ++i) {
        if (!goesOn(i, m_sheets.size())) {
            return fail(QString());
        }
        hasPage = addProof(file, check, m_sheets[i]) || hasPage;
    }
    if (!hasPage) {
        return fail("ни один лист не удалось показать");
    }
    return file.commit() || fail("не удалось записать файл целиком, возможно, нет места на диске");
}

QStringList CheckReport::csvLine(int sheet, const Finding* finding) const
{
    const PlannedSheet& planned = m_checks.sheets()[sheet];
    QStringList line = {planned.sheet.document.id.toString(),
                        personOf(planned.sheet.document),
                        planned.group,
                        planned.form,
                        planned.blankSeries,
                        planned.blankNumber,
                        planned.blankName};
    if (finding) {
        return line << severityWord(*finding) << m_words.item(*finding) << m_words.what(*finding);
    }
    const SheetOutcome::Reason reason = m_checks.result(sheet).reason;
    return reason == SheetOutcome::Reason::None
               ? line << QString() << QString() << "замечаний нет"
               : line << "ошибка" << QString() << problemText(reason);
}

bool CheckReport::addProof(PdfFile& file, PageCheck& check, int sheet) const
{
    constexpr int dpi = 130; // of the pictures: small letters can be read, and a page stays small
    const PrintSheet& wanted = m_checks.sheets()[sheet].sheet;
    check.setBackgroundPrinted(wanted.withBackground);
    if (wanted.blank.id.isNull() || !check.check(wanted.document.id, wanted.blank.id)) {
        return false;
    }
    const QImage picture = ProofPicture(check, dpi, wanted.withBackground, m_words).draw();
    return !picture.isNull() && file.addPage([&picture](QPrinter& printer, QPainter& painter) {
        return paintPage(printer, painter, picture);
    });
}
