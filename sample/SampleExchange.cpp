#include "sample/SampleExchange.h"

#include <QBuffer>
#include <QColor>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <xlsxcellreference.h>
#include <xlsxdocument.h>
#include <xlsxformat.h>

#include "sample/NewFile.h"
#include "sample/SampleData.h"

namespace {

QXlsx::Format titleFormat()
{
    QXlsx::Format format;
    format.setFontBold(true);
    format.setFontSize(14);
    format.setHorizontalAlignment(QXlsx::Format::AlignHCenter);
    format.setVerticalAlignment(QXlsx::Format::AlignVCenter);
    return format;
}

QXlsx::Format headingFormat()
{
    QXlsx::Format format;
    format.setFontBold(true);
    format.setFontColor(Qt::white);
    format.setPatternBackgroundColor(QColor("#7C99FF"));
    format.setHorizontalAlignment(QXlsx::Format::AlignHCenter);
    format.setVerticalAlignment(QXlsx::Format::AlignVCenter);
    format.setBorderStyle(QXlsx::Format::BorderThin);
    format.setTextWrap(true);
    return format;
}

// Text, so that series and numbers keep their leading zeros.
QXlsx::Format bodyFormat()
{
    QXlsx::Format format;
    format.setNumberFormat("@");
    format.setBorderStyle(QXlsx::Format::BorderThin);
    return format;
}

void writeHeading(QXlsx::Document& workbook, const QJsonObject& plan)
{
    const QJsonArray columns = plan["columns"].toArray();
    workbook.renameSheet(workbook.currentSheet()->sheetName(), plan["sheet"].toString());
    workbook.mergeCells("A1:" + plan["lastColumn"].toString() + "1", titleFormat());
    workbook.write("A1", plan["title"].toString(), titleFormat());
    workbook.setRowHeight(1, 26);
    workbook.setRowHeight(2, 32);
    for (const QJsonValue& column : columns) {
        const QString letter = column["col"].toString();
        const QXlsx::CellReference heading(letter + "2");
        workbook.write(heading, column["heading"].toString(), headingFormat());
        workbook.setColumnWidth(heading.column(), heading.column(), column["width"].toDouble());
    }
}

// An export keeps the format that a cell of the template has.
void formatRows(QXlsx::Document& workbook, const QJsonObject& plan)
{
    const QXlsx::Format format = bodyFormat();
    const int firstRow = plan["fromRow"].toInt();
    const int columns = plan["columns"].toArray().size();
    for (int row = firstRow; row < firstRow + plan["formattedRows"].toInt(); row++) {
        for (int column = 1; column <= columns; column++) {
            workbook.write(row, column, QVariant(), format);
        }
    }
}

void writeRows(QXlsx::Document& workbook, const QJsonObject& plan)
{
    const QXlsx::Format format = bodyFormat();
    const int firstRow = plan["fromRow"].toInt();
    const QJsonArray rows = plan["importRows"].toArray();
    for (int row = 0; row < rows.size(); row++) {
        const QJsonArray cells = rows[row].toArray();
        for (int column = 0; column < cells.size(); column++) {
            workbook.write(firstRow + row, column + 1, cells[column].toString(), format);
        }
    }
}

using SheetWriter = void (*)(QXlsx::Document& workbook, const QJsonObject& plan);

QByteArray workbookXlsx(const QJsonObject& plan, SheetWriter writeBody)
{
    QXlsx::Document workbook;
    writeHeading(workbook, plan);
    writeBody(workbook, plan);
    QBuffer buffer;
    workbook.saveAs(&buffer);
    return buffer.data();
}

QJsonObject mapping(const QJsonArray& columns)
{
    QJsonArray items;
    for (const QJsonValue& column : columns) {
        items.append(QJsonObject{{"col", column["col"]}, {"tag", column["tag"]}});
    }
    return {{"items", items}};
}

} // namespace

bool insertSampleExchange(QSqlDatabase& database, const QString& directory, QString* error)
{
    const QJsonObject plan = sampleData("exchange");
    const QByteArray fields =
        QJsonDocument(mapping(plan["columns"].toArray())).toJson(QJsonDocument::Compact);
    QSqlQuery query(database);
    return runStatement(
        query,
        "INSERT INTO export (NAME, FIELDS, TYPE, TEMPLATE, FROM_ROW, TO_ROW, DATE_FORMAT) VALUES "
        "(?, ?, ?, ?, ?, ?, ?)",
        {plan["name"].toString(), fields, 0, directory + "/" + plan["workbook"].toString(),
         plan["fromRow"].toInt(), plan["toRow"].toInt(), plan["dateFormat"].toString()},
        error);
}

bool writeSampleWorkbooks(const QString& directory, QString* error)
{
    const QJsonObject plan = sampleData("exchange");
    return writeNewFile(
               directory + "/" + plan["workbook"].toString(),
               [&plan] { return workbookXlsx(plan, formatRows); }, error) &&
           writeNewFile(
               directory + "/" + plan["importWorkbook"].toString(),
               [&plan] { return workbookXlsx(plan, writeRows); }, error);
}
