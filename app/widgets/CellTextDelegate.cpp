#include "app/widgets/CellTextDelegate.h"

QString CellTextDelegate::displayText(const QVariant& value, const QLocale& locale) const
{
    constexpr int visible = 2000; // characters, as many as six lines of the widest screen hold
    return QStyledItemDelegate::displayText(value, locale).left(visible);
}
