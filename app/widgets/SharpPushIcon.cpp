#include "app/widgets/SharpPushIcon.h"

#include <QEvent>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace {

/// What a button tells the style about itself.
QStyleOptionButton optionOf(const QPushButton* button)
{
    struct Access : QPushButton
    {
        static QStyleOptionButton read(const QPushButton* from)
        {
            QStyleOptionButton option;
            (from->*(&Access::initStyleOption))(&option);
            return option;
        }
    };
    return Access::read(button);
}

/// Where the style puts an icon of this size: in the middle, together with the text behind it.
QRect iconPlace(const QPushButton* button, const QStyleOptionButton& option, const QSize& size)
{
    constexpr int spacing = 4;
    const QRect label =
        button->style()->subElementRect(QStyle::SE_PushButtonContents, &option, button);
    int width = size.width();
    if (!option.text.isEmpty()) {
        const QRect text =
            option.fontMetrics.boundingRect(label, Qt::TextShowMnemonic, option.text);
        width += spacing + text.width();
    }
    return {label.x() + (label.width() - width) / 2,
            label.y() + (label.height() - size.height()) / 2, size.width(), size.height()};
}

void paint(QPushButton* button)
{
    QStyleOptionButton option = optionOf(button);
    const QIcon icon = option.icon;
    QPixmap space(icon.actualSize(option.iconSize));
    space.fill(Qt::transparent);
    option.icon = QIcon(space);

    QStylePainter painter(button);
    painter.drawControl(QStyle::CE_PushButton, option);
    icon.paint(&painter, iconPlace(button, option, space.size()), Qt::AlignCenter,
               button->isEnabled() ? QIcon::Normal : QIcon::Disabled,
               button->isChecked() ? QIcon::On : QIcon::Off);
}

} // namespace

void SharpPushIcon::install(QPushButton* button)
{
    button->installEventFilter(new SharpPushIcon(button));
}

bool SharpPushIcon::eventFilter(QObject* watched, QEvent* event)
{
    auto* button = qobject_cast<QPushButton*>(watched);
    const bool isMine = event->type() == QEvent::Paint && button && !button->icon().isNull() &&
                        button->devicePixelRatioF() > 1.0;
    if (!isMine) {
        return QObject::eventFilter(watched, event);
    }
    paint(button);
    return true;
}
