#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

/// Tells what of an item's own text does not come out of the tag expansion as whoever wrote it will
/// have meant it.
class TagCheck
{
public:
    /// A tag of the text and its value.
    struct Value
    {
        QString tag;
        QString text;
    };

    /// The values are those of one document, see expandTags().
    TagCheck(const QJsonObject& docValues, const QJsonObject& docContent);

    /// What the item prints.
    QString expanded(const QString& text) const;

    /// Tags that stay in the text, each once. One that ends at a letter is named with the letters
    /// behind it: "#lname" rather than "#".
    QStringList unexpandedTags(const QString& text) const;

    /// Date tags whose date is missing or none, so that they print as zeros, each once.
    QStringList emptyDates(const QString& text) const;

    /// Tags whose values leave no ink, each once; but "#DUPLICATE", which says by nothing that the
    /// document is no duplicate.
    QStringList emptyTags(const QString& text) const;

    /// The single character behind the last tag that is not printed; empty if there is none or it
    /// would leave no ink.
    QString droppedTail(const QString& text) const;

    /// Tags whose values a text item does not print as they stand, since the rich text engine reads
    /// something in them as markup.
    QVector<Value> valuesReadAsMarkup(const QString& text) const;

private:
    QString valueOf(const QString& tag) const;

    QJsonObject m_docValues;
    QJsonObject m_docContent;
};
