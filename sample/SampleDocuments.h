#pragma once

#include <QSqlDatabase>
#include <QString>

/// Puts the sample's two hundred documents and its document templates into a database that has the
/// standard forms. The same rows come out on every run and every machine. On failure returns false
/// and puts the reason into `error` (may be null).
bool insertSampleDocuments(QSqlDatabase& database, QString* error);
