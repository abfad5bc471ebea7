#include "sample/BlankBackground.h"

#include <QFont>
#include <QFontMetricsF>
#include <QJsonArray>
#include <QPainter>
#include <QRadialGradient>

#include "render/page/PageUnits.h"
#include "sample/Guilloche.h"

namespace {

constexpr int pixelsPerUnit = 2;
constexpr qreal pointsPerInch = 72;

class BackgroundPainter
{
public:
    BackgroundPainter(QPainter& painter, const QJsonObject& description, const QRectF& page)
        : m_painter(painter)
        , m_description(description)
        , m_page(page)
        , m_ink(description["ink"].toString())
        , m_accent(description["accent"].toString())
    {
    }

    void paint()
    {
        drawPaper();
        drawOrnaments();
        drawLines();
        drawCaptions();
    }

private:
    void drawPaper();
    void drawOrnaments();
    void drawLines();
    void drawCaptions();
    void drawCaption(const QJsonObject& caption);

    QPainter& m_painter;
    const QJsonObject m_description;
    const QRectF m_page;
    const QColor m_ink;
    const QColor m_accent;
};

QColor faded(QColor color, qreal opacity)
{
    color.setAlphaF(opacity);
    return color;
}

QFont captionFont(const QJsonObject& caption)
{
    QFont font("Times New Roman");
    font.setPixelSize(qRound(caption["size"].toDouble() * PageUnits::dotsPerInch / pointsPerInch));
    font.setBold(caption["bold"].toBool());
    font.setItalic(caption["italic"].toBool());
    font.setLetterSpacing(QFont::AbsoluteSpacing, caption["spacing"].toDouble());
    // The same outlines at every resolution, without the pixel grid of the screen.
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

void BackgroundPainter::drawPaper()
{
    const QJsonArray paper = m_description["paper"].toArray();
    QRadialGradient gradient(m_page.center(), qMax(m_page.width(), m_page.height()) * 0.6);
    gradient.setColorAt(0, QColor(paper[0].toString()));
    gradient.setColorAt(1, QColor(paper[1].toString()));
    m_painter.fillRect(m_page, gradient);
}

void BackgroundPainter::drawOrnaments()
{
    constexpr qreal hairline = 0.5;
    constexpr qreal bandWidth = 18;
    const qreal distance = m_description["frame"].toDouble();
    const QRectF axis = m_page.adjusted(distance, distance, -distance, -distance);
    const qreal toRule = bandWidth / 2 + 4;
    const QRectF inside = axis.adjusted(toRule, toRule, -toRule, -toRule);

    Guilloche::drawNet(m_painter, inside, faded(m_ink, 0.16), hairline);
    const QJsonArray rosettes = m_description["rosettes"].toArray();
    for (const QJsonValue& rosette : rosettes) {
        Guilloche::drawRosette(m_painter, QPointF(rosette[0].toDouble(), rosette[1].toDouble()),
                               rosette[2].toDouble(), 24, faded(m_accent, 0.22), hairline);
    }

    Guilloche::drawFrame(m_painter, axis, bandWidth, faded(m_ink, 0.75), hairline);
    Guilloche::drawFrame(m_painter, axis, bandWidth * 0.5, faded(m_accent, 0.7), hairline);
    m_painter.setBrush(Qt::NoBrush);
    m_painter.setPen(QPen(faded(m_ink, 0.8), 1));
    m_painter.drawRect(inside);
    m_painter.drawRect(axis.adjusted(-toRule, -toRule, toRule, toRule));
    for (const QPointF& corner :
         {axis.topLeft(), axis.topRight(), axis.bottomLeft(), axis.bottomRight()})
    {
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(QColor(m_description["paper"][1].toString()));
        m_painter.drawEllipse(corner, bandWidth * 0.95, bandWidth * 0.95);
        Guilloche::drawRosette(m_painter, corner, bandWidth * 0.95, 12, faded(m_ink, 0.85),
                               hairline);
    }
}

void BackgroundPainter::drawLines()
{
    m_painter.setPen(QPen(m_ink.darker(130), 0.8));
    const QJsonArray lines = m_description["lines"].toArray();
    for (const QJsonValue& line : lines) {
        const QPointF start(line[0].toDouble(), line[1].toDouble());
        m_painter.drawLine(start, start + QPointF(line[2].toDouble(), 0));
    }
}

void BackgroundPainter::drawCaptions()
{
    const QJsonArray captions = m_description["captions"].toArray();
    for (const QJsonValue& caption : captions) {
        drawCaption(caption.toObject());
    }
}

void BackgroundPainter::drawCaption(const QJsonObject& caption)
{
    const QFont font = captionFont(caption);
    const QString text = caption["text"].toString();
    const qreal slack = caption["w"].toDouble() - QFontMetricsF(font).horizontalAdvance(text);
    const QString align = caption["align"].toString();
    const qreal indent = align == "center" ? slack / 2 : (align == "right" ? slack : 0);
    m_painter.setFont(font);
    m_painter.setPen(caption["accent"].toBool() ? m_accent.darker(120) : m_ink.darker(150));
    m_painter.drawText(QPointF(caption["x"].toDouble() + indent, caption["y"].toDouble()), text);
}

} // namespace

QImage drawBlankBackground(const QJsonObject& description, const QSize& pageSize)
{
    QImage image(pageSize * pixelsPerUnit, QImage::Format_RGB32);
    const int dotsPerMetre =
        qRound(pixelsPerUnit * PageUnits::dotsPerInch * millimetresPerMetre / millimetresPerInch);
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);

    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(pixelsPerUnit, pixelsPerUnit);
    BackgroundPainter(painter, description, QRectF(QPointF(0, 0), QSizeF(pageSize))).paint();
    return image;
}
