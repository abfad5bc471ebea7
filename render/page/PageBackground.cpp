#include "render/page/PageBackground.h"

#include <QDateTime>
#include <QFileInfo>
#include <QPixmapCache>

QPixmap loadPageBackground(const QString& path, const QSize& pageSize)
{
    constexpr int largestSide = 1 << 14; // scene units, over four metres: memory for no more
    if (qMax(pageSize.width(), pageSize.height()) > largestSide) {
        return QPixmap();
    }
    const QFileInfo file(path);
    const QString key = QString("background %1 %2 %3 %4x%5")
                            .arg(file.lastModified().toMSecsSinceEpoch())
                            .arg(file.size())
                            .arg(path)
                            .arg(pageSize.width())
                            .arg(pageSize.height());
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap) && pixmap.load(path)) {
        pixmap = pixmap.scaled(pageSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}
