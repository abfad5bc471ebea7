#pragma once

#include <QString>
#include <QVariant>

/// The blank that a document is to be printed on.
struct BlankChoice
{
    QVariant id;     ///< null if there is none
    QString problem; ///< why there is none, in the user's language
};

/// Chooses among the blanks of the document's form: the one with the ID or else the name `wanted`,
/// or the first one if nothing is wanted.
BlankChoice chooseBlank(const QVariant& docId, const QString& wanted);
