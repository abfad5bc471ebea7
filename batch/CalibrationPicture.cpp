#include "batch/CalibrationPicture.h"

#include <QPainter>

#include "printing/calibration/CalibrationSheet.h"
#include "render/page/BlankPaper.h"

namespace {

// All lengths are millimetres of the paper.
const QRectF shown(-3, -3, 37, 31);
const QSizeF paper(297, 210);
constexpr double mark = 10;       // where the corner's mark is to stand
constexpr double rulerPlace = 14; // from the other edge
constexpr double rulerWidth = 8;
constexpr double farthest = 9; // that the picture can show

} // namespace

void CalibrationPicture::setReadOff(double millimetres)
{
    m_readOff = qBound(-farthest, millimetres, farthest);
    update();
}

QSize CalibrationPicture::sizeHint() const
{
    constexpr double dotsPerMillimetre = 9;
    return (shown.size() * dotsPerMillimetre).toSize();
}

void CalibrationPicture::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), QColor("#E6EAF4"));
    const double scale = qMax(width() / shown.width(), height() / shown.height());
    painter.scale(scale, scale);
    painter.translate(-shown.topLeft());
    paintSheet(painter);
    if (isUpright()) { // turned over the corner: what was across is upright
        painter.setTransform(QTransform(0, 1, 1, 0, 0, 0), true);
    }
    paintRuler(painter);
    paintPointer(painter);
}

void CalibrationPicture::paintSheet(QPainter& painter) const
{
    painter.save();
    painter.setPen(QPen(QColor("#AAB4CC"), 0.2));
    painter.setBrush(Qt::white);
    painter.drawRect(QRectF(QPointF(), paper));
    painter.setBrush(Qt::NoBrush);
    painter.setClipRect(QRectF(QPointF(), paper));
    painter.translate(isUpright() ? QPointF(0, m_readOff) : QPointF(m_readOff, 0));
    const BlankPaper blankPaper(0, 0, paper);
    CalibrationSheet(blankPaper, QString()).paint(painter, paper);
    painter.restore();
}

void CalibrationPicture::paintRuler(QPainter& painter) const
{
    painter.setPen(QPen(QColor("#B89A3C"), 0.15));
    painter.setBrush(QColor("#FBEFC4"));
    painter.drawRect(QRectF(0, rulerPlace, paper.width(), rulerWidth));
    painter.setPen(QPen(QColor("#5C4A10"), 0.12));
    for (int millimetre = 0; millimetre < shown.right(); ++millimetre) {
        const double reach = millimetre % 10 == 0 ? 3.5 : millimetre % 5 == 0 ? 2.5 : 1.6;
        painter.drawLine(QPointF(millimetre, rulerPlace), QPointF(millimetre, rulerPlace + reach));
    }
    QFont font("Roboto");
    font.setPixelSize(2);
    painter.setFont(font);
    for (int millimetre = 0; millimetre < shown.right(); millimetre += 10) {
        painter.save();
        painter.translate(millimetre, rulerPlace + 5.5);
        if (isUpright()) { // letters are not to be mirrored
            painter.setTransform(QTransform(0, 1, 1, 0, 0, 0), true);
        }
        painter.drawText(QRectF(-3, -2, 6, 4), Qt::AlignCenter, QString::number(millimetre));
        painter.restore();
    }
}

/// From the corner's mark to where it stands on the ruler.
void CalibrationPicture::paintPointer(QPainter& painter) const
{
    const double place = mark + m_readOff;
    painter.setPen(QPen(QColor("#F46060"), 0.35));
    painter.drawLine(QPointF(place, mark - 3), QPointF(place, rulerPlace + 4));
}
