#include "exchange/WorkbookFile.h"

#include <QFile>
#include <QVariant>

#include <xlsxdocument.h>

#include "exchange/WorkbookCheck.h"

namespace {

bool isSoundFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && isSoundWorkbook(file);
}

} // namespace

std::unique_ptr<QXlsx::Document> openWorkbook(const QString& path, QObject* parent)
{
    if (!isSoundFile(path)) {
        return std::make_unique<QXlsx::Document>(parent);
    }
    return std::make_unique<QXlsx::Document>(path, parent);
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
