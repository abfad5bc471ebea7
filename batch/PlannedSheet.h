#pragma once

#include <QString>
#include <QVector>

#include "printing/PrintSheet.h"

/// One sheet that is to be printed, with what the window tells of it.
struct PlannedSheet
{
    PrintSheet sheet;
    QString form;            ///< name of the document's form
    QString group;           ///< class
    QString blankName;       ///< "Бланк N" for an unnamed one
    QString blankSeries;     ///< of the document's own numbered paper, as the document says
    QString blankNumber;     ///< likewise
    bool hasErrors = false;  ///< found by the check
    bool isHeldBack = false; ///< errors, and they are not to be printed
};

/// What the engine takes of the sheets, in their order.
QVector<PrintSheet> printSheets(const QVector<PlannedSheet>& planned);
