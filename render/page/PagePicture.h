#pragma once

#include <QPixmap>
#include <QString>

class QImageReader;

/// The reader's picture; null if it is none or has more pixels than that, which are counted before
/// any is decoded.
QPixmap readPicture(QImageReader& reader, qint64 mostPixels);

/// The picture in a file; null if the file is no regular one, holds no picture, or one larger than
/// any scan of a page.
QPixmap loadPicture(const QString& path);

/// Whether a page of that size in scene units is larger than any paper: there is memory for no
/// picture of it.
bool isLargerThanPaper(const QSize& pageSize);

/// loadPicture() scaled into a page of that size in scene units; null also for a page where
/// isLargerThanPaper(). The last pictures are kept while their files stay as they are.
QPixmap loadPagePicture(const QString& path, const QSize& pageSize);
