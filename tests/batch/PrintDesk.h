#pragma once

#include <QMainWindow>

#include <memory>

#include "batch/PlannedSheet.h"
#include "batch/PrintStep.h"
#include "support/PrintFixture.h"

/// Documents with a title and a supplement to print: "Петрова" (number 000010), "Абаев" (000002)
/// and "Иваненко" (000009), in this order, and the printing step in a window.
class PrintDesk : public PrintFixture
{
public:
    PrintDesk();

    /// A sheet of a document, which counts from 0, on a blank.
    PlannedSheet sheet(int document, const QVariant& blank) const;

    /// All documents on the title.
    QVector<PlannedSheet> titles() const;

    /// All documents on the title and the supplement, document by document.
    QVector<PlannedSheet> all() const;

    /// Chooses where to print by the caption in the combo.
    void chooseTarget(const QString& caption);

    /// Chooses the one file "x.pdf" or the folder "out" of the application directory.
    void chooseFile(const QString& name = "x.pdf");
    void chooseFolder();

    /// Clicks a button and waits until nothing is printed any more, or the user is asked.
    void click(const QString& button);
    void waitUntilDone();

    /// The column "Документ" or "Что с листом" of the results, from the top down.
    QStringList persons() const;
    QStringList outcomes() const;
    QString result() const; ///< the sentence at the end
    QString paper() const;  ///< what the sheet panel asks for

    void tick(int row);

    /// The lines of the journal that is on the disk, without the heading, without their times.
    QStringList journal() const;

    QStringList filesInFolder() const;

    QVector<PrintDocument> documents;
    QVector<QString> numbers;
    QVariant title;
    QVariant supplement;
    std::unique_ptr<QMainWindow> window;
    PrintStep* step = nullptr;
};
