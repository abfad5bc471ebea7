#pragma once

#include "app/widgets/DateField.h"

/// Date editor of a table cell, without spin buttons and with a pop-up calendar. The calendar is
/// made and dressed when it is first asked for: it costs more than all other editors of a row
/// together, and most are never opened.
class CellDateEdit : public DateField
{
    Q_OBJECT

public:
    explicit CellDateEdit(QWidget* parent = nullptr);
};
