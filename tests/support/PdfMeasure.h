#pragma once

#include <QImage>
#include <QMap>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QVector>

/// Measures a PDF file in millimetres with the tools of poppler, so that a test can speak of paper.
/// The origin is the top left corner of the page; pages count from 1.
class PdfMeasure
{
public:
    struct Word
    {
        QString text;
        QRectF box; ///< millimetres
    };

    /// `dpi` is the resolution at which ink is looked at.
    explicit PdfMeasure(const QString& file, int dpi = 300);

    int pageCount() const;

    /// Width and height of a page in millimetres; empty if there is no such page.
    QSizeF pageSize(int page = 1) const;

    /// The words of a page, with the boxes of their fonts (not of their ink).
    QVector<Word> words(int page = 1) const;

    /// The words of a page, parted by blanks.
    QString text(int page = 1) const;

    /// The first word with this text; an empty box if there is none.
    Word word(const QString& text, int page = 1) const;

    /// Bounding box, in millimetres, of what is darker than `threshold` (0 black to 255 white)
    /// within a region given in millimetres; a null region is the whole page. Null if nothing is.
    QRectF ink(const QRectF& region = QRectF(), int page = 1, int threshold = 128) const;

    /// The page in shades of grey at the resolution of the constructor.
    QImage image(int page = 1) const;

private:
    struct Page
    {
        QSizeF size; // millimetres
        QVector<Word> words;
    };

    void readWords();

    QString m_file;
    int m_dpi;
    QVector<Page> m_pages;
    mutable QMap<int, QImage> m_images;
};
