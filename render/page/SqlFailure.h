#pragma once

class QSqlQuery;
class QString;

/// Writes to the log that a statement on `table` failed or yielded no row, and puts the same text
/// into `error` (may be null).
void tellSqlFailure(const QString& table, const QSqlQuery& query, QString* error);
