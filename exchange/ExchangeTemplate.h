#pragma once

#include <QJsonDocument>
#include <QString>
#include <QVector>

#include "store/JsonColumn.h"

/// One line of an exchange template's mapping: which sheet column holds which tag.
struct ExchangeItem
{
    QString column; ///< column letters, as typed; with the row number behind them a cell's name
    QString tag;    ///< document or form tag, "#" included

    /// The name of the item's cell on a sheet row, as messages show it. It may name no cell.
    QString cellName(int row) const;
};

/// `FIELDS` of a template without a mapping, as a new row gets it.
extern const QString emptyExchangeFields;

/// The mapping in an exchange template's `FIELDS` object, in the order in which it is processed.
QVector<ExchangeItem> exchangeItems(const QJsonObject& fields);

/// Reads the `FIELDS` object of an exchange template.
JsonColumn readExchangeFields(const QVariant& templateId);

/// Replaces the `FIELDS` object of an exchange template by the object's text. On failure returns
/// false and puts the driver's text into `error` (may be null).
bool writeExchangeFields(const QVariant& templateId, const QJsonObject& fields,
                         QJsonDocument::JsonFormat format, QString* error = nullptr);
