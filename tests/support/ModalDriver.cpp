#include "support/ModalDriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDateTime>
#include <QDebug>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>
#include <QtTest>

namespace {

/// The user who plays now: of several, the one who came last.
ModalDriver* player = nullptr;

constexpr int pollMs = 2;
constexpr qint64 stuckMs = 8000;

QString plainCaption(QString caption)
{
    return caption.remove('&');
}

QAbstractButton* buttonByCaption(const QMessageBox* box, const QString& caption)
{
    const auto buttons = box->buttons();
    for (QAbstractButton* button : buttons) {
        if (plainCaption(button->text()) == caption) {
            return button;
        }
    }
    return nullptr;
}

void closeDialog(QWidget* modal)
{
    if (auto* dialog = qobject_cast<QDialog*>(modal)) {
        dialog->reject();
        return;
    }
    modal->close();
}

QString describe(QWidget* modal)
{
    QString text = QString("%1 \"%2\"").arg(modal->metaObject()->className(), modal->windowTitle());
    if (const auto* box = qobject_cast<QMessageBox*>(modal)) {
        text += ": " + box->text();
    }
    return text;
}

} // namespace

ModalDriver::ModalDriver(QObject* parent)
    : QObject(parent)
    , m_before(player)
{
    player = this;
    schedule();
}

ModalDriver::~ModalDriver()
{
    player = m_before;
    if (!finished()) {
        QTest::qFail(failures().constData(), __FILE__, __LINE__);
    }
}

void ModalDriver::expectMessage(const QString& title, const QString& text, const QString& button)
{
    addMessage(title, text, false, button);
}

void ModalDriver::expectMessageStarting(const QString& title, const QString& start,
                                        const QString& button)
{
    addMessage(title, start, true, button);
}

void ModalDriver::addMessage(const QString& title, const QString& text, bool startOnly,
                             const QString& button)
{
    add("message \"" + title + "\": " + text, [=](QWidget* widget) {
        auto* box = qobject_cast<QMessageBox*>(widget);
        if (!box || box->windowTitle() != title) {
            return false;
        }
        const bool sameText = startOnly ? box->text().startsWith(text) : box->text() == text;
        QAbstractButton* wanted = buttonByCaption(box, button);
        if (!sameText || !wanted) {
            return false;
        }
        QTest::mouseClick(wanted, Qt::LeftButton);
        return true;
    });
}

void ModalDriver::expectFileDialog(const QString& file)
{
    expect<QFileDialog>([file](QFileDialog* dialog) {
        auto* name = dialog->findChild<QLineEdit*>("fileNameEdit");
        name->setText(file);
        static_cast<QDialog*>(dialog)->accept();
    });
}

void ModalDriver::expectFileDialogCancelled()
{
    expect<QFileDialog>([](QFileDialog* dialog) { static_cast<QDialog*>(dialog)->reject(); });
}

bool ModalDriver::finished() const
{
    return m_expected.empty() && m_failures.isEmpty();
}

QByteArray ModalDriver::failures() const
{
    QStringList all = m_failures;
    for (const Expectation& expectation : m_expected) {
        all << "never came: " + expectation.what;
    }
    return all.join("\n").toUtf8();
}

void ModalDriver::add(const QString& what, std::function<bool(QWidget*)> step)
{
    m_expected.push_back({what, std::move(step)});
}

void ModalDriver::schedule()
{
    // Single shots: a repeating timer does not fire in a loop that runs inside its own slot.
    QTimer::singleShot(pollMs, this, &ModalDriver::poll);
}

void ModalDriver::poll()
{
    schedule();
    if (player != this) {
        return;
    }
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal || !modal->isVisible()) {
        m_watched = nullptr;
        return;
    }
    if (m_handled.contains(modal)) {
        watch(modal);
        return;
    }
    m_handled.removeAll(QPointer<QWidget>());
    m_handled << modal;
    play(modal);
}

void ModalDriver::play(QWidget* modal)
{
    if (m_expected.empty()) {
        fail("unexpected: " + describe(modal), modal);
        return;
    }
    const Expectation expectation = m_expected.front();
    m_expected.pop_front();
    const bool played = expectation.step(modal);
    if (!played) {
        fail("expected " + expectation.what + ", got " + describe(modal), modal);
    }
}

void ModalDriver::fail(const QString& reason, QWidget* modal)
{
    m_failures << reason;
    closeDialog(modal);
}

void ModalDriver::watch(QWidget* modal)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (m_watched != modal) {
        m_watched = modal;
        m_watchedSince = now;
        return;
    }
    if (now - m_watchedSince < stuckMs) {
        return;
    }
    m_watched = nullptr;
    fail("left open: " + describe(modal), modal);
}
