#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QVariant>
#include <QVariantMap>

#include "support/TempApplication.h"

/// An application directory with documents and blanks to print, made by a test.
class PrintFixture : public TempApplication
{
public:
    /// Adds a document of form 1; `columns` replaces or adds columns of `docs`. Returns its ID.
    QVariant addDocument(const QJsonObject& content = {}, const QVariantMap& columns = {});

    /// Adds a blank of form 1 in Liberation Serif, 12 points, CustomMM landscape, 297 by 210
    /// millimetres, without offsets or background; `columns` replaces or adds columns. Returns its
    /// ID.
    QVariant addBlank(const QJsonArray& items, const QVariantMap& columns = {});

private:
    QVariant insert(const QString& table, const QVariantMap& columns);
};

/// An item object of a blank: kind, value and frame; `more` replaces or adds keys.
QJsonObject blankItem(int type, const QString& value, const QRectF& frame,
                      const QJsonObject& more = {});

/// An entry of a document's `CONTENT` that holds a value.
QJsonObject valueEntry(int type, const QJsonValue& value);

/// A table entry of a document's `CONTENT` with as many columns as the first row has.
QJsonObject tableEntry(const QVector<QStringList>& rows);

/// The compact text of a JSON object, as a column takes it.
QString jsonText(const QJsonObject& object);
