#include "documents/CellListEdit.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyle>

#include <algorithm>

#include "app/AppStyle.h"
#include "app/widgets/LineStart.h"

CellListEdit::CellListEdit(QWidget* parent)
    : QComboBox(parent)
{
    setInsertPolicy(NoInsert);
}

void CellListEdit::allowTyping()
{
    setEditable(true);
    completer()->setCompletionMode(QCompleter::PopupCompletion);
    // The base class would put the first item in that differs in letter case only.
    disconnect(lineEdit(), &QLineEdit::editingFinished, this, nullptr);
    connect(lineEdit(), &QLineEdit::editingFinished, this, &CellListEdit::followText);
    LineStart::install(lineEdit());
    // A long item that was chosen is seen from its beginning.
    connect(this, QOverload<int>::of(&QComboBox::activated), lineEdit(),
            [this] { LineStart::selectText(lineEdit()); });
    lineEdit()->home(false);
}

bool CellListEdit::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            // An offer that the arrow keys went to stands in the line already. So the key just ends
            // the entry, as it does without a pop-up.
            static_cast<QWidget*>(watched)->hide();
            QCoreApplication::sendEvent(this, event);
            return true;
        }
    }
    return QComboBox::eventFilter(watched, event);
}

void CellListEdit::focusInEvent(QFocusEvent* event)
{
    QComboBox::focusInEvent(event);
    if (isEditable() && !m_offersReady) {
        setUpOffers();
    }
}

void CellListEdit::focusOutEvent(QFocusEvent* event)
{
    QComboBox::focusOutEvent(event);
    if (isEditable() && LineStart::isForGood(*event)) {
        lineEdit()->home(false);
    }
}

// The arrow keys and the list go on from the item that the text is.
void CellListEdit::followText()
{
    if (currentText() == itemText(currentIndex())) {
        return;
    }
    const int index = findText(currentText(), Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index >= 0) {
        setCurrentIndex(index);
    }
}

// When it is first needed: a table may have hundreds of these editors, and most are never used.
void CellListEdit::setUpOffers()
{
    constexpr int widest = 600; // pixels
    constexpr int margins = 16; // pixels; beside the text of an item
    m_offersReady = true;
    QAbstractItemView* offers = completer()->popup();
    offers->installEventFilter(this);
    applyBaseStyle(offers); // a window of its own has no share in the style of ours
    int width = 0;
    for (int i = 0; i < count(); ++i) {
        width = std::max(width, offers->fontMetrics().horizontalAdvance(itemText(i)));
    }
    width += style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, offers) + margins;
    offers->setMinimumWidth(std::min(width, widest));
}
