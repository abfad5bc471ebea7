#pragma once

#include <QObject>

class QDateEdit;

/// Gives the calendar of a date edit its style (applyCalendarStyle()) when it comes into being,
/// before anybody sees it. A calendar costs as much as a window, and most are never opened.
class CalendarPopupStyle : public QObject
{
    Q_OBJECT

public:
    /// The edit must not have its calendar yet.
    static void install(QDateEdit* edit);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit CalendarPopupStyle(QDateEdit* edit);
};
