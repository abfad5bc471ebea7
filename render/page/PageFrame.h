#pragma once

#include <QGraphicsProxyWidget>
#include <QRectF>
#include <QVector>

class FrameLabel;
class GraphicsZItem;
class QGraphicsLinearLayout;
class QTableWidget;

/// What stands for a text or table item on a page: a container without a widget of its own, whose
/// layout stacks the frame's widgets. The container owns the rest; whoever makes a frame owns the
/// container until it is in a scene.
struct PageFrame
{
    /// An empty frame.
    static PageFrame make();

    /// A new Z stroke, to be put into a frame's layout, which then owns it.
    static QGraphicsProxyWidget* makeStroke();

    /// Puts the frame's label or table into it.
    void setContent(QWidget* widget);

    /// Gives a stroke all the height that the content leaves.
    void addStroke();

    /// Lays the frame out in its place on the page; it becomes larger than that if the content
    /// needs more. To be called after each change of the content.
    void setGeometry(const QRectF& geometry) const;

    /// What the layout leaves for the content of a frame with this size, in scene units.
    QSizeF availableSize(const QSizeF& size) const;

    /// Ink of the stroke on the page; null if it draws none.
    QRectF strokeInk() const;

    QGraphicsProxyWidget* container = nullptr;
    QGraphicsLinearLayout* layout = nullptr;
    QGraphicsProxyWidget* content = nullptr; ///< of the label or the table
    FrameLabel* label = nullptr;             ///< null: a table
    QTableWidget* table = nullptr;           ///< null: a text
    QVector<int> columnWidths; ///< of the table before its layout: they decide on the rows' heights
    QGraphicsProxyWidget* stroke = nullptr; ///< null: none
};
