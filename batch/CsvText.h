#pragma once

#include <QByteArray>
#include <QStringList>

// Tables as text for the spreadsheet of a Russian desktop: it parts cells by ';', as the comma is
// its decimal mark, and takes a file for UTF-8 only if it begins with the byte order mark.

/// What such a file begins with.
QByteArray csvStart();

/// A row with its line end. Cells are quoted; one that a spreadsheet would take for a formula
/// begins with an apostrophe, since names and numbers are the texts of others.
QByteArray csvRow(const QStringList& cells);
