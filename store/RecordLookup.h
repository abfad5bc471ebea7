#pragma once

#include <QString>
#include <QVariant>

/// The IDs of the rows of a table that an ID or a name means, in the open database: the one row
/// whose ID is that text, or else all rows of that name in the order of their IDs. None, with the
/// database's reason in `error` (may be null), if the table can't be read.
QVariantList recordsByIdOrName(const QString& table, const QString& nameColumn,
                               const QString& idOrName, QString* error);
