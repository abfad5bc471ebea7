#pragma once

#include <QString>
#include <QVariant>

/// A document that was chosen to be printed or checked.
struct PrintDocument
{
    QVariant id;
    QString surname;
    QString name; ///< first name
    QString patronymic;
    QString group;       ///< class
    QVariant formId;     ///< ID of its form, which may be gone
    QString issueDate;   ///< as stored
    QString blankSeries; ///< of its own numbered paper
    QString blankNumber; ///< likewise
};
