#include "app/AppStyle.h"

#include <QCalendarWidget>
#include <QFile>
#include <QHeaderView>
#include <QTableWidget>
#include <QTextCharFormat>
#include <QTextStream>
#include <QToolButton>

#include "app/widgets/CellTextDelegate.h"
#include "app/widgets/HeadingTips.h"

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
    for (const QTableWidget* table : window->findChildren<QTableWidget*>()) {
        HeadingTips::install(table->horizontalHeader());
    }
}

void setStyledFixedHeight(QWidget* widget, int height)
{
    // Polishing sets the style sheet's own minimum, and would otherwise come last.
    widget->ensurePolished();
    widget->setFixedHeight(height);
}

void fitRows(QTableView* table, int lowest)
{
    constexpr int tallest = 104; // pixels; six lines
    table->setItemDelegate(new CellTextDelegate(table));
    QHeaderView* rows = table->verticalHeader();
    rows->setDefaultSectionSize(lowest);
    rows->setMinimumSectionSize(lowest);
    rows->setMaximumSectionSize(tallest);
    rows->setSectionResizeMode(QHeaderView::ResizeToContents);
    // The view itself fits its rows to a text that changes, but not to a column's new width, which
    // is in force only after the signal.
    QObject::connect(table->horizontalHeader(), SIGNAL(sectionResized(int, int, int)), rows,
                     SLOT(resizeSections()), Qt::QueuedConnection);
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
