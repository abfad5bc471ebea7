#include "exchange/WorkbookFile.h"

#include <QBuffer>
#include <QFile>
#include <QVariant>

#include <xlsxdocument.h>

#include "app/WholeFile.h"
#include "exchange/WorkbookCheck.h"

namespace {

/// The file's bytes, read once, so that the library gets what was checked; a null array if they
/// cannot be read or are too many.
QByteArray bytesOf(const QString& path)
{
    constexpr qint64 largest = 1 << 28;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > largest) {
        return QByteArray();
    }
    const QByteArray bytes = file.readAll();
    return file.error() == QFileDevice::NoError ? bytes : QByteArray();
}

} // namespace

std::unique_ptr<QXlsx::Document> openWorkbook(const QString& path, QObject* parent)
{
    QByteArray bytes = bytesOf(path);
    QBuffer file(&bytes);
    if (!file.open(QIODevice::ReadOnly) || !isSoundWorkbook(file) || !file.seek(0)) {
        return std::make_unique<QXlsx::Document>(parent);
    }
    return std::make_unique<QXlsx::Document>(&file, parent);
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
    return workbook.read(cell);
}
