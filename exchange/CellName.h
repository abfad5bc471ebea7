#pragma once

#include <QString>

#include <xlsxcellreference.h>

/// The cell that a name such as "C12" or "$C$12" means: one to three capital Latin letters and a
/// row number. A text that names no cell gives an invalid reference, whereas a QXlsx::CellReference
/// built from such a text would point at an arbitrary cell.
QXlsx::CellReference cellFromName(const QString& name);
