#include "app/AppStyle.h"

#include <QAction>
#include <QCalendarWidget>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTextCharFormat>
#include <QTextStream>
#include <QToolBar>
#include <QToolButton>

#include "app/SharpIcon.h"
#include "app/WindowStyle.h"
#include "app/widgets/HeadingTips.h"
#include "app/widgets/RowFit.h"
#include "app/widgets/SharpPushIcon.h"

QString baseStyleSheet;

namespace {

bool isActionsButton(const QAbstractButton* button)
{
    const auto* tool = qobject_cast<const QToolButton*>(button);
    return tool && tool->defaultAction();
}

void sharpenIcons(const QWidget* window)
{
    const auto actions = window->findChildren<QAction*>();
    for (QAction* action : actions) {
        action->setIcon(sharpIcon(action->icon()));
    }
    const auto buttons = window->findChildren<QAbstractButton*>();
    for (QAbstractButton* button : buttons) {
        if (isActionsButton(button) || button->icon().isNull()) {
            continue;
        }
        button->setIcon(sharpIcon(button->icon()));
        if (auto* push = qobject_cast<QPushButton*>(button)) {
            SharpPushIcon::install(push);
        }
    }
}

// A reader of the screen would otherwise tell "dot dot dot", or nothing.
void nameIconButtons(const QWidget* window)
{
    const auto buttons = window->findChildren<QAbstractButton*>();
    for (QAbstractButton* button : buttons) {
        const bool showsNoWords = !button->icon().isNull() || button->text() == "...";
        if (showsNoWords && button->accessibleName().isEmpty() && !isActionsButton(button)) {
            button->setAccessibleName(button->toolTip());
        }
    }
}

// Style sheets of Qt 5 give an empty editor's hint the colour of its text.
void palePlaceholders(const QWidget* window)
{
    const auto edits = window->findChildren<QLineEdit*>();
    for (QLineEdit* edit : edits) {
        edit->ensurePolished();
        QPalette palette = edit->palette();
        palette.setColor(QPalette::PlaceholderText, QColor("#A0A0A0"));
        edit->setPalette(palette);
    }
}

} // namespace

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
    window->setStyle(WindowStyle::shared());
    // A widget that has not been polished yet takes a new sheet without a word to its children,
    // and headers and scroll bars, polished while the form was built, would keep older rules.
    window->ensurePolished();
    window->setStyleSheet(baseStyleSheet + "\r\n" + window->styleSheet());
    for (const QTableWidget* table : window->findChildren<QTableWidget*>()) {
        HeadingTips::install(table->horizontalHeader());
    }
    sharpenIcons(window);
    nameIconButtons(window);
    palePlaceholders(window);
}

void alignToolBarIcons(const QToolBar* toolBar)
{
    const auto buttons = toolBar->findChildren<QToolButton*>();
    int tallest = 0;
    for (QToolButton* button : buttons) {
        button->ensurePolished();
        tallest = qMax(tallest, button->sizeHint().height());
    }
    for (QToolButton* button : buttons) {
        button->setMinimumHeight(tallest);
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
    new RowFit(table, lowest);
}

void applyCalendarStyle(QCalendarWidget* calendar)
{
    QTextCharFormat header;
    header.setForeground(Qt::white);
    header.setBackground(Qt::lightGray);
    calendar->setHeaderTextFormat(header);
    calendar->setFixedSize(400, 300);
    calendar->setStyleSheet("background: #B8C7FF;");

    const QPair<const char*, const char*> monthButtons[] = {
        {"qt_calendar_prevmonth", ":/res/calendar_prev.png"},
        {"qt_calendar_nextmonth", ":/res/calendar_next.png"}};
    for (const auto& [name, picture] : monthButtons) {
        if (auto* button = calendar->findChild<QToolButton*>(name)) {
            button->setIcon(sharpIcon(QIcon(picture)));
            button->setIconSize(QSize(32, 32));
        }
    }
}
