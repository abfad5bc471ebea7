#pragma once

#include <QString>

#include "printing/BlankChoice.h"
#include "printing/DocumentSelection.h"

class CheckSummary;
struct PrintSheet;
struct SheetOutcome;

/// What the printing program says, in the user's language.

/// Why no documents could be chosen.
QString inWords(const DocumentSelection::Problem& problem);

/// Why a sheet was not printed or can't be checked. `wantedBlank` is the blank that was asked for.
QString inWords(const PrintSheet& sheet, const SheetOutcome& outcome, const QString& wantedBlank);

/// "Проверено документов: 120, замечаний: 3".
QString inWords(const CheckSummary& summary);

/// How many findings there are of each kind, joined by commas; empty if there are none.
QString kindsInWords(const CheckSummary& summary);

QString unwritableFile(const QString& path);
