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

/// The value of a cell of the current sheet, invalid if the cell has none.
QVariant readCell(const QXlsx::Document& workbook, const QXlsx::CellReference& cell);
