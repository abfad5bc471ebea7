#include "batch/ProofView.h"

#include <QGraphicsPixmapItem>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <QtMath>

#include <cmath>

#include "preflight/ProofPicture.h"
#include "render/page/PageUnits.h"

namespace {

constexpr int smallestDpi = 24;
constexpr double step = 1.2; // of the zoom

} // namespace

ProofView::ProofView(QWidget* parent)
    : QGraphicsView(parent)
    , m_picture(new QGraphicsPixmapItem)
{
    auto* scene = new QGraphicsScene(this);
    scene->addItem(m_picture);
    setScene(scene);
    setDragMode(ScrollHandDrag);
    viewport()->setCursor(Qt::ArrowCursor);
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(NoFrame);
    setBackgroundBrush(QColor("#E4E8F2"));
    setViewportUpdateMode(FullViewportUpdate);
    m_redraw.setSingleShot(true);
    connect(&m_redraw, &QTimer::timeout, this, &ProofView::drawSheet);
}

void ProofView::showSheet(const Sheet& sheet)
{
    m_sheet = sheet;
    m_marked = 0;
    m_notice.clear();
    m_dpi = m_fitsWidth || m_dpi == 0 ? dpiForWidth() : qMin(m_dpi, largestDpi());
    placeSheet();
    drawSheet();
    verticalScrollBar()->setValue(verticalScrollBar()->minimum());
    emit zoomChanged();
}

void ProofView::showNotice(const QString& notice)
{
    m_sheet = Sheet();
    m_marked = 0;
    m_notice = notice;
    m_redraw.stop();
    m_picture->setPixmap(QPixmap());
    scene()->setSceneRect(QRectF());
    viewport()->update();
    emit zoomChanged();
}

void ProofView::markFrame(int number)
{
    m_marked = number > 0 && number <= m_sheet.frames.size() ? number : 0;
    if (m_marked > 0) {
        constexpr int margin = 40; // pixels
        ensureVisible(onScreen(m_sheet.frames[m_marked - 1]), margin, margin);
    }
    viewport()->update();
}

void ProofView::zoomIn()
{
    zoomTo(qCeil(m_dpi * step));
}

void ProofView::zoomOut()
{
    zoomTo(qFloor(m_dpi / step));
}

void ProofView::fitWidth()
{
    m_fitsWidth = true;
    if (hasSheet()) {
        zoomTo(dpiForWidth());
        m_fitsWidth = true;
    }
}

int ProofView::zoomPercent() const
{
    return hasSheet() ? qRound(100.0 * m_dpi / logicalDpiX()) : 0;
}

void ProofView::drawForeground(QPainter* painter, const QRectF& /*rect*/)
{
    painter->save();
    if (!hasSheet()) {
        painter->resetTransform();
        painter->setFont(font());
        painter->setPen(QColor("#5A6070"));
        painter->drawText(viewport()->rect().adjusted(24, 0, -24, 0),
                          Qt::AlignCenter | Qt::TextWordWrap, m_notice);
    } else {
        painter->setPen(QPen(QColor("#B4BCD0"), 0));
        painter->drawRect(onScreen(QRectF(QPointF(0, 0), m_sheet.size)));
        painter->setRenderHint(QPainter::Antialiasing);
        for (int number = 1; number <= m_sheet.frames.size(); ++number) {
            drawFrame(*painter, number);
        }
    }
    painter->restore();
    if (hasFocus()) {
        painter->save();
        painter->resetTransform();
        painter->setPen(QPen(ProofPicture::frameColor(), 2));
        painter->drawRect(viewport()->rect().adjusted(1, 1, -1, -1));
        painter->restore();
    }
}

void ProofView::wheelEvent(QWheelEvent* event)
{
    const int turn = event->angleDelta().y();
    if (turn == 0 || !hasSheet()) {
        event->ignore();
        return;
    }
    // The place under the mouse stays there.
    const QPointF place = mapToScene(event->position().toPoint()) / m_dpi;
    if (turn > 0) {
        zoomIn();
    } else {
        zoomOut();
    }
    const QPoint moved = mapFromScene(place * m_dpi) - event->position().toPoint();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + moved.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() + moved.y());
    event->accept();
}

void ProofView::mousePressEvent(QMouseEvent* event)
{
    m_pressed = event->pos();
    QGraphicsView::mousePressEvent(event);
}

void ProofView::mouseReleaseEvent(QMouseEvent* event)
{
    QGraphicsView::mouseReleaseEvent(event);
    viewport()->setCursor(Qt::ArrowCursor);
    constexpr int still = 4; // pixels; more is a move of the sheet
    if (event->button() != Qt::LeftButton || (event->pos() - m_pressed).manhattanLength() > still) {
        return;
    }
    const int frame = frameAt(event->pos());
    markFrame(frame);
    if (frame > 0) {
        emit frameClicked(frame);
    }
}

void ProofView::keyPressEvent(QKeyEvent* event)
{
    if (event->modifiers() == Qt::ControlModifier && scrollBy(*event)) {
        return;
    }
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Left:
        emit stepped(-1);
        return;
    case Qt::Key_Down:
    case Qt::Key_Right:
        emit stepped(1);
        return;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoomIn();
        return;
    case Qt::Key_Minus:
        zoomOut();
        return;
    case Qt::Key_0:
        fitWidth();
        return;
    default:
        QGraphicsView::keyPressEvent(event);
    }
}

