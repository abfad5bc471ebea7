#pragma once

#include <QSqlDatabase>
#include <QString>

/// Puts the sample's exchange template into the database; its workbook is named by full path below
/// `directory`, the application directory. On failure returns false and puts the reason into
/// `error` (may be null).
bool insertSampleExchange(QSqlDatabase& database, const QString& directory, QString* error);

/// Writes the exchange template's workbook, with its heading and formats, and a workbook of
/// documents to import. A file that is there already stays as it is. On failure returns false and
/// puts the reason into `error` (may be null).
bool writeSampleWorkbooks(const QString& directory, QString* error);
