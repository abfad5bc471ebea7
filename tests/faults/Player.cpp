#include "Player.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>

#include <cstdio>

namespace {

void agree(QMessageBox* box)
{
    say("box " + box->windowTitle() + ": " + box->text().replace('\n', ' '));
    const auto buttons = box->buttons();
    for (QAbstractButton* button : buttons) {
        const QString caption = button->text().remove('&');
        if (caption == "Да" || caption == "Yes" || caption == "OK" || caption == "Продолжить") {
            button->click();
            return;
        }
    }
    box->reject();
}

} // namespace

void say(const QString& line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

Player::Player(QObject* parent)
    : QObject(parent)
{
    QTimer::singleShot(0, this, &Player::poll);
}

void Player::chooseFile(const QString& path)
{
    in<QFileDialog>([path](QFileDialog* dialog) {
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(path);
        static_cast<QDialog*>(dialog)->accept();
    });
}

void Player::poll()
{
    QTimer::singleShot(1, this, &Player::poll); // fires in the loops of nested dialogs too
    QWidget* modal = QApplication::activeModalWidget();
    if (modal && modal->isVisible() && !m_seen.contains(modal)) {
        m_seen.removeAll(QPointer<QWidget>());
        m_seen << modal;
        play(modal);
    }
}

void Player::play(QWidget* modal)
{
    if (auto* box = qobject_cast<QMessageBox*>(modal)) {
        agree(box);
        return;
    }
    const QPointer<QWidget> window = modal;
    const auto step = m_steps.value(modal->metaObject()->className());
    if (step) {
        step(modal);
    } else {
        say(QString("unknown window ") + modal->metaObject()->className());
    }
    if (!window || !window->isVisible()) {
        return;
    }
    if (auto* dialog = qobject_cast<QDialog*>(window.data())) {
        dialog->reject();
    } else {
        window->close();
    }
}