void ProofView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    if (m_fitsWidth && hasSheet() && dpiForWidth() != m_dpi) {
        fitWidth();
    }
}

double ProofView::pixels(double millimetres) const
{
    return millimetres * m_dpi / millimetresPerInch;
}

QRectF ProofView::onScreen(const QRectF& millimetres) const
{
    return {pixels(millimetres.x()), pixels(millimetres.y()), pixels(millimetres.width()),
            pixels(millimetres.height())};
}

int ProofView::frameAt(const QPoint& position) const
{
    const QPointF place = mapToScene(position);
    int found = 0;
    double smallest = 0;
    for (int i = 0; i < m_sheet.frames.size(); ++i) {
        const QRectF frame = onScreen(m_sheet.frames[i]);
        const double area = frame.width() * frame.height();
        // Of frames one in the other the inner one.
        if (frame.contains(place) && (found == 0 || area < smallest)) {
            found = i + 1;
            smallest = area;
        }
    }
    return found;
}

QColor ProofView::colorOf(int frame) const
{
    QColor color = ProofPicture::frameColor();
    for (const Finding& finding : m_sheet.findings) {
        if (finding.item == frame) {
            color = ProofPicture::colorOf(finding.severity);
            if (finding.severity == Finding::Severity::Error) {
                break;
            }
        }
    }
    return color;
}

bool ProofView::scrollBy(const QKeyEvent& event)
{
    constexpr int distance = 60; // pixels
    const bool isVertical = event.key() == Qt::Key_Up || event.key() == Qt::Key_Down;
    const bool isForward = event.key() == Qt::Key_Down || event.key() == Qt::Key_Right;
    if (!isVertical && event.key() != Qt::Key_Left && !isForward) {
        return false;
    }
    QScrollBar* bar = isVertical ? verticalScrollBar() : horizontalScrollBar();
    bar->setValue(bar->value() + (isForward ? distance : -distance));
    return true;
}

void ProofView::drawFrame(QPainter& painter, int number)
{
    const QRectF frame = onScreen(m_sheet.frames[number - 1]);
    const QColor color = colorOf(number);
    const bool isMarked = number == m_marked;
    QColor tint = color;
    tint.setAlpha(isMarked ? 45 : 0);
    painter.setPen(QPen(color, isMarked ? 3 : 1.2));
    painter.setBrush(tint);
    painter.drawRect(frame);

    QFont font = painter.font();
    font.setFamily("Roboto");
    font.setPixelSize(10);
    font.setBold(isMarked);
    painter.setFont(font);
    const QString text = QString::number(number);
    const QFontMetricsF metrics(font);
    // To the left of the frame, where it hides no text of another one; at the sheet's edge inside.
    QRectF badge(0, 0, qMax(metrics.horizontalAdvance(text) + 6, 14.0), metrics.height());
    badge.moveTopRight(frame.topLeft());
    if (badge.left() < 0) {
        badge.moveLeft(0);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(badge, 2, 2);
    painter.setPen(Qt::white);
    painter.drawText(badge, Qt::AlignCenter, text);
}

void ProofView::zoomTo(int dpi)
{
    const int wanted = qBound(smallestDpi, dpi, largestDpi());
    m_fitsWidth = false;
    if (!hasSheet() || wanted == m_dpi) {
        return;
    }
    const QPointF centre = mapToScene(viewport()->rect().center()) / m_dpi;
    m_dpi = wanted;
    placeSheet();
    centerOn(centre * m_dpi);
    constexpr int aMoment = 40; // milliseconds: the wheel may turn on
    m_redraw.start(aMoment);
    emit zoomChanged();
}

void ProofView::placeSheet()
{
    constexpr int margin = 12; // pixels around the sheet
    const QRectF sheet(0, 0, qRound(pixels(m_sheet.size.width())),
                       qRound(pixels(m_sheet.size.height())));
    m_picture->setScale(m_drawn > 0 ? double(m_dpi) / m_drawn : 1);
    scene()->setSceneRect(sheet.adjusted(-margin, -margin, margin, margin));
    viewport()->update();
}

void ProofView::drawSheet()
{
    if (!hasSheet()) {
        return;
    }
    const double ratio = devicePixelRatioF();
    const QImage image = m_sheet.draw(qRound(m_dpi * ratio));
    if (image.isNull()) {
        showNotice("Не хватает памяти для изображения листа");
        return;
    }
    QPixmap pixmap = QPixmap::fromImage(image);
    pixmap.setDevicePixelRatio(ratio);
    m_picture->setPixmap(pixmap);
    m_drawn = m_dpi;
    m_picture->setScale(1);
    viewport()->update();
}

int ProofView::dpiForWidth() const
{
    constexpr int around = 2 * 12 + 20; // pixels: the margin, and a scroll bar that may come
    const int width = qMax(this->width() - around, 1);
    const int dpi = qFloor(width * millimetresPerInch / m_sheet.size.width());
    return qBound(smallestDpi, dpi, largestDpi());
}

int ProofView::largestDpi() const
{
    constexpr double mostPixels = 16e6; // of the picture
    const double area = m_sheet.size.width() * m_sheet.size.height() /
                        (millimetresPerInch * millimetresPerInch); // square inches
    const double ratio = devicePixelRatioF();
    return qMax(smallestDpi, qFloor(std::sqrt(mostPixels / area) / ratio));
}
