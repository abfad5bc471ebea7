#include "render/page/MarkupPictures.h"

#include <QPainter>
#include <QTextImageFormat>
#include <QWidget>

namespace {

int rounded(qreal length)
{
    return qRound(qBound<qreal>(0, length, QWIDGETSIZE_MAX));
}

} // namespace

MarkupPictures::MarkupPictures(QObject* parent)
    : QObject(parent)
{
}

QSizeF MarkupPictures::intrinsicSize(QTextDocument*, int, const QTextFormat& format)
{
    const QTextImageFormat image = format.toImageFormat();
    const bool hasWidth = image.hasProperty(QTextFormat::ImageWidth);
    const bool hasHeight = image.hasProperty(QTextFormat::ImageHeight);
    const int width = rounded(image.width());
    const int height = rounded(image.height());
    if (hasWidth && hasHeight) {
        return QSizeF(width, height);
    }
    const QSizeF own = pictureOf(image).size();
    if (hasWidth) {
        return QSizeF(width, own.isEmpty() ? 0 : rounded(width * (own.height() / own.width())));
    }
    if (hasHeight) {
        return QSizeF(own.isEmpty() ? 0 : rounded(height * (own.width() / own.height())), height);
    }
    return own;
}

void MarkupPictures::drawObject(QPainter* painter, const QRectF& place, QTextDocument*, int,
                                const QTextFormat& format)
{
    const QPixmap picture = pictureOf(format.toImageFormat());
    if (!picture.isNull()) {
        painter->drawPixmap(place, picture, picture.rect());
    }
}

QPixmap MarkupPictures::pictureOf(const QTextImageFormat& format)
{
    const QString name = format.name();
    const auto known = m_pictures.constFind(name);
    if (known != m_pictures.constEnd()) {
        return *known;
    }
    return *m_pictures.insert(name, m_resources.picture(name));
}
