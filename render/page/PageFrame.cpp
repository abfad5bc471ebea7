#include "render/page/PageFrame.h"

#include <QGraphicsLinearLayout>
#include <QPalette>
#include <QWidget>

#include "blanks/GraphicsZItem.h"
#include "render/page/PageStyle.h"
#include "render/vector/VectorProxyWidget.h"

namespace {

/// Black ink, whatever the desktop's colours are: a page is paper.
void setPaperColors(QWidget* widget)
{
    QPalette palette = widget->palette();
    if (palette.color(QPalette::WindowText) == Qt::black &&
        palette.color(QPalette::Text) == Qt::black) {
        return;
    }
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::Text, Qt::black);
    widget->setPalette(palette);
}

} // namespace

PageFrame PageFrame::make()
{
    PageFrame frame;
    frame.container = new VectorProxyWidget;
    frame.container->setStyle(PageStyle::shared());
    frame.layout = new QGraphicsLinearLayout(Qt::Vertical);
    frame.layout->setSpacing(1.0);
    frame.container->setLayout(frame.layout);
    return frame;
}

QGraphicsProxyWidget* PageFrame::makeStroke()
{
    auto* proxy = new VectorProxyWidget;
    proxy->setWidget(new GraphicsZItem);
    return proxy;
}

void PageFrame::setContent(QWidget* widget)
{
    setPaperColors(widget);
    content = new VectorProxyWidget;
    content->setWidget(widget);
    layout->insertItem(-1, content);
}

void PageFrame::addStroke()
{
    constexpr int allTheRest = 100; // against the content's 0
    stroke = makeStroke();
    layout->insertItem(-1, stroke);
    layout->setStretchFactor(stroke, allTheRest);
}

void PageFrame::setGeometry(const QRectF& geometry) const
{
    // A widget tells its proxy nothing of its new size hints.
    static_cast<QGraphicsLayoutItem*>(content)->updateGeometry();
    container->setGeometry(geometry);
    if (!layout->isActivated()) {
        layout->activate();
    }
}

QSizeF PageFrame::availableSize(const QSizeF& size) const
{
    qreal left = 0;
    qreal top = 0;
    qreal right = 0;
    qreal bottom = 0;
    layout->getContentsMargins(&left, &top, &right, &bottom);
    return size - QSizeF(left + right, top + bottom);
}

QRectF PageFrame::strokeInk() const
{
    if (!stroke || stroke->widget()->height() < GraphicsZItem::leastHeight) {
        return QRectF();
    }
    return stroke->mapRectToScene(QRectF(stroke->widget()->rect()));
}
