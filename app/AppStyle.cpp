#include "app/AppStyle.h"

#include <QCalendarWidget>
#include <QFile>
#include <QTextCharFormat>
#include <QTextStream>
#include <QToolButton>

QString baseStyleSheet;

bool loadBaseStyle()
{
    QFile file(":/res/baseStyle.css");
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    baseStyleSheet = stream.readAll();
    file.close();
    return true;
}

void applyBaseStyle(QWidget* window)
{
    // A widget that has not been polished yet takes a new sheet without a word to its children,
    // and headers and scroll bars, polished while the form was built, would keep older rules.
    window->ensurePolished();
    window->setStyleSheet(baseStyleSheet + "\r\n" + window->styleSheet());
}

void setStyledFixedHeight(QWidget* widget, int height)
{
    // Polishing sets the style sheet's own minimum, and would otherwise come last.
    widget->ensurePolished();
    widget->setFixedHeight(height);
}

void applyCalendarStyle(QCalendarWidget* calendar)
{
    QTextCharFormat header;
    header.setForeground(Qt::white);
    header.setBackground(Qt::lightGray);
    calendar->setHeaderTextFormat(header);
    calendar->setFixedSize(400, 300);
    calendar->setStyleSheet("background: #B8C7FF;");

    for (const char* name : {"qt_calendar_prevmonth", "qt_calendar_nextmonth"}) {
        if (auto* button = calendar->findChild<QToolButton*>(name)) {
            button->setIconSize(QSize(32, 32));
        }
    }
}
