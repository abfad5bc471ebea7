#pragma once

#include <QWidget>

/// The Z stroke that strikes out the free rest of a frame, over a transparent background. The
/// layout of the frame gives it the room that the content has left.
class GraphicsZItem : public QWidget
{
    Q_OBJECT

public:
    /// A widget of less height draws nothing.
    static constexpr int leastHeight = 4;

    explicit GraphicsZItem(QWidget* parent = nullptr);
    ~GraphicsZItem() override;

protected:
    /// Draws the top bar, the diagonal and the bottom bar.
    void paintEvent(QPaintEvent* event) override;
};
