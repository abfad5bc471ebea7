#pragma once

#include <QString>
#include <QVariant>

/// A document that was chosen to be printed or checked.
struct PrintDocument
{
    QVariant id;
    QString surname;
    QString name; ///< first name
};
