#pragma once

#include <QSqlDatabase>
#include <QString>

/// Puts the standard lists and forms and the version stamp into a new database, each row as the
/// program's own dialogs would have left it. On failure returns false and puts the reason into
/// `error` (may be null).
bool insertStandardContent(QSqlDatabase& database, QString* error);
