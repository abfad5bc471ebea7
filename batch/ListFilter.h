#pragma once

#include <QString>
#include <QVariant>

/// What of the document list is shown. What is empty, null or invalid is no bound.
struct ListFilter
{
    QString name;    ///< words that stand in the name or the number of the paper
    QString group;   ///< part of the class
    QVariant formId; ///< ID of the form
    QString from;    ///< first date of issue, as it is stored
    QString to;      ///< last date of issue, likewise

    bool isEmpty() const
    {
        return name.trimmed().isEmpty() && group.isEmpty() && formId.isNull() && from.isEmpty() &&
               to.isEmpty();
    }
};
