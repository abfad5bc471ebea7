#pragma once

#include <QJsonObject>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

/// The readable data that the standard content and the sample are made from: the object in
/// "resources/sample/<name>.json". Empty in a program that does not carry these resources.
QJsonObject sampleData(const QString& name);

/// Runs one statement with its positional values. On failure returns false and puts the driver's
/// text into `error` (may be null).
bool runStatement(QSqlQuery& query, const QString& statement, const QVariantList& values,
                  QString* error);
