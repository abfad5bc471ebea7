#include "preflight/ProofPicture.h"

#include <QFontMetrics>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QMap>
#include <QPainter>
#include <QPen>
#include <QTextOption>
#include <QWidget>
#include <QtMath>

#include <algorithm>

#include "preflight/PageCheck.h"
#include "preflight/PageImage.h"
#include "render/page/PageUnits.h"

namespace {

const QColor edgeColor("#5A6070");
const QColor offPageColor("#ECEEF1");

QFont textFont(int pixelSize)
{
    QFont font("Roboto");
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(pixelSize);
    return font;
}

} // namespace

ProofPicture::ProofPicture(PageCheck& check, int dpi, bool isBackgroundPrinted,
                           const FindingWords& words)
    : m_check(check)
    , m_dpi(dpi)
    , m_isBackgroundPrinted(isBackgroundPrinted)
    , m_words(words)
{
}

QImage ProofPicture::draw()
{
    int legendHeight = 0;
    if (!m_check.findings().isEmpty()) {
        QImage nowhere(1, 1, QImage::Format_RGB32);
        QPainter measuring(&nowhere);
        legendHeight = drawLegend(measuring, 0);
    }
    return draw(legendHeight, true);
}

QImage ProofPicture::drawSheetAlone()
{
    return draw(0, false);
}

QColor ProofPicture::frameColor()
{
    return "#7C99FF";
}

QColor ProofPicture::colorOf(Finding::Severity severity)
{
    return severity == Finding::Severity::Error ? "#D3212D" : "#C46A00";
}

QImage ProofPicture::draw(int legendHeight, bool isMarked)
{
    const QSize size = sheetSize();
    PageImage image(size.width(), size.height() + legendHeight, QImage::Format_RGB32);
    if (image.isNull()) {
        return QImage();
    }
    const int dotsPerMetre = qRound(m_dpi * millimetresPerMetre / millimetresPerInch);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    drawSheet(painter);
    drawEdges(painter);
    if (isMarked) {
        drawFrames(painter);
        drawMarks(painter);
    }
    if (legendHeight > 0) {
        drawLegend(painter, size.height());
    }
    painter.end();
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);
    const QImage& picture = image;
    return picture;
}

QSize ProofPicture::sheetSize() const
{
    const QSizeF sheet = m_check.sheetSize();
    return {qRound(pixels(sheet.width())), qRound(pixels(sheet.height()))};
}

double ProofPicture::pixels(double millimetres) const
{
    return millimetres * m_dpi / millimetresPerInch;
}

QRectF ProofPicture::inPixels(const QRectF& millimetres) const
{
    return {pixels(millimetres.x()), pixels(millimetres.y()), pixels(millimetres.width()),
            pixels(millimetres.height())};
}

int ProofPicture::textSize() const
{
    constexpr double height = 3; // millimetres
    constexpr int legible = 11;  // pixels
    return qMax(qRound(pixels(height)), legible);
}

double ProofPicture::markRadius() const
{
    return textSize() * 0.75;
}

void ProofPicture::drawSheet(QPainter& painter)
{
    QGraphicsScene* page = m_check.page()->page();
    const QRectF place = inPixels(m_check.pageOnSheet());
    if (place.isEmpty()) {
        return;
    }
    painter.save();
    painter.setClipRect(place);
    QGraphicsPixmapItem* background = m_check.page()->background();
    if (background) {
        drawBackground(painter, *background);
        background->hide();
    }
    // The part of the scene that the moved items come to lie on.
    page->render(&painter, place, page->sceneRect().translated(m_check.offset()),
                 Qt::IgnoreAspectRatio);
    if (background) {
        background->show();
    }
    painter.restore();
}

void ProofPicture::drawBackground(QPainter& painter, const QGraphicsPixmapItem& background)
{
    const QSizeF size = QSizeF(background.pixmap().size()) * m_check.unitLength();
    const QPointF corner =
        m_isBackgroundPrinted ? -m_check.offset() * m_check.unitLength() : QPointF(0, 0);
    painter.drawPixmap(inPixels(QRectF(corner, size)), background.pixmap(),
                       background.pixmap().rect());
}

