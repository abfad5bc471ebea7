#pragma once

#include <QHash>
#include <QObject>
#include <QPixmap>
#include <QTextObjectInterface>

#include "render/page/MarkupResources.h"

class QTextImageFormat;

/// Shows the <img> of a document in the place of the toolkit's own handler, which opens whatever
/// file a text names. A picture that may not be loaded is nothing; the room that its text gives it
/// stays.
class MarkupPictures : public QObject, public QTextObjectInterface
{
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)

public:
    explicit MarkupPictures(QObject* parent);

    /// What the pictures, and the rest of the text, may load.
    MarkupResources& resources() { return m_resources; }

    QSizeF intrinsicSize(QTextDocument* document, int position, const QTextFormat& format) override;
    void drawObject(QPainter* painter, const QRectF& place, QTextDocument* document, int position,
                    const QTextFormat& format) override;

private:
    QPixmap pictureOf(const QTextImageFormat& format);

    MarkupResources m_resources;
    QHash<QString, QPixmap> m_pictures; // by their names, each loaded once
};
