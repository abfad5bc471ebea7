#pragma once

#include <QDate>
#include <QString>
#include <QVector>

/// Which documents are meant: those of the IDs, or, if there are no IDs, those that pass all the
/// rest. What is empty is no bound.
struct DocumentFilter
{
    /// IDs of documents, both ends included. One that stands alone must exist; of several, those
    /// that exist are meant.
    struct IdRange
    {
        qint64 first;
        qint64 last;
    };

    QVector<IdRange> ids;
    QString surname;   ///< part of the surname
    QString group;     ///< part of the class
    QString type;      ///< ID or name of the form
    QDate from;        ///< first date of issue
    QDate to;          ///< last date of issue
    QString condition; ///< an SQL expression over the columns of `docs`
};
