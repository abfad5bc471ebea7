#pragma once

#include <QPixmap>
#include <QSize>
#include <QString>

/// A picture scaled into a page, which has its size in scene units; null if the file has none that
/// can be read, or the page is too large. The last ones are kept while their files stay as they
/// are: a scan takes far longer to load than the rest of a page to build.
QPixmap loadPageBackground(const QString& path, const QSize& pageSize);
