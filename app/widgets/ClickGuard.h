#pragma once

#include <QObject>

class QAbstractButton;

/// Takes the second press of a double click for no press, so that a button that removes something
/// without a question removes one thing. Clicks at a distance count each.
class ClickGuard : public QObject
{
    Q_OBJECT

public:
    /// Guards one button. The guard belongs to the button.
    static void install(QAbstractButton* button);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit ClickGuard(QAbstractButton* button);
};
