#pragma once

class QSqlQuery;

// What the log tells of a failed statement, one line each.

/// The given text, then the driver's text.
void logSqlFailure(const char* what, const QSqlQuery& query);

/// The same, then the statement.
void logSqlFailureWithQuery(const char* what, const QSqlQuery& query);

/// The driver's text behind "sqlError: ".
void logSqlError(const QSqlQuery& query);
