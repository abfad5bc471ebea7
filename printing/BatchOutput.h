#pragma once

#include <QPageLayout>
#include <QString>

#include <memory>

#include "printing/FileNamePattern.h"
#include "printing/PrintSheet.h"
#include "printing/PrintTarget.h"
#include "printing/SheetOutcome.h"

class PdfFile;
class SheetPage;

/// The files or the printer that a batch prints to.
class BatchOutput
{
public:
    explicit BatchOutput(const PrintTarget& target);
    ~BatchOutput();

    /// Opens the common file, makes the folder and tries whether it takes files, or looks for the
    /// printer. False if it can't.
    bool open();

    /// Prints all copies of a sheet, whose page is built already. Tells what became of it.
    SheetOutcome print(const PrintSheet& sheet, SheetPage& page);

    /// Ends the common file and gives it its name. False if it could not be written as a whole; a
    /// file that had the name is then as it was. Other targets have nothing to end.
    bool finish();

    /// Removes what was written of a common file that is not to be. Other targets have none.
    void discard();

    /// Of the common file or the folder, or the printer's name.
    QString path() const { return m_target.place; }

    bool isOneFile() const { return m_target.kind == PrintTarget::Kind::OneFile; }

private:
    SheetOutcome addCopies(PdfFile& file, const PrintSheet& sheet, SheetPage& page);
    SheetOutcome printToFile(const PrintSheet& sheet, SheetPage& page);
    SheetOutcome printToPrinter(const PrintSheet& sheet, SheetPage& page);

    PrintTarget m_target;
    FileNamePattern m_names;
    std::unique_ptr<PdfFile> m_commonFile; // null for other targets, and before and after the batch
    QPageLayout m_plainLayout;             // of the target's own printer
};