void ProofPicture::drawEdges(QPainter& painter)
{
    const QRectF sheet(QPointF(0, 0), QSizeF(sheetSize()));
    const QRectF page = inPixels(m_check.pageOnSheet());
    painter.save();
    painter.setClipRect(sheet);
    painter.setPen(Qt::NoPen);
    painter.setBrush(offPageColor);
    for (const QRectF& rest :
         {QRectF(QPointF(page.right(), 0), sheet.bottomRight()),
          QRectF(QPointF(0, page.bottom()), QPointF(page.right(), sheet.bottom()))})
    {
        // Less than a dot is the rounding of the page's size.
        if (rest.width() >= 1 && rest.height() >= 1) {
            painter.drawRect(rest);
        }
    }
    const QRectF printable = inPixels(m_check.printableOnSheet());
    if (printable.isValid() && printable != inPixels(QRectF(QPointF(0, 0), m_check.sheetSize()))) {
        painter.setPen(QPen(edgeColor, qMax(1.0, pixels(0.2)), Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(printable);
    }
    painter.restore();
}

void ProofPicture::drawFrames(QPainter& painter)
{
    painter.save();
    painter.setClipRect(QRectF(QPointF(0, 0), QSizeF(sheetSize())));
    // What is darker stays: no ink is hidden below a frame.
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    QMap<int, QColor> marked; // by the item's number
    for (const Finding& finding : m_check.findings()) {
        if (!marked.contains(finding.item) || finding.severity == Finding::Severity::Error) {
            marked[finding.item] = colorOf(finding.severity);
        }
    }
    const QVector<QRectF>& frames = m_check.frames();
    for (int i = 0; i < frames.size(); ++i) {
        const QColor color = marked.value(i + 1, frameColor());
        const double width = color == frameColor() ? 0.2 : 0.3; // millimetres
        painter.setPen(QPen(color, qMax(1.0, pixels(width))));
        painter.drawRect(inPixels(frames[i]));
    }
    painter.restore();
}

void ProofPicture::drawMarks(QPainter& painter)
{
    QVector<QRectF> taken;
    int number = 0;
    for (const Finding& finding : m_check.findings()) {
        ++number;
        if (finding.item == 0) {
            continue; // of the whole blank: in the legend alone
        }
        const QPointF centre = placeOfMark(inPixels(finding.place), taken);
        const double radius = markRadius();
        taken << QRectF(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
        drawMark(painter, centre, number, finding);
    }
}

QPointF ProofPicture::placeOfMark(const QRectF& frame, const QVector<QRectF>& taken) const
{
    const double radius = markRadius();
    const double gap = radius * 1.2;
    const QRectF sheet(QPointF(radius, radius), QSizeF(sheetSize()) - 2 * QSizeF(radius, radius));
    const QPointF beside[] = {QPointF(frame.left() - gap, frame.center().y()),
                              QPointF(frame.right() + gap, frame.center().y()),
                              QPointF(frame.left() + radius, frame.top() - gap),
                              QPointF(frame.left() + radius, frame.bottom() + gap)};
    const auto isFree = [&](const QPointF& centre) {
        const QRectF box(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
        return std::none_of(taken.cbegin(), taken.cend(),
                            [&box](const QRectF& other) { return other.intersects(box); });
    };
    for (const QPointF& centre : beside) {
        if (sheet.contains(centre) && isFree(centre)) {
            return centre;
        }
    }
    // As near as the sheet allows, then along its line to the right and downward.
    QPointF centre(qBound(sheet.left(), beside[0].x(), sheet.right()),
                   qBound(sheet.top(), beside[0].y(), sheet.bottom()));
    for (int tries = 0; tries < 1000 && !isFree(centre); ++tries) {
        centre.rx() += radius;
        if (centre.x() > sheet.right()) {
            centre = QPointF(sheet.left(), centre.y() + radius);
        }
        if (centre.y() > sheet.bottom()) {
            centre.setY(sheet.top());
        }
    }
    return centre;
}

void ProofPicture::drawMark(QPainter& painter, const QPointF& centre, int number,
                            const Finding& finding)
{
    constexpr int widestInFull = 2; // digits
    const double radius = markRadius();
    const QString text = QString::number(number);
    const double size = text.size() <= widestInFull ? 1.0 : 0.72;
    painter.save();
    painter.setPen(QPen(Qt::white, qMax(1.0, radius / 8)));
    painter.setBrush(colorOf(finding.severity));
    painter.drawEllipse(centre, radius, radius);
    QFont font = textFont(qMax(qRound(radius * 1.15 * size), 7));
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius),
                     Qt::AlignCenter, text);
    painter.restore();
}

int ProofPicture::drawLegend(QPainter& painter, int top)
{
    constexpr int mostLines = 60;
    const int margin = textSize();
    const QVector<Finding>& findings = m_check.findings();
    painter.save();
    painter.setPen(QPen(edgeColor, qMax(1.0, pixels(0.2))));
    painter.drawLine(QPointF(0, top + 0.5), QPointF(sheetSize().width(), top + 0.5));
    QFont headFont = textFont(textSize());
    headFont.setBold(true);
    int bottom = drawText(painter, headFont, margin, top + margin,
                          m_words.page(m_check.document(), m_check.blank())) +
                 margin / 2;
    for (int i = 0; i < qMin(findings.size(), mostLines); ++i) {
        bottom = drawLegendLine(painter, bottom, i + 1, findings[i]);
    }
    if (findings.size() > mostLines) {
        bottom = drawText(painter, textFont(textSize()), margin, bottom,
                          m_words.more(findings.size() - mostLines));
    }
    painter.restore();
    return bottom + margin / 2 - top;
}

int ProofPicture::drawLegendLine(QPainter& painter, int top, int number, const Finding& finding)
{
    const int margin = textSize();
    const double radius = markRadius();
    const QString item = finding.item > 0 ? m_words.item(finding) + ": " : QString();
    const int bottom =
        drawText(painter, textFont(textSize()), margin + qRound(2.7 * radius),
                 top + qRound(radius - QFontMetrics(textFont(textSize())).height() / 2.0),
                 item + m_words.what(finding));
    drawMark(painter, QPointF(margin + radius, top + radius), number, finding);
    return qMax(bottom, top + qRound(2 * radius)) + margin / 4;
}

int ProofPicture::drawText(QPainter& painter, const QFont& font, int left, int top, QString text)
{
    QTextOption option(Qt::AlignLeft);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    const int width = qMax(sheetSize().width() - left - textSize(), 1);
    const QRectF room(left, top, width, QWIDGETSIZE_MAX);
    text[0] = text[0].toUpper();
    painter.setPen(Qt::black);
    painter.setFont(font);
    painter.drawText(room, text, option);
    return qCeil(painter.boundingRect(room, text, option).bottom());
}
