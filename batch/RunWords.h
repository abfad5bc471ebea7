#pragma once

#include <QString>
#include <QVector>

#include "batch/BatchJournal.h"
#include "batch/PlannedSheet.h"
#include "batch/PrintRun.h"
#include "printing/SheetOutcome.h"

/// What the printing step says of sheets and runs, in Russian.

/// Surname and first name, or the number of a document without either.
QString personOf(const PlannedSheet& sheet);

/// Series and number of the numbered paper, "АБ № 000123"; empty if the document has neither.
QString paperOf(const PlannedSheet& sheet);

/// What became of a sheet: "напечатан", "отложен: есть ошибки"; empty before its turn.
QString inWords(const SheetOutcome& outcome);

/// "Напечатано 25, отложено 2".
QString totals(const QVector<SheetOutcome>& outcomes);

/// Where a target prints: "принтер «Офис»", "файл «x.pdf»", "папка «Дипломы»".
QString inWords(const PrintTarget& target);

/// What the run does now, or waits for.
QString inWords(const PrintRun& run, const PrintTarget& target);

/// Why a run into the target can't begin.
QString refusalOf(const PrintTarget& target);

/// What is noted of a sheet that went into `file`, if it is not empty, or else to the target.
JournalEntry entryOf(const PlannedSheet& sheet, const QString& file, const PrintTarget& target,
                     const QString& event);

/// How a run ended, and what to do now: one or two sentences without the totals.
QString endingOf(const PrintRun& run, const PrintTarget& target);
