#pragma once

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <list>

/// Plays the user of modal dialogs. A test states, in order, which dialogs it expects and what to
/// do in each; then it makes the click that opens the first one. Each step runs inside the
/// dialog's own loop and may itself lead to the next expected dialog (a nested one runs while its
/// opener's step is still on the stack).
///
/// Everything unexpected fails the test: a dialog of another type or text, a dialog when none is
/// expected, a step that leaves its dialog open, an expectation left over at the end. Of several
/// users only the one who came last plays, until it leaves.
class ModalDriver : public QObject
{
    Q_OBJECT

public:
    explicit ModalDriver(QObject* parent = nullptr);
    ~ModalDriver() override;

    /// Expects a modal dialog of the class and runs the step on it. The step must end the dialog.
    template <class Dialog>
    void expect(std::function<void(Dialog*)> step)
    {
        add(Dialog::staticMetaObject.className(), [step](QWidget* widget) {
            auto* dialog = qobject_cast<Dialog*>(widget);
            if (!dialog) {
                return false;
            }
            step(dialog);
            return true;
        });
    }

    /// Expects a message box of exactly this title and text and clicks its button of this caption
    /// ("Да", "OK", ...; mnemonics do not count).
    void expectMessage(const QString& title, const QString& text, const QString& button = "OK");

    /// Expects a message box of this title whose text begins with the text given.
    void expectMessageStarting(const QString& title, const QString& start,
                               const QString& button = "OK");

    /// Expects a file dialog and chooses the file in it (a full path).
    void expectFileDialog(const QString& file);

    /// Expects a file dialog and cancels it.
    void expectFileDialogCancelled();

    /// True if all that was expected came, in order, and nothing else; the reasons if not are in
    /// failures(). To be called after the click returned.
    bool finished() const;

    /// What went wrong so far, for QVERIFY2.
    QByteArray failures() const;

private:
    struct Expectation
    {
        QString what;
        std::function<bool(QWidget*)> step; // false: not the dialog that was expected
    };

    void add(const QString& what, std::function<bool(QWidget*)> step);
    void addMessage(const QString& title, const QString& text, bool startOnly,
                    const QString& button);
    void schedule();
    void poll();
    void play(QWidget* modal);
    void fail(const QString& reason, QWidget* modal);
    void watch(QWidget* modal);

    ModalDriver* m_before; // who plays when this one has left
    std::list<Expectation> m_expected;
    QStringList m_failures;
    QList<QPointer<QWidget>> m_handled;
    QPointer<QWidget> m_watched;
    qint64 m_watchedSince = 0;
};
