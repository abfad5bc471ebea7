#include "documents/CellDateEdit.h"

#include "app/widgets/CalendarPopupStyle.h"

CellDateEdit::CellDateEdit(QWidget* parent)
    : DateField(parent)
{
    setButtonSymbols(QAbstractSpinBox::NoButtons);
    setCalendarPopup(true);
    CalendarPopupStyle::install(this);
}
