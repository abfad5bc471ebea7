#include "render/page/MarkupResources.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

#include "app/AppHelpers.h"
#include "render/page/PagePicture.h"

namespace {

constexpr qint64 largestPicture = 16 << 20; // bytes
constexpr qint64 largestStyleSheet = 16 << 10;
constexpr qint64 mostBytes = 32 << 20; // of all files that a text names

/// By the text alone, in which the case of letters may differ.
bool isBelow(const QString& path, const QString& directory)
{
    return !directory.isEmpty() && path.startsWith(directory + '/', Qt::CaseInsensitive);
}

/// The file that a path means, relative to the application directory; empty if it may not be read.
/// The path is judged by its text before the file system is asked, which may mean a network.
QString permittedFile(const QString& name)
{
    if (name.isEmpty() || name.contains(QChar(0))) {
        return QString();
    }
    if (name.startsWith(':')) {
        return name; // of the program's resources
    }
    const QString directory = QDir::cleanPath(appDirPath());
    const QString realDirectory = QFileInfo(directory).canonicalFilePath();
    const QString path = QDir::cleanPath(QDir(directory).absoluteFilePath(name));
    if (!isBelow(path, directory) && !isBelow(path, realDirectory)) {
        return QString();
    }
    const QString realPath = QFileInfo(path).canonicalFilePath();
    return liesBelow(realPath, realDirectory) && QFileInfo(realPath).isFile() ? realPath
                                                                              : QString();
}

/// What a `data:` URL holds.
QByteArray payloadOf(const QUrl& url)
{
    const QByteArray encoded = url.toEncoded(QUrl::RemoveScheme);
    const int comma = encoded.indexOf(',');
    if (!url.host().isEmpty() || comma < 0) {
        return QByteArray();
    }
    const QByteArray payload = QByteArray::fromPercentEncoding(encoded.mid(comma + 1));
    const bool isBase64 = encoded.left(comma).trimmed().endsWith(";base64");
    return isBase64 ? QByteArray::fromBase64(payload) : payload;
}

} // namespace

MarkupResources::MarkupResources(int mostStyleRules, qint64 mostPixels)
    : m_styleRules(mostStyleRules)
    , m_pixels(mostPixels)
    , m_bytes(mostBytes)
{
}

QPixmap MarkupResources::picture(const QUrl& url)
{
    return decoded(bytesOf(url, largestPicture));
}

QPixmap MarkupResources::picture(const QString& name)
{
    const QPixmap named = picture(QUrl(name));
    return named.isNull() ? decoded(bytesOfFile(name, largestPicture)) : named;
}

QString MarkupResources::styleSheet(const QUrl& url)
{
    QString text = QString::fromUtf8(bytesOf(url, largestStyleSheet));
    const int rules = text.count('{') + text.count(',') + text.count('@');
    if (rules > m_styleRules) {
        return QString();
    }
    m_styleRules -= rules;
    return text;
}

QByteArray MarkupResources::bytesOf(const QUrl& url, qint64 largest)
{
    const QString scheme = url.scheme();
    if (scheme == "data") {
        const QByteArray payload = payloadOf(url);
        return payload.size() <= largest ? payload : QByteArray();
    }
    if (scheme == "qrc") {
        return bytesOfFile(':' + url.path(), largest);
    }
    if (scheme.size() == 1) { // the drive of a path on Windows
        return bytesOfFile(url.toString(), largest);
    }
    if ((!scheme.isEmpty() && scheme != "file") || !url.host().isEmpty()) {
        return QByteArray();
    }
    QUrl file = url;
    file.setScheme("file");
    return bytesOfFile(file.toLocalFile(), largest);
}

QByteArray MarkupResources::bytesOfFile(const QString& name, qint64 largest)
{
    QFile file(permittedFile(name));
    const bool isSmall = file.size() <= qMin(largest, m_bytes);
    if (file.fileName().isEmpty() || !isSmall || !file.open(QIODevice::ReadOnly)) {
        return QByteArray();
    }
    QByteArray bytes = file.read(largest);
    m_bytes -= bytes.size();
    return bytes;
}

QPixmap MarkupResources::decoded(QByteArray bytes)
{
    if (bytes.isEmpty()) {
        return QPixmap();
    }
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    // A drawing of this kind names files of its own.
    if (reader.format().startsWith("svg")) {
        return QPixmap();
    }
    QPixmap pixmap = readPicture(reader, m_pixels);
    m_pixels -= static_cast<qint64>(pixmap.width()) * pixmap.height();
    return pixmap;
}
