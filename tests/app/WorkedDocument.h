#pragma once

#include <QString>

/// What the documents hold that desk_worker stores: everything in them follows from one number, so
/// that a document that is not whole is found out.
struct WorkedDocument
{
    int number = 0;

    QString lname() const { return QString("Документ %1").arg(number); }
    QString series() const { return QString::number(number % 7); }
    QString blankNo() const { return QString::number(number); }

    /// Several pages of the database.
    QString text() const { return QString("%1;\n").arg(number).repeated(1500); }
};
