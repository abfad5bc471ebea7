#pragma once

#include <QFont>
#include <QJsonArray>
#include <QJsonObject>
#include <QRectF>
#include <QString>

/// An item object of a blank's `CONTENT`, read the way a page takes it.
struct BlankItem
{
    explicit BlankItem(const QJsonObject& object = {});

    /// The blank's font with what the item has of its own.
    QFont font(const QFont& blankFont) const;

    /// Rows of a table of `rows` rows that are printed: from firstRow up to and with this one.
    int lastRow(int rows) const;

    QJsonObject json;
    int kind;          ///< see BlankItemKind
    QString value;     ///< the item's own text, with tags
    QRectF geometry;   ///< scene units, kept within what widgets can be
    float lineSpacing; ///< factor
    bool hasStroke;    ///< the rest of the frame is struck out
    Qt::Alignment alignment;
    int firstRow;            ///< of a table, from 1
    QJsonArray columnWidths; ///< of a table, scene units
};
