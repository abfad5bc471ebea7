#pragma once

#include <QTableWidget>

/// A table that is filled in like a form: Tab goes from value to value, past cells that cannot be
/// changed, and leaves the table behind the last one, as Shift+Tab does before the first. A plain
/// table begins again, so that the buttons below could not be reached by the keyboard.
/// Enter ends an entry and goes to the next value too, but stays on the last one: it never gets to
/// the window's default button. What is typed into a value reached so replaces it.
class EntryTable : public QTableWidget
{
    Q_OBJECT

public:
    explicit EntryTable(QWidget* parent = nullptr);

protected:
    bool focusNextPrevChild(bool next) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

protected slots:
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    void goOn(const QModelIndex& cell);
    bool goTo(const QModelIndex& cell, Qt::FocusReason reason);
    bool takesEntries(const QModelIndex& cell) const;
    /// The value next to a cell, or the first or last one if there is no cell; invalid at an end.
    QModelIndex neighbour(const QModelIndex& cell, bool next) const;
    bool leave(bool next);
};
