#pragma once

#include <QString>

#include <memory>

class QObject;
class QVariant;

namespace QXlsx {
class CellReference;
class Document;
} // namespace QXlsx

/// Opens a workbook. A file that is missing, damaged or no workbook gives an empty one.
std::unique_ptr<QXlsx::Document> openWorkbook(const QString& path, QObject* parent);

/// Writes the workbook whole or not at all: until then an older file of the name stands as it was.
bool saveWorkbook(QXlsx::Document& workbook, const QString& path);

/// Leaves the current sheet as the only selected one. The library makes the first sheet current and
/// keeps the others' marks, and programs change all selected sheets at once.
void selectCurrentSheetOnly(QXlsx::Document& workbook);

/// The value of a cell of the current sheet, invalid if the cell has none.
QVariant readCell(const QXlsx::Document& workbook, const QXlsx::CellReference& cell);
