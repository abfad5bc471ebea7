#pragma once

#include <QByteArray>
#include <QPixmap>
#include <QString>
#include <QUrl>

/// What the markup of one text may load: `data:`, the program's resources and regular files below
/// the application directory, within bounds that hold for all that the text loads. Everything else
/// is nothing, and is never opened: no other path, no link that leads out, no pipe or device, no
/// name of another computer.
class MarkupResources
{
public:
    /// Of all pictures of a text: a page of 210 by 297 mm at nearly 600 dots per inch.
    static constexpr qint64 mostPixelsOfText = 32'000'000;

    /// `mostStyleRules`: how many rules the text's style sheets may have.
    explicit MarkupResources(int mostStyleRules = 0, qint64 mostPixels = mostPixelsOfText);

    /// A picture named by an URL, or null.
    QPixmap picture(const QUrl& url);

    /// A picture named as an <img> names it, by an URL or a path, or null.
    QPixmap picture(const QString& name);

    /// A style sheet, or empty.
    QString styleSheet(const QUrl& url);

    void setMostStyleRules(int most) { m_styleRules = most; }

private:
    QByteArray bytesOf(const QUrl& url, qint64 largest);
    QByteArray bytesOfFile(const QString& name, qint64 largest);
    QPixmap decoded(QByteArray bytes);

    // What is left of the bounds.
    int m_styleRules;
    qint64 m_pixels;
    qint64 m_bytes;
};
