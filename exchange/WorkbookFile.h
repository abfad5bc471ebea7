#pragma once

#include <QString>

#include <memory>

class QByteArray;
class QObject;
class QVariant;

namespace QXlsx {
class CellReference;
class Document;
} // namespace QXlsx

/// Opens a workbook; its first sheet with cells is the current one. The library gets a copy made in
/// memory of what was read and understood (WorkbookRebuild), never the file itself. A file that is
/// missing, damaged, too large or no workbook gives an empty one; then the reason is in `error`
/// (may be null), which else is empty.
std::unique_ptr<QXlsx::Document> openWorkbook(const QString& path, QObject* parent,
                                              QString* error = nullptr);

/// The same for the bytes of a workbook's file.
std::unique_ptr<QXlsx::Document> workbookFromBytes(const QByteArray& file, QObject* parent,
                                                   QString* error = nullptr);

/// Writes the workbook whole or not at all: until then an older file of the name stands as it was.
bool saveWorkbook(QXlsx::Document& workbook, const QString& path);

/// Leaves the current sheet as the only selected one. The library makes the first sheet current and
/// keeps the others' marks, and programs change all selected sheets at once.
void selectCurrentSheetOnly(QXlsx::Document& workbook);

/// The value of a cell of the current sheet, invalid if the cell has none.
QVariant readCell(const QXlsx::Document& workbook, const QXlsx::CellReference& cell);
