#pragma once

#include <QSqlDatabase>
#include <QString>

/// Puts the sample's blanks into a database that has the standard forms. On failure returns false
/// and puts the reason into `error` (may be null).
bool insertSampleBlanks(QSqlDatabase& database, QString* error);

/// Draws the backgrounds of the sample's blanks into the application directory, where the rows name
/// them. A picture that is there already stays as it is. On failure returns false and puts the
/// reason into `error` (may be null).
bool drawSampleBackgrounds(const QString& directory, QString* error);
