#include "exchange/DocumentExport.h"

#include <QDate>
#include <QSqlQuery>
#include <QSqlRecord>

#include <algorithm>
#include <optional>

#include <xlsxdocument.h>
#include <xlsxrichstring.h>

#include "exchange/CellName.h"
#include "forms/FormDefinitions.h"
#include "render/DocumentTags.h"
#include "render/TagExpansion.h"
#include "store/StoredDate.h"

namespace {

/// The column of `docs` that a fixed tag stands for.
QString columnName(const QString& tag)
{
    return tag == QLatin1String("#DOC_NAME") ? QStringLiteral("DOC_TYPE") : tag.mid(1);
}

} // namespace

DocumentExport::DocumentExport(QXlsx::Document& workbook, const QVector<ExchangeItem>& items,
                               const QString& dateFormat)
    : m_workbook(workbook)
    , m_items(items)
    , m_dateFormat(dateFormat)
{
}

void DocumentExport::writeDocuments(QSqlQuery& documents, int firstRow)
{
    bindColumns(documents);
    for (int row = firstRow; documents.next(); ++row) {
        writeRow(documents, row);
    }
}

DocumentExport::Source DocumentExport::sourceOf(const QString& tag)
{
    if (tag == QLatin1String("#DUPLICATE")) {
        return Source::Duplicate;
    }
    if (isDateTag(tag)) {
        return Source::Date;
    }
    if (tag == QLatin1String("#DOC_NAME")) {
        return Source::DocumentName;
    }
    return Source::Expansion;
}

void DocumentExport::bindColumns(const QSqlQuery& documents)
{
    // Looked up once: a query builds its whole record for each value that is asked for by name.
    const QSqlRecord record = documents.record();
    m_idIndex = record.indexOf("ID");
    m_columns.clear();
    m_columns.reserve(m_items.size());
    for (const ExchangeItem& item : qAsConst(m_items)) {
        m_columns.append({item, sourceOf(item.tag), record.indexOf(columnName(item.tag))});
    }
    m_expandsTags = std::any_of(m_columns.cbegin(), m_columns.cend(), [](const Column& column) {
        return column.source == Source::Expansion;
    });
    m_rowTags = RowTags(documents);
}

void DocumentExport::writeRow(const QSqlQuery& document, int row)
{
    std::optional<DocumentTags> tags;
    if (m_expandsTags && m_rowTags.isWhole()) {
        m_rowTags.takeRow(document);
    } else if (m_expandsTags) {
        tags.emplace(document.value(m_idIndex));
    }
    for (const Column& column : qAsConst(m_columns)) {
        const QXlsx::CellReference cell = cellFromName(column.item.cellName(row));
        const QString value = text(column, document, tags ? &*tags : nullptr);
        if (cell.isValid()) {
            m_workbook.write(cell, cellValue(value), QXlsx::Format());
        }
    }
}

QString DocumentExport::text(const Column& column, const QSqlQuery& document,
                             DocumentTags* tags) const
{
    switch (column.source) {
    case Source::Duplicate:
        return document.value(column.fieldIndex).toInt() != 0 ? QStringLiteral("Дубликат")
                                                              : QStringLiteral("Оригинал");
    case Source::Date:
        return dateFromStored(document.value(column.fieldIndex).toString()).toString(m_dateFormat);
    case Source::DocumentName:
        return docTypeNames.value(document.value(column.fieldIndex).toInt());
    case Source::Expansion:
        break;
    }
    return tags ? tags->expand(column.item.tag, nullptr) : m_rowTags.expand(column.item.tag);
}

const QVariant& DocumentExport::cellValue(const QString& text)
{
    QVariant& value = m_cellValues[text];
    if (!value.isValid()) {
        // As a rich string, so that a value that looks like a formula or a link stays a text.
        value = QVariant::fromValue(QXlsx::RichString(text));
    }
    return value;
}
