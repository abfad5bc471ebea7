#include "app/WindowStyle.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPointer>
#include <QPushButton>
#include <QWindow>

#include "app/SharpIcon.h"

namespace {

// The dialog may be about to be shown: its window exists, and must not be made anew.
void removeHelpButton(QDialog* dialog)
{
    const Qt::WindowFlags flags = dialog->windowFlags();
    if (!flags.testFlag(Qt::WindowContextHelpButtonHint)) {
        return;
    }
    dialog->overrideWindowFlags(flags & ~Qt::WindowContextHelpButtonHint);
    if (QWindow* window = dialog->windowHandle()) {
        window->setFlag(Qt::WindowContextHelpButtonHint, false);
    }
}

void captionCancel(QPushButton* button)
{
    const auto* box = qobject_cast<QDialogButtonBox*>(button->parentWidget());
    if (box && box->standardButton(button) == QDialogButtonBox::Cancel) {
        button->setText("Отмена");
    }
}

} // namespace

WindowStyle* WindowStyle::shared()
{
    static QPointer<WindowStyle> style;
    if (!style) {
        style = new WindowStyle;
        style->setParent(qApp);
    }
    return style;
}

int WindowStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* returnData) const
{
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) {
        return 0;
    }
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

void WindowStyle::drawItemPixmap(QPainter* painter, const QRect& rect, int alignment,
                                 const QPixmap& pixmap) const
{
    QProxyStyle::drawItemPixmap(painter, rect, alignment, sharpTwin(pixmap));
}

void WindowStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (auto* dialog = qobject_cast<QDialog*>(widget)) {
        removeHelpButton(dialog);
    } else if (auto* button = qobject_cast<QPushButton*>(widget)) {
        captionCancel(button);
    }
}
