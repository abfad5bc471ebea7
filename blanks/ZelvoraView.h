#pragma once

#include <QGraphicsView>

class BlankWindow;

/// The page of the blank editor: zooms by the wheel, pans by dragging beside the frames, and moves,
/// walks and deletes frames by the keyboard. All other keys are swallowed.
class ZelvoraView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit ZelvoraView(BlankWindow* parent);
    ~ZelvoraView() override;

signals:
    /// After every mouse release and after every move by the keyboard.
    void endDrag();

protected:
    void showEvent(QShowEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void releaseFrame();
    void moveItem(QGraphicsItem* item, double dx, double dy);
    void removeFrame(QGraphicsItem* item);
};
