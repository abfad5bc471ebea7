#pragma once

#include <QString>
#include <QVector>

#include "printing/BlankChoice.h"
#include "printing/PrintDocument.h"

/// One sheet of a batch: a document on one of its blanks. A document with a title and a supplement
/// is two sheets.
struct PrintSheet
{
    PrintDocument document;
    BlankChoice blank; ///< without an ID the sheet can't be printed
    int copies = 1;
    bool withBackground = false; ///< whether the blank's background is printed too
    QString fileName; ///< of its own file, as an earlier batch gave it; empty: by the pattern
};

/// A sheet for each document, in their order, on the blank that chooseBlank() gives it of those of
/// its form.
QVector<PrintSheet> sheetsOf(const QVector<PrintDocument>& documents, const QString& wantedBlank);
