#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVariant>

#include "support/TempApplication.h"

/// A row of `blanks` for a test: a custom landscape page of 297 by 210 mm without items.
struct BlankRow
{
    QString name = "Свидетельство";
    QVariant formId = 1;
    int paperFormat = 42;
    int orientation = 0;
    QString font = "Liberation Serif";
    int fontSize = 14;
    QVariant background;
    int width = 297;  // mm
    int height = 210; // mm
    QVariant content;
};

/// Inserts the row and returns its ID.
inline int insertBlank(TempApplication& app, const BlankRow& row)
{
    return app
        .exec("INSERT INTO blanks (NAME, FORM_ID, PAPER_FORMAT, PAPER_ORIENTATION, PAGES, FONT, "
              "FONT_SIZE, BACKGROUND_IMG, SIZE_WIDTH, SIZE_HEIGHT, OFFSET_X, OFFSET_Y, CONTENT) "
              "VALUES (?, ?, ?, ?, 1, ?, ?, ?, ?, ?, 0, 0, ?)",
              {row.name, row.formId, row.paperFormat, row.orientation, row.font, row.fontSize,
               row.background, row.width, row.height, row.content})
        .toInt();
}

/// The bytes of a `CONTENT` with these items.
inline QByteArray contentOf(const QJsonArray& fields)
{
    return QJsonDocument(QJsonObject{{"fields", fields}}).toJson(QJsonDocument::Compact);
}

/// The items that the database holds for a blank.
inline QJsonArray storedFields(TempApplication& app, int blankId)
{
    const QVariant content = app.value("SELECT CONTENT FROM blanks WHERE ID = ?", {blankId});
    return QJsonDocument::fromJson(content.toByteArray())["fields"].toArray();
}
