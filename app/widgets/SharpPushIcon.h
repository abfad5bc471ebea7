#pragma once

#include <QObject>

class QPushButton;

/// Paints a push button with a sharp icon where a screen has more than one pixel a unit. The style
/// would paint the plain pixmap, without a way to replace it that tool buttons have. On a plain
/// screen the button paints itself.
class SharpPushIcon : public QObject
{
    Q_OBJECT

public:
    /// Prepares a button whose icon is sharpIcon(). What is made belongs to the button.
    static void install(QPushButton* button);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using QObject::QObject;
};
