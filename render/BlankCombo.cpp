#include "render/BlankCombo.h"

#include <QStylePainter>
#include <QStyledItemDelegate>

#include "blanks/BlankRecord.h"

namespace {

class BlankNameDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        constexpr int padding = 4; // pixels above and below, as in other lists that pop up
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 2 * padding);
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->text = shownBlankName(option->text, index.data(Qt::UserRole));
        option->features |= QStyleOptionViewItem::HasDisplay;
    }
};

} // namespace

BlankCombo::BlankCombo(QWidget* parent)
    : QComboBox(parent)
{
    setItemDelegate(new BlankNameDelegate(this));
}

void BlankCombo::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    painter.setPen(palette().color(QPalette::Text));
    QStyleOptionComboBox option;
    initStyleOption(&option);
    if (currentIndex() >= 0) {
        option.currentText = shownBlankName(option.currentText, currentData());
    }
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}
