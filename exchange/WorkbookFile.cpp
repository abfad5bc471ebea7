#include "exchange/WorkbookFile.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QVariant>

#include <xlsxdocument.h>

#include "app/WholeFile.h"
#include "exchange/package/PackageLimits.h"
#include "exchange/package/WorkbookRebuild.h"

namespace {

constexpr double dayMost = 2958466; // the first day behind the year 9999

/// The file's bytes; a null array if it cannot be read or is too large. What is no regular file is
/// not opened: a pipe would never end.
QByteArray fileBytes(const QString& path, QString* error)
{
    QFile file(path);
    QString reason;
    if (!QFileInfo(path).isFile()) {
        reason = "no file";
    } else if (!file.open(QIODevice::ReadOnly)) {
        reason = file.errorString();
    } else if (file.size() > PackageLimits::fileSize) {
        reason = "the file is too large";
    }
    if (reason.isEmpty()) {
        QByteArray bytes = file.read(PackageLimits::fileSize);
        if (file.error() == QFileDevice::NoError) {
            return bytes;
        }
        reason = file.errorString();
    }
    if (error) {
        *error = reason;
    }
    return QByteArray();
}

/// The library takes the first sheet for the current one, though it may hold nothing but a chart.
void selectFirstWorksheet(QXlsx::Document& workbook)
{
    const QStringList names = workbook.sheetNames();
    for (const QString& name : names) {
        if (workbook.sheet(name)->sheetType() == QXlsx::AbstractSheet::ST_WorkSheet) {
            workbook.selectSheet(name);
            return;
        }
    }
}

} // namespace

std::unique_ptr<QXlsx::Document> openWorkbook(const QString& path, QObject* parent, QString* error)
{
    QString reason;
    const QByteArray file = fileBytes(path, &reason);
    auto workbook = workbookFromBytes(file, parent, error);
    if (error && !reason.isEmpty()) {
        *error = reason;
    }
    return workbook;
}

std::unique_ptr<QXlsx::Document> workbookFromBytes(const QByteArray& file, QObject* parent,
                                                   QString* error)
{
    std::optional<QByteArray> copy = WorkbookRebuild().rebuild(file, error);
    if (!copy) {
        return std::make_unique<QXlsx::Document>(parent);
    }
    if (error) {
        error->clear();
    }
    QBuffer buffer(&*copy);
    buffer.open(QIODevice::ReadOnly);
    auto workbook = std::make_unique<QXlsx::Document>(&buffer, parent);
    selectFirstWorksheet(*workbook);
    return workbook;
}

bool saveWorkbook(QXlsx::Document& workbook, const QString& path)
{
    QBuffer package; // the library closes what it writes to
    return workbook.saveAs(&package) && writeWholeFile(path, package.data());
}

void selectCurrentSheetOnly(QXlsx::Document& workbook)
{
    const QXlsx::AbstractSheet* current = workbook.currentSheet();
    const QStringList names = workbook.sheetNames();
    for (const QString& name : names) {
        QXlsx::AbstractSheet* sheet = workbook.sheet(name);
        if (sheet->sheetType() == QXlsx::AbstractSheet::ST_WorkSheet) {
            static_cast<QXlsx::Worksheet*>(sheet)->setSelected(sheet == current);
        }
    }
}

QVariant readCell(const QXlsx::Document& workbook, const QXlsx::CellReference& cell)
{
    const QXlsx::Cell* found = workbook.cellAt(cell);
    if (!found || !(found->value().isValid() || found->hasFormula())) {
        // An empty cell with the format of a date would otherwise read as midnight.
        return QVariant();
    }
    const double days = found->value().toDouble();
    if (found->isDateTime() && !(days >= 0 && days < dayMost)) {
        return found->value(); // no moment that the library can make of it
    }
    return workbook.read(cell);
}
