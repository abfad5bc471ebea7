#pragma once

#include <QFont>
#include <QJsonArray>
#include <QJsonObject>
#include <QPoint>
#include <QSizeF>
#include <QString>
#include <QVariant>
#include <QVector>

#include <optional>

#include "render/page/BlankPaper.h"

/// What a page takes of a document's row.
struct PageDocument
{
    /// Reads the row. None, with what failed in `error` (may be null), if it can't be. `known`
    /// comes back if the row is still that one, so that it is not parsed again.
    static std::optional<PageDocument> read(const QVariant& id, const PageDocument& known,
                                            QString* error);

    QVector<QVariant> columns; ///< all of the row, as they are stored
    QVariant id;
    QJsonObject values;  ///< see documentTagValues()
    QJsonObject content; ///< see documentTagContent()
};

/// What a page takes of a blank's row.
struct PageBlank
{
    /// Reads the row. None, with what failed in `error` (may be null), if it can't be. `known`
    /// comes back if the row is still that one, so that its items are not parsed again.
    static std::optional<PageBlank> read(const QVariant& id, const PageBlank& known,
                                         QString* error);

    BlankPaper paper() const { return {orientation, format, size}; }

    QVector<QVariant> columns; ///< all of the row, as they are stored
    QVariant id;
    QString name;
    int orientation = 0; ///< see PaperOrientation
    int format = 0;      ///< see PaperFormat
    QSizeF size;         ///< of the page, millimetres
    QString storedSize;  ///< see BlankPaper::storedSize()
    QString storedFormat;
    QPoint offset; ///< of the print, millimetres
    QString fontFamily;
    QFont font;
    QVariant background; ///< path of the picture from the application directory; null: none
    QJsonArray items;
};
