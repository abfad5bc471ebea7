#pragma once

#include <QString>
#include <QStringView>

#include <xlsxcellreference.h>

/// The cell that a name such as "C12" or "$C$12" means: one to three capital Latin letters and a
/// row number. A text that names no cell gives an invalid reference, whereas a QXlsx::CellReference
/// built from such a text would point at an arbitrary cell.
QXlsx::CellReference cellFromName(QStringView name);

/// True if every sheet has such a cell.
bool isOnSheet(const QXlsx::CellReference& cell);

/// The areas that a text such as "A1:B2 D4" means, written with their upper left corner first.
/// Those that name no cells of a sheet are left out; empty if none is left, or if the text is
/// longer than any that office programs write.
QString areasFromNames(QStringView names);
