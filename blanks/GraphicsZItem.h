#pragma once

#include <QWidget>

/// The Z stroke that strikes out the free rest of a frame, over a transparent background. The
/// layout of the frame gives it the room that the content has left.
class GraphicsZItem : public QWidget
{
    Q_OBJECT

public:
    explicit GraphicsZItem(QWidget* parent = nullptr);
    ~GraphicsZItem() override;

protected:
    /// Draws the top bar, the diagonal and the bottom bar; nothing in less than 4 units of height.
    void paintEvent(QPaintEvent* event) override;
};
