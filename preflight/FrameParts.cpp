#include "preflight/FrameParts.h"

#include <QGraphicsProxyWidget>
#include <QLabel>
#include <QTableWidget>

#include "blanks/GraphicsZItem.h"

FrameParts partsOf(const QGraphicsItem* container)
{
    constexpr int lowestStroke = 4; // scene units; a lower one draws nothing
    FrameParts parts;
    const QList<QGraphicsItem*> children = container->childItems();
    for (QGraphicsItem* child : children) {
        auto* proxy = dynamic_cast<QGraphicsProxyWidget*>(child);
        if (!proxy || !proxy->widget()) {
            continue;
        }
        if (!qobject_cast<GraphicsZItem*>(proxy->widget())) {
            parts.content = proxy;
            parts.label = qobject_cast<QLabel*>(proxy->widget());
            parts.table = qobject_cast<QTableWidget*>(proxy->widget());
        } else if (proxy->widget()->height() >= lowestStroke) {
            parts.stroke = proxy->mapRectToScene(QRectF(proxy->widget()->rect()));
        }
    }
    return parts;
}
