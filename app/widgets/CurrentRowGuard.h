#pragma once

#include <QObject>

class QAbstractItemView;
class QListWidget;
class QTableWidget;

/// Lets a row of a list be current only with its selection. The toolkit makes the first row
/// current, unselected, as soon as a list gets the focus by Tab, and leaves a row current that Ctrl
/// and a click took out of the selection; keys and buttons would act on a row that nobody picked.
class CurrentRowGuard : public QObject
{
    Q_OBJECT

public:
    /// Guards a list, which owns the guard. To be called before anything is connected to the
    /// list's change of selection, so that the current row is right in all that follows, and after
    /// the last clear(), which would undo it.
    static void install(QTableWidget* list);
    static void install(QListWidget* list);

private:
    explicit CurrentRowGuard(QAbstractItemView* list);
    void forgetCurrent();
    void followSelection();

    QAbstractItemView* m_list;
};
