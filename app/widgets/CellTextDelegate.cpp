#include "app/widgets/CellTextDelegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>

#include "app/widgets/CutTextTip.h"

CellTextDelegate::CellTextDelegate(int lowest, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_lowest(lowest)
{
}

QString CellTextDelegate::displayText(const QVariant& value, const QLocale& locale) const
{
    constexpr int visible = 2000; // characters, as many as six lines of the widest screen hold
    return QStyledItemDelegate::displayText(value, locale).left(visible);
}

bool CellTextDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                 const QStyleOptionViewItem& option, const QModelIndex& index)
{
    const bool isTextTip = event && event->type() == QEvent::ToolTip && index.isValid() &&
                           !index.data(Qt::ToolTipRole).isValid() && !view->indexWidget(index);
    if (!isTextTip) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    const QSize needed = sizeHint(option, index);
    const bool isCut =
        needed.width() > option.rect.width() || needed.height() > option.rect.height();
    showCutText(event->globalPos(), isCut ? displayText(index.data(), option.locale) : QString(),
                view->viewport(), option.rect);
    return true;
}

QSize CellTextDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    constexpr int padding = 6; // pixels, above and below
    const QSize text = QStyledItemDelegate::sizeHint(option, index);
    const bool hasLines = text.height() >= 2 * option.fontMetrics.height();
    return {text.width(), qMax(text.height() + (hasLines ? 2 * padding : 0), m_lowest)};
}
