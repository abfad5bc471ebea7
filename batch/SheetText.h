#pragma once

#include <QString>

#include "printing/SheetOutcome.h"

struct PrintDocument;

// Texts of documents and numbers, as every step shows them.

/// Surname, first name and patronymic, as far as there are any.
QString personOf(const PrintDocument& document);

/// The form of a Russian noun that goes with a number: of 1 ("документ"), of 2 to 4 ("документа")
/// or of the rest ("документов").
QString nounFor(int number, const QString& one, const QString& few, const QString& many);

/// Why a sheet can't be laid out.
QString problemText(SheetOutcome::Reason reason);
