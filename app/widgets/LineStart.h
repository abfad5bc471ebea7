#pragma once

#include <QObject>

class QFocusEvent;
class QLineEdit;

/// Keeps the beginning of a line edit's text in view while nobody types in it. A line edit shows
/// the place of its cursor, which is behind the last letter once a text was set or typed. What is
/// typed goes there all the same, unless the user puts the cursor elsewhere.
class LineStart : public QObject
{
    Q_OBJECT

public:
    /// Looks after one line edit.
    static void install(QLineEdit* edit);

    /// Looks after all line edits of a window but those inside combos and spin boxes. To be called
    /// when the form is set up.
    static void installAll(const QWidget* window);

    /// Selects the whole text of a line edit, with the cursor, and so the view, at its beginning.
    static void selectText(QLineEdit* edit);

    /// False if the focus comes back by itself: from another program's window or from a pop-up.
    static bool isForGood(const QFocusEvent& focusOut);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit LineStart(QLineEdit* edit);
    void showStart();
    void showStartOfNewText();
    void leaveStart();

    QLineEdit* m_edit;
    bool m_isTyped = false;   // the change that is going on
    bool m_isAtStart = false; // since the text was set, or the user left it
};
