#include "app/widgets/LongItems.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHelpEvent>
#include <QScreen>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QToolTip>

#include "app/AppHelpers.h"

LongItems::LongItems(QComboBox* combo)
    : QObject(combo)
    , m_combo(combo)
    , m_popUp(combo->view()->parentWidget())
{
    constexpr int fewestLetters = 3;
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(fewestLetters);
    setToolTips(0, combo->count() - 1);
    connect(combo->model(), &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex&, int first, int last) { setToolTips(first, last); });
    combo->installEventFilter(this);
    m_popUp->installEventFilter(this);
}

void LongItems::install(QComboBox* combo)
{
    new LongItems(combo);
}

bool LongItems::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_popUp && event->type() == QEvent::Show) {
        widenPopUp();
    }
    if (watched == m_combo && event->type() == QEvent::ToolTip && !showsWholeText()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                           plainMessage(m_combo->currentText()), m_combo);
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void LongItems::setToolTips(int first, int last)
{
    for (int i = first; i <= last; ++i) {
        m_combo->setItemData(i, plainMessage(m_combo->itemText(i)), Qt::ToolTipRole);
    }
}

void LongItems::widenPopUp()
{
    const QAbstractItemView* view = m_combo->view();
    const int scrollBar = view->verticalScrollBar()->sizeHint().width();
    const int frames = m_popUp->width() - view->viewport()->width();
    const int wanted = view->sizeHintForColumn(0) + qMax(frames, 0) + scrollBar;

    const QRect screen = m_combo->screen()->availableGeometry();
    QRect place = m_popUp->geometry();
    place.setWidth(qMin(qMax(place.width(), wanted), screen.width()));
    if (place.right() > screen.right()) {
        place.moveRight(screen.right());
    }
    m_popUp->setGeometry(place);
}

bool LongItems::showsWholeText() const
{
    QStyleOptionComboBox option;
    option.initFrom(m_combo);
    const QRect field = m_combo->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                         QStyle::SC_ComboBoxEditField, m_combo);
    return m_combo->fontMetrics().horizontalAdvance(m_combo->currentText()) <= field.width();
}
