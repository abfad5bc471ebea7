#pragma once

#include <QObject>

class QWidget;

/// Keeps the mouse wheel from changing a value by accident: an editor gets the wheel only while it
/// has the focus, otherwise what stands around it scrolls.
class WheelGuard : public QObject
{
    Q_OBJECT

public:
    /// Guards one editor (a combo, a spin box, a date edit). The guard belongs to the editor.
    static void install(QWidget* editor);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit WheelGuard(QWidget* editor);
};
