#pragma once

#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QVector>

#include "exchange/ExchangeTemplate.h"

class QVariant;

namespace QXlsx {
class Document;
}

/// Turns the rows of a workbook's current sheet into statements that insert documents of one form.
class DocumentImport
{
public:
    /// `formFields` is the form's `FIELDS` object. `dateFormat` is the sheet's notation of dates,
    /// as QDate::fromString takes it. The workbook must outlive the import.
    DocumentImport(const QXlsx::Document& workbook, const QVector<ExchangeItem>& items,
                   const QJsonObject& formFields, int formId, const QString& dateFormat);

    /// Reads the cells of a sheet row, in the order of the mapping. Returns the name of the first
    /// empty cell, behind which nothing is read, or an empty text if there is none.
    QString readRow(int row);

    /// The statement that inserts the row read last as a document. Values stand in it unescaped.
    QString insertStatement() const;

private:
    /// What decides how a form's field takes the text of its cell.
    struct Field
    {
        int type;
        QString format;
    };

    void addField(const QJsonObject& field);
    QVariant convert(const QString& tag, const QVariant& cell) const;
    void fillEntry(const QString& tag, const QVariant& value);
    QString storedDate(const QString& text) const;

    const QXlsx::Document& m_workbook;
    QVector<ExchangeItem> m_items;
    int m_formId;
    QString m_dateFormat;
    QHash<QString, Field> m_fieldByTag;

    QHash<QString, QString> m_tagValues; ///< text of each cell of the row, by tag
    QJsonObject m_emptyContent;          ///< entries of all fields, without values
    QJsonObject m_content;               ///< `CONTENT` of the row's document
};
