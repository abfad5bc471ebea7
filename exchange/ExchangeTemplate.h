#pragma once

#include <QString>
#include <QVector>

class QJsonObject;

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
