#pragma once

#include "render/PrinPreviewDialog.h"

class QPainter;
class QPrinter;
struct PrintSheet;

/// The page of a sheet, laid out and printed as the application's own preview does it. The database
/// must be open.
class SheetPage
{
public:
    SheetPage();

    /// Lays the sheet's document out on its blank; false if one of the two can't be read.
    bool build(const PrintSheet& sheet);

    /// Prints the page that was built last, which has to be built anew before the next print: the
    /// blank's print offsets have moved its items. False if the printer refuses it.
    bool print(QPrinter& printer, QPainter& painter);

private:
    PrinPreviewDialog m_preview;
};
