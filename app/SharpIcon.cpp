#include "app/SharpIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>

namespace {

/// Pixels a unit of the sharpest screen; painting on a plainer one scales down.
qreal screenRatio()
{
    return qGuiApp->devicePixelRatio();
}

bool isPlainScreen()
{
    return screenRatio() <= 1.0;
}

QString twinKey(const QPixmap& pixmap)
{
    return QString("sharp icon %1 %2").arg(pixmap.cacheKey()).arg(screenRatio());
}

/// QIcon resets the ratio of whatever pixmap its engine gives, so that a pixmap of more pixels
/// would be painted larger. The engine gives the plain pixmap and leaves the sharp one in the cache
/// of pixmaps, where the windows' style finds it right afterwards.
class SharpIconEngine : public QIconEngine
{
public:
    explicit SharpIconEngine(const QIcon& icon)
        : m_icon(icon)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        painter->drawPixmap(rect, sharpTwin(pixmap(rect.size(), mode, state)));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        const QPixmap plain = m_icon.pixmap(size, mode, state);
        QPixmap sharp;
        if (!isPlainScreen() && !plain.isNull() && !QPixmapCache::find(twinKey(plain), &sharp)) {
            sharp = m_icon.pixmap(size * screenRatio(), mode, state);
            sharp.setDevicePixelRatio(sharp.width() / static_cast<qreal>(plain.width()));
            QPixmapCache::insert(twinKey(plain), sharp);
        }
        return plain;
    }

    QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return m_icon.actualSize(size, mode, state);
    }

    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) const override
    {
        return m_icon.availableSizes(mode, state);
    }

    QIconEngine* clone() const override { return new SharpIconEngine(m_icon); }

private:
    QIcon m_icon;
};

} // namespace

QIcon sharpIcon(const QIcon& icon)
{
    return icon.isNull() ? icon : QIcon(new SharpIconEngine(icon));
}

QPixmap sharpPixmap(const QString& path)
{
    const QString large =
        path.left(path.lastIndexOf('.')) + "@2x" + path.mid(path.lastIndexOf('.'));
    const QPixmap sharp = isPlainScreen() ? QPixmap() : QPixmap(large);
    return sharp.isNull() ? QPixmap(path) : sharp;
}

QPixmap sharpTwin(const QPixmap& pixmap)
{
    QPixmap sharp;
    const bool isFound = !isPlainScreen() && QPixmapCache::find(twinKey(pixmap), &sharp);
    return isFound ? sharp : pixmap;
}
