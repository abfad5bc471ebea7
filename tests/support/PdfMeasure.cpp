#include "support/PdfMeasure.h"

#include <QTemporaryDir>
#include <QXmlStreamReader>

#include "support/Process.h"

namespace {

constexpr double millimetresPerInch = 25.4;
constexpr double millimetresPerPoint = millimetresPerInch / 72;

double attribute(const QXmlStreamReader& xml, const char* name)
{
    return xml.attributes().value(QLatin1String(name)).toDouble() * millimetresPerPoint;
}

} // namespace

PdfMeasure::PdfMeasure(const QString& file, int dpi)
    : m_file(file)
    , m_dpi(dpi)
{
    readWords();
}

void PdfMeasure::readWords()
{
    QXmlStreamReader xml(runProcess("pdftotext", {"-bbox", m_file, "-"}).out);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == QLatin1String("page")) {
            m_pages.append({QSizeF(attribute(xml, "width"), attribute(xml, "height")), {}});
        } else if (xml.name() == QLatin1String("word")) {
            const QPointF topLeft(attribute(xml, "xMin"), attribute(xml, "yMin"));
            const QPointF bottomRight(attribute(xml, "xMax"), attribute(xml, "yMax"));
            m_pages.last().words.append({xml.readElementText(), QRectF(topLeft, bottomRight)});
        }
    }
}

int PdfMeasure::pageCount() const
{
    return m_pages.size();
}

QSizeF PdfMeasure::pageSize(int page) const
{
    return m_pages.value(page - 1).size;
}

QVector<PdfMeasure::Word> PdfMeasure::words(int page) const
{
    return m_pages.value(page - 1).words;
}

QString PdfMeasure::text(int page) const
{
    QStringList texts;
    for (const Word& word : words(page)) {
        texts << word.text;
    }
    return texts.join(' ');
}

PdfMeasure::Word PdfMeasure::word(const QString& text, int page) const
{
    for (const Word& word : words(page)) {
        if (word.text == text) {
            return word;
        }
    }
    return {};
}

QRectF PdfMeasure::ink(const QRectF& region, int page, int threshold) const
{
    const QImage picture = image(page);
    const double dotsPerMillimetre = m_dpi / millimetresPerInch;
    QRect area = picture.rect();
    if (!region.isNull()) {
        area &= QRectF(region.topLeft() * dotsPerMillimetre, region.size() * dotsPerMillimetre)
                    .toAlignedRect();
    }
    QRect box;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const uchar* line = picture.constScanLine(y);
        int left = area.left();
        while (left <= area.right() && line[left] >= threshold) {
            ++left;
        }
        if (left > area.right()) {
            continue;
        }
        int right = area.right();
        while (line[right] >= threshold) {
            --right;
        }
        box |= QRect(QPoint(left, y), QPoint(right, y));
    }
    return {QPointF(box.topLeft()) / dotsPerMillimetre, QSizeF(box.size()) / dotsPerMillimetre};
}

QImage PdfMeasure::image(int page) const
{
    if (!m_images.contains(page)) {
        const QTemporaryDir dir;
        const QString number = QString::number(page);
        runProcess("pdftoppm", {"-gray", "-r", QString::number(m_dpi), "-f", number, "-l", number,
                                "-singlefile", m_file, dir.filePath("page")});
        m_images[page] =
            QImage(dir.filePath("page.pgm")).convertToFormat(QImage::Format_Grayscale8);
    }
    return m_images[page];
}
