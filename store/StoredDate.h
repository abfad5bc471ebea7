#pragma once

#include <QDate>
#include <QString>

/// Form in which the columns of `docs` and the values of date fields hold a date.
extern const QString storedDateFormat;

/// The date that a stored text holds; not valid if it holds none.
QDate dateFromStored(const QString& text);
