#pragma once

#include <QGraphicsProxyWidget>

/// A proxy whose widget reaches a printed page as text and lines. The base class would paint it
/// there as one image at the printer's resolution: megabytes a frame, and text that is no text.
/// On the screen it paints like its base, and the geometry is the same on both.
class VectorProxyWidget : public QGraphicsProxyWidget
{
    Q_OBJECT

public:
    explicit VectorProxyWidget(QGraphicsItem* parent = nullptr);
    ~VectorProxyWidget() override;

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* view) override;
};
