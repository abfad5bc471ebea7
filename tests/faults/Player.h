#pragma once

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

/// Says a line on the standard output, at once.
void say(const QString& line);

/// A user who knows what to do in each kind of window, whichever comes: faults lead elsewhere than
/// planned. Tells of each message box ("box TITLE: TEXT", on one line) and agrees to it; a window
/// that he knows nothing of, or that is left open, he closes.
class Player : public QObject
{
    Q_OBJECT

public:
    explicit Player(QObject* parent = nullptr);

    /// What to do in each window of this class.
    template <class Window>
    void in(std::function<void(Window*)> step)
    {
        m_steps[Window::staticMetaObject.className()] = [step](QWidget* window) {
            step(static_cast<Window*>(window));
        };
    }

    /// Chooses this file in every file dialog.
    void chooseFile(const QString& path);

private:
    void poll();
    void play(QWidget* modal);

    QMap<QString, std::function<void(QWidget*)>> m_steps;
    QList<QPointer<QWidget>> m_seen;
};
