#include "render/page/PagePicture.h"

#include <QDateTime>
#include <QFileInfo>
#include <QImageReader>
#include <QPixmapCache>

QPixmap readPicture(QImageReader& reader, qint64 mostPixels)
{
    const QSize size = reader.size();
    // Divided, since the product of two sides that a file claims may have no number.
    if (size.isEmpty() || size.width() > mostPixels / size.height()) {
        return QPixmap();
    }
    return QPixmap::fromImageReader(&reader);
}

QPixmap loadPicture(const QString& path)
{
    constexpr qint64 mostPixels = 150'000'000; // a page of 210 by 297 mm at 1200 dots per inch
    // A device or a pipe is never opened: it may not end, or wait for its other side for ever.
    if (!QFileInfo(path).isFile()) {
        return QPixmap();
    }
    QImageReader reader(path);
    return readPicture(reader, mostPixels);
}

bool isLargerThanPaper(const QSize& pageSize)
{
    constexpr int largestSide = 1 << 14; // scene units, over four metres
    return qMax(pageSize.width(), pageSize.height()) > largestSide;
}

QPixmap loadPagePicture(const QString& path, const QSize& pageSize)
{
    if (isLargerThanPaper(pageSize)) {
        return QPixmap();
    }
    // A scan takes far longer to load than the rest of a page to build.
    const QFileInfo file(path);
    const QString key = QString("background %1 %2 %3 %4x%5")
                            .arg(file.lastModified().toMSecsSinceEpoch())
                            .arg(file.size())
                            .arg(path)
                            .arg(pageSize.width())
                            .arg(pageSize.height());
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = loadPicture(path);
        if (pixmap.isNull()) {
            return pixmap;
        }
        pixmap = pixmap.scaled(pageSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}
