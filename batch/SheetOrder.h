#pragma once

#include <QVector>

#include "batch/PlannedSheet.h"

/// In which order sheets are printed.
struct SheetOrder
{
    enum class By
    {
        List,  ///< as they are listed
        Name,  ///< surname, then first name
        Number ///< series and number of the numbered paper
    };

    By by = By::List;
    bool blankAfterBlank = false; ///< all sheets of one paper first, rather than a document whole
};

/// The sheets in this order; what is equal stays as it was.
QVector<PlannedSheet> inOrder(const QVector<PlannedSheet>& sheets, const SheetOrder& order);

/// Tells the sheets of a plan apart: the document and the blank.
QString sheetKey(const PlannedSheet& sheet);

/// Whether a sheet can be printed: it has a blank and is not held back.
bool isPrintable(const PlannedSheet& sheet);

/// How many different blanks there are.
int blankCount(const QVector<PlannedSheet>& sheets);
