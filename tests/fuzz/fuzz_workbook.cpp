// Parts taken as a workbook from outside: what the reading library is given of it, what it reads,
// and what it saves after it was filled.

#include <QBuffer>
#include <QVariant>

#include <xlsxdocument.h>

#include "exchange/WorkbookFile.h"
#include "exchange/package/PackageWriter.h"
#include "fuzz/FuzzSupport.h"
#include "fuzz/WorkbookParts.h"

namespace {

constexpr int readRows = 12;
constexpr int readColumns = 8;

QByteArray archiveOf(const WorkbookParts& parts)
{
    PackageWriter writer;
    for (const auto& part : parts) {
        writer.add(part.first, part.second);
    }
    return writer.finish().value_or(QByteArray());
}

void readAll(const QXlsx::Document& workbook)
{
    for (int row = 1; row <= readRows; ++row) {
        for (int column = 1; column <= readColumns; ++column) {
            readCell(workbook, QXlsx::CellReference(row, column)).toString();
        }
    }
}

} // namespace

void tryInput(const QByteArray& input)
{
    QString error;
    const auto workbook = workbookFromBytes(archiveOf(partsOf(input)), nullptr, &error);
    readAll(*workbook);
    if (!error.isEmpty()) {
        return;
    }
    require(workbook->currentWorksheet() != nullptr, "a workbook that is read has a sheet");
    selectCurrentSheetOnly(*workbook);
    workbook->write(3, 2, QVariant("значение"));
    QBuffer saved;
    saved.open(QIODevice::ReadWrite);
    require(workbook->saveAs(&saved), "what was read can be saved");

    const auto again = workbookFromBytes(saved.data(), nullptr, &error);
    require(error.isEmpty(), "what was saved can be read");
    require(readCell(*again, QXlsx::CellReference(3, 2)).toString() == "значение",
            "what was saved has what was written");
    readAll(*again);
}
