#include <QtTest>

#include <QDir>
#include <QPrinter>

#include "blanks/BlankRecord.h"
#include "printing/BatchCheck.h"
#include "printing/BatchObserver.h"
#include "printing/PdfFile.h"
#include "printing/PrintBatch.h"
#include "support/CheckedPage.h"
#include "support/LogCatcher.h"
#include "support/PdfMeasure.h"

namespace {

using State = SheetOutcome::State;
using Reason = SheetOutcome::Reason;
using End = PrintBatch::End;

/// Notes what it is told, and stops the batch before a sheet if it is to.
class Diary : public BatchObserver
{
public:
    bool goesOn(int sheet, int count) override
    {
        lines << QString("%1 of %2").arg(sheet).arg(count);
        return sheet != stopBefore;
    }

    void sheetChecked(int sheet, PageCheck& check) override
    {
        lines << QString("%1 has %2").arg(sheet).arg(check.findings().size());
    }

    void sheetNotChecked(int sheet, const SheetOutcome& outcome) override
    {
        lines << QString("%1 not checked").arg(sheet);
        reasons << outcome.reason;
    }

    void sheetDone(int sheet, const SheetOutcome& outcome) override
    {
        const bool isPrinted = outcome.state == State::Printed;
        lines << QString(isPrinted ? "%1 printed" : "%1 not printed").arg(sheet);
        reasons << outcome.reason;
    }

    void fileWritten(const QString& path) override
    {
        lines << QFileInfo(path).fileName();
        isThere = isThere && QFileInfo(path).size() > 0;
    }

    QStringList lines;
    QVector<Reason> reasons;
    bool isThere = true; // every file that was named
    int stopBefore = -1;
};

/// Three documents and a blank with a title and one with a supplement, both of their form.
class Desk : public PrintFixture
{
public:
    Desk()
    {
        for (const char* surname : {"Иванов", "Петрова", "Иваненко"}) {
            PrintDocument document;
            document.id = addDocument({}, {{"LNAME", surname}});
            document.surname = surname;
            document.formId = 1;
            documents.append(document);
        }
        addBlank({blankItem(0, "Диплом: #LNAME", QRectF(50, 50, 400, 60))}, {{"NAME", "Титул"}});
        addBlank({blankItem(0, "Вкладыш: #LNAME", QRectF(50, 50, 400, 60))},
                 {{"NAME", "Приложение"}});
    }

    QVector<PrintSheet> sheets(const QString& blank = QString()) const
    {
        return sheetsOf(documents, blank);
    }

    void setForm(int document, const QVariant& form)
    {
        PrintDocument changed = documents[document];
        changed.formId = form;
        documents.replace(document, changed);
    }

    PrintTarget oneFile() const { return {PrintTarget::Kind::OneFile, path("x.pdf"), {}}; }

    PrintTarget folder() const
    {
        return {PrintTarget::Kind::FilePerDocument, path("out"), "{#LNAME}"};
    }

    QStringList filesInFolder() const
    {
        return QDir(path("out")).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    /// Beside the common file.
    QStringList unfinishedFiles() const
    {
        return QDir(path()).entryList({".zelvora*"}, QDir::Files | QDir::Hidden);
    }

    QVector<PrintDocument> documents;
};

QVector<State> states(const PrintBatch& batch)
{
    QVector<State> states;
    for (const SheetOutcome& outcome : batch.outcomes()) {
        states << outcome.state;
    }
    return states;
}

} // namespace

/// The printing of many sheets as the programs use it: what comes out, what the observer learns,
/// and what is said in the end.
class tst_PrintBatchEngine : public QObject
{
    Q_OBJECT

private slots:
    void allInOneFile();
    void aFileForEach();
    void titleAndSupplement();
    void copiesAndBackground();
    void stopsBetweenTwoSheets();
    void stoppedFileIsThrownAway();
    void writtenFileStandsAlone();
    void heldBack();
    void eachFormHasItsBlanks();
    void failuresDoNotStopTheRest();
    void nothingPrintedLeavesNoFile();
    void commonFileRefused();
    void folderOfTheCommonFileGoesAway();
    void targetRefused();
    void printerRefuses();
    void sheetBySheet();
    void unknownPaperIsThePrintersOwn();
    void unprintedSheetsMakeABatch();
    void furtherBatchKeepsTheFirstFiles();
    void sheetKeepsItsFile();
    void endedByTheCaller();
    void checkTellsOfEachSheet();
    void checkStops();
};

void tst_PrintBatchEngine::allInOneFile()
{
    const Desk desk;
    Diary diary;
    PrintBatch batch(desk.sheets(), desk.oneFile(), diary);
    QVERIFY(batch.begin());
    QVERIFY(batch.run());
    QCOMPARE(batch.end(), End::Whole);
    QCOMPARE(batch.count(State::Printed), 3);
    QCOMPARE(diary.lines, (QStringList{"0 of 3", "0 printed", "1 of 3", "1 printed", "2 of 3",
                                       "2 printed", "x.pdf"}));
    QVERIFY(diary.isThere);
    const PdfMeasure pdf(desk.path("x.pdf"));
    QCOMPARE(pdf.pageCount(), 3);
    QCOMPARE(pdf.text(1), QString("Диплом: Иванов"));
    QCOMPARE(pdf.text(3), QString("Диплом: Иваненко"));
    QVERIFY(batch.unprinted().isEmpty());
    // Nothing is left beside the file, though the batch is still there.
    QCOMPARE(desk.unfinishedFiles(), QStringList());
}

void tst_PrintBatchEngine::aFileForEach()
{
    const Desk desk;
    Diary diary;
    PrintBatch batch(desk.sheets("Приложение"), desk.folder(), diary);
    QVERIFY(batch.begin());
    QVERIFY(batch.run());
    QCOMPARE(diary.lines, (QStringList{"0 of 3", "Иванов.pdf", "0 printed", "1 of 3", "Петрова.pdf",
                                       "1 printed", "2 of 3", "Иваненко.pdf", "2 printed"}));
    QVERIFY(diary.isThere);
    QCOMPARE(batch.outcomes()[1].file, desk.path("out/Петрова.pdf"));
    QCOMPARE(PdfMeasure(desk.path("out/Петрова.pdf")).text(), QString("Вкладыш: Петрова"));
}

// Two blanks of one document are two sheets, in the order that the caller gives.
void tst_PrintBatchEngine::titleAndSupplement()
{
    const Desk desk;
    Diary diary;
    const QVector<PrintSheet> sheets = {desk.sheets("Титул")[0], desk.sheets("Приложение")[0]};
    PrintBatch file(sheets, desk.oneFile(), diary);
    QVERIFY(file.begin() && file.run());
    const PdfMeasure pdf(desk.path("x.pdf"));
    QCOMPARE(pdf.text(1), QString("Диплом: Иванов"));
    QCOMPARE(pdf.text(2), QString("Вкладыш: Иванов"));
    PrintBatch folder(sheets, desk.folder(), diary);
    QVERIFY(folder.begin() && folder.run());
    QCOMPARE(desk.filesInFolder(), (QStringList{"Иванов (2).pdf", "Иванов.pdf"}));
    QCOMPARE(PdfMeasure(desk.path("out/Иванов (2).pdf")).text(), QString("Вкладыш: Иванов"));
}

void tst_PrintBatchEngine::copiesAndBackground()
{
    Desk desk;
    QImage black(100, 70, QImage::Format_RGB32);
    black.fill(Qt::black);
    QVERIFY(black.save(desk.path("black.png")));
    desk.exec("UPDATE blanks SET BACKGROUND_IMG = 'black.png' WHERE NAME = 'Титул'");
    Diary diary;
    QVector<PrintSheet> sheets = desk.sheets();
    sheets.resize(2);
    sheets[0].copies = 2;
    sheets[1].withBackground = true;
    PrintBatch batch(sheets, desk.oneFile(), diary);
    QVERIFY(batch.begin() && batch.run());
    const PdfMeasure pdf(desk.path("x.pdf"));
    QCOMPARE(pdf.pageCount(), 3);
    QCOMPARE(pdf.text(2), QString("Диплом: Иванов"));
    QVERIFY(pdf.ink(QRectF(), 2).height() < 20);
    QVERIFY(pdf.ink(QRectF(), 3).height() > 100); // the black picture
}

void tst_PrintBatchEngine::stopsBetweenTwoSheets()
{
    const Desk desk;
    Diary diary;
    diary.stopBefore = 2;
    PrintBatch batch(desk.sheets(), desk.folder(), diary);
    QVERIFY(batch.begin());
    QVERIFY(!batch.run());
    QCOMPARE(batch.end(), End::Stopped);
    QCOMPARE(batch.next(), -1);
    QCOMPARE(states(batch), (QVector<State>{State::Printed, State::Printed, State::NotPrinted}));
    QCOMPARE(desk.filesInFolder(), (QStringList{"Иванов.pdf", "Петрова.pdf"}));
    QCOMPARE(PdfMeasure(desk.path("out/Петрова.pdf")).text(), QString("Диплом: Петрова"));
}

void tst_PrintBatchEngine::stoppedFileIsThrownAway()
{
    const Desk desk;
    Diary diary;
    diary.stopBefore = 2;
    PrintBatch batch(desk.sheets(), desk.oneFile(), diary);
    QVERIFY(batch.begin());
    QCOMPARE(desk.unfinishedFiles().size(), 1);
    QVERIFY(!batch.run());
    QCOMPARE(batch.end(), End::Stopped);
    QCOMPARE(batch.count(State::NotPrinted), 3);
    QCOMPARE(batch.unprinted().size(), 3);
    QVERIFY(!QFileInfo::exists(desk.path("x.pdf")));
    QCOMPARE(desk.unfinishedFiles(), QStringList());
}

void tst_PrintBatchEngine::writtenFileStandsAlone()
{
    const Desk desk;
    PdfFile file(desk.path("x.pdf"));
    QVERIFY(file.open());
    QCOMPARE(desk.unfinishedFiles().size(), 1);
    QVERIFY(
        file.addPage([](QPrinter& printer, QPainter& painter) { return painter.begin(&printer); }));
    QVERIFY(file.commit());
    QCOMPARE(desk.unfinishedFiles(), QStringList()); // though its object is still there
    QCOMPARE(PdfMeasure(desk.path("x.pdf")).pageCount(), 1);
}

void tst_PrintBatchEngine::heldBack()
{
    const Desk desk;
    Diary diary;
    PrintBatch batch(desk.sheets(), desk.oneFile(), diary);
    batch.holdBack(1);
    QVERIFY(batch.begin());
    QVERIFY(batch.run());
    QCOMPARE(states(batch), (QVector<State>{State::Printed, State::HeldBack, State::Printed}));
    QCOMPARE(diary.reasons, (QVector<Reason>{Reason::None, Reason::Findings, Reason::None}));
    const PdfMeasure pdf(desk.path("x.pdf"));
    QCOMPARE(pdf.pageCount(), 2);
    QCOMPARE(pdf.text(2), QString("Диплом: Иваненко"));
}

void tst_PrintBatchEngine::eachFormHasItsBlanks()
{
    using Problem = BlankChoice::Problem;
    Desk desk;
    const QVariant other = desk.addBlank({}, {{"NAME", "Титул"}, {"FORM_ID", 2}});
    desk.addBlank({}, {{"NAME", "Копия"}, {"FORM_ID", 2}});
    desk.setForm(1, 2);
    PrintDocument homeless = desk.documents[0];
    homeless.formId = 9;
    PrintDocument formless = desk.documents[0];
    formless.formId = QVariant();
    desk.documents << homeless << formless << formless << desk.documents[1] << desk.documents[0];
    const QVariant title = desk.value("SELECT ID FROM blanks WHERE NAME = 'Титул' AND FORM_ID = 1");
    for (const char* wanted : {"", "Титул"}) {
        LogCatcher log;
        const QVector<PrintSheet> sheets = desk.sheets(wanted);
        QCOMPARE(log.count("SQL Error (blanks)"), 2); // what can't be read is asked for again
        QVariantList ids;
        for (const PrintSheet& sheet : sheets) {
            ids << sheet.blank.id;
        }
        QCOMPARE(ids, (QVariantList{title, other, title, QVariant(), QVariant(), QVariant(), other,
                                    title}));
        QVERIFY(sheets[3].blank.problem == Problem::NoBlanks &&
                sheets[4].blank.problem == Problem::NoBlanks);
    }
    const QVector<PrintSheet> copies = desk.sheets("Копия");
    QVERIFY(copies[0].blank.problem == Problem::NoSuchBlank);
    QVERIFY(copies[1].blank.problem == Problem::None);
    QVERIFY(copies[3].blank.problem == Problem::NoBlanks);
    QCOMPARE(desk.sheets(other.toString())[1].blank.id, other);
    QVERIFY(desk.sheets(other.toString())[0].blank.problem == Problem::NoSuchBlank);
}

void tst_PrintBatchEngine::failuresDoNotStopTheRest()
{
    Desk desk;
    desk.setForm(0, 9); // of which there are no blanks
    QVector<PrintSheet> sheets = desk.sheets("Титул");
    PrintSheet deleted = sheets[1];
    deleted.blank.id = 999;
    sheets.replace(1, deleted);
    sheets.insert(2, desk.sheets("Другой")[2]);
    Diary diary;
    PrintBatch batch(sheets, desk.folder(), diary);
    QVERIFY(batch.begin());
    QVERIFY(batch.run()); // every sheet had its turn
    QCOMPARE(states(batch),
             (QVector<State>{State::Failed, State::Failed, State::Failed, State::Printed}));
    QCOMPARE(diary.reasons, (QVector<Reason>{Reason::NoBlanks, Reason::Unreadable,
                                             Reason::NoSuchBlank, Reason::None}));
    QCOMPARE(desk.filesInFolder(), QStringList("Иваненко.pdf"));
}

void tst_PrintBatchEngine::nothingPrintedLeavesNoFile()
{
    const Desk desk;
    Diary diary;
    PrintBatch batch(desk.sheets("Другой"), desk.oneFile(), diary);
    QVERIFY(batch.begin());
    QVERIFY(batch.run());
    QCOMPARE(batch.count(State::Failed), 3);
    QVERIFY(!diary.lines.contains("x.pdf"));
    QVERIFY(!QFileInfo::exists(desk.path("x.pdf")));
    QCOMPARE(desk.unfinishedFiles(), QStringList());
}

void tst_PrintBatchEngine::commonFileRefused()
{
    const Desk desk;
    Diary diary;
    PrintBatch batch(desk.sheets(), desk.oneFile(), diary);
    QVERIFY(batch.begin());
    QVERIFY(QDir().mkdir(desk.path("x.pdf"))); // meanwhile a folder has taken the name
    QVERIFY(!batch.run());
    QCOMPARE(batch.end(), End::FileRefused);
    QCOMPARE(batch.count(State::Failed), 3);
    QCOMPARE(batch.outcomes()[2].reason, Reason::FileRefused);
    QCOMPARE(batch.outcomes()[2].file, desk.path("x.pdf"));
    QVERIFY(!diary.lines.contains("x.pdf"));
}

// As with a disk that is pulled out: the first sheet says so, and the rest is not tried.
void tst_PrintBatchEngine::folderOfTheCommonFileGoesAway()
{
    const Desk desk;
    QVERIFY(QDir().mkdir(desk.path("disk")));
    Diary diary;
    PrintBatch batch(desk.sheets(), {PrintTarget::Kind::OneFile, desk.path("disk/x.pdf"), {}},
                     diary);
    QVERIFY(batch.begin());
    QVERIFY(QDir(desk.path("disk")).removeRecursively());
    QVERIFY(!batch.run());
    QCOMPARE(batch.end(), End::FileFull);
    QCOMPARE(diary.lines, (QStringList{"0 of 3", "0 not printed"}));
    QCOMPARE(diary.reasons, QVector<Reason>{Reason::FileRefused});
    QCOMPARE(states(batch), (QVector<State>{State::Failed, State::NotPrinted, State::NotPrinted}));
    QCOMPARE(batch.unprinted().size(), 3);
}

void tst_PrintBatchEngine::printerRefuses()
{
    const Desk desk;
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(desk.path("no/folder/sheet.pdf"));
    PrintTarget target = {PrintTarget::Kind::Printer, {}, {}};
    target.printer = &printer;
    Diary diary;
    PrintBatch batch(desk.sheets(), target, diary);
    QVERIFY(batch.begin());
    QVERIFY(batch.run()); // every sheet had its turn
    QCOMPARE(states(batch), (QVector<State>{State::Failed, State::Failed, State::Failed}));
    QCOMPARE(diary.reasons[0], Reason::PrinterRefused);
}

void tst_PrintBatchEngine::targetRefused()
{
    const Desk desk;
    QFile file(desk.path("out"));
    QVERIFY(file.open(QIODevice::WriteOnly)); // no folder can have the name
    Diary diary;
    QVERIFY(!PrintBatch(desk.sheets(), desk.folder(), diary).begin());
    const PrintTarget inNoFolder = {PrintTarget::Kind::OneFile, desk.path("no/x.pdf"), {}};
    QVERIFY(!PrintBatch(desk.sheets(), inNoFolder, diary).begin());
    QVERIFY(QDir().mkdir(desk.path("x.pdf")));
    QVERIFY(!PrintBatch(desk.sheets(), desk.oneFile(), diary).begin());
    const PrintTarget noPrinter = {PrintTarget::Kind::Printer, "Нет такого", {}};
    QVERIFY(!PrintBatch(desk.sheets(), noPrinter, diary).begin());
    QVERIFY(diary.lines.isEmpty());
}

// By the sheet, onto a printer that the user has set up: print, repeat what was spoilt, skip.
void tst_PrintBatchEngine::sheetBySheet()
{
    const Desk desk;
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(desk.path("sheet.pdf"));
    PrintTarget target = {PrintTarget::Kind::Printer, {}, {}};
    target.printer = &printer;
    Diary diary;
    PrintBatch batch(desk.sheets(), target, diary);
    QVERIFY(batch.begin());
    QCOMPARE(batch.next(), 0);
    QCOMPARE(batch.printNext().state, State::Printed);
    QCOMPARE(PdfMeasure(desk.path("sheet.pdf")).text(), QString("Диплом: Иванов"));
    QCOMPARE(batch.next(), 1);

    batch.spoil(0);
    QCOMPARE(batch.outcomes()[0].state, State::NotPrinted);
    QVERIFY(QFile::remove(desk.path("sheet.pdf")));
    QCOMPARE(batch.reprint(0).state, State::Printed);
    QCOMPARE(PdfMeasure(desk.path("sheet.pdf")).text(), QString("Диплом: Иванов"));
    QCOMPARE(batch.outcomes()[0].spoilt, 1);
    QCOMPARE(batch.next(), 1);

    batch.skipNext();
    QCOMPARE(batch.printNext().state, State::Printed);
    QCOMPARE(PdfMeasure(desk.path("sheet.pdf")).text(), QString("Диплом: Иваненко"));
    QCOMPARE(batch.next(), -1);
    QCOMPARE(batch.printNext().state, State::NotPrinted); // there is none
    batch.skipNext();                                     // likewise
    QVERIFY(batch.finish());
    QCOMPARE(states(batch), (QVector<State>{State::Printed, State::Skipped, State::Printed}));
    QCOMPARE(diary.lines, (QStringList{"0 printed", "0 printed", "1 not printed", "2 printed"}));
}

// Not that of the sheet before.
void tst_PrintBatchEngine::unknownPaperIsThePrintersOwn()
{
    Desk desk;
    const QJsonArray items = {blankItem(0, "#LNAME", QRectF(50, 50, 400, 60))};
    desk.addBlank(items, {{"NAME", "Малый"}, {"PAPER_FORMAT", PaperFormat::a5}});
    desk.addBlank(items, {{"NAME", "Неизвестный"}, {"PAPER_FORMAT", 77}});
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(desk.path("sheet.pdf"));
    printer.setPageSize(QPageSize(QPageSize::A3));
    PrintTarget target = {PrintTarget::Kind::Printer, {}, {}};
    target.printer = &printer;
    Diary diary;
    PrintBatch batch({desk.sheets("Малый").first(), desk.sheets("Неизвестный").first()}, target,
                     diary);
    QVERIFY(batch.begin());
    for (const double longSide : {210.0, 420.0}) {
        QCOMPARE(batch.printNext().state, State::Printed);
        const QSizeF page = PdfMeasure(desk.path("sheet.pdf")).pageSize();
        QVERIFY(qAbs(qMax(page.width(), page.height()) - longSide) < 1);
    }
}

void tst_PrintBatchEngine::unprintedSheetsMakeABatch()
{
    const Desk desk;
    Diary diary;
    PrintBatch batch(desk.sheets(), desk.folder(), diary);
    QVERIFY(batch.begin());
    batch.printNext();
    batch.skipNext();
    batch.spoil(0);
    batch.spoil(1); // was not printed, so that nothing is spoilt
    QCOMPARE(batch.outcomes()[1].spoilt, 0);
    batch.printNext();
    const QVector<PrintSheet> rest = batch.unprinted();
    QCOMPARE(rest.size(), 2);
    QCOMPARE(rest[0].document.surname, QString("Иванов"));
    QCOMPARE(rest[1].document.surname, QString("Петрова"));
    PrintBatch further(rest, desk.oneFile(), diary);
    QVERIFY(further.begin());
    QVERIFY(further.run());
    QCOMPARE(PdfMeasure(desk.path("x.pdf")).text(2), QString("Диплом: Петрова"));
}

// The files of a document's title and supplement differ by a number. A further batch that prints
// one of them must not take the name of the other.
void tst_PrintBatchEngine::furtherBatchKeepsTheFirstFiles()
{
    const Desk desk;
    Diary diary;
    PrintTarget target = desk.folder();
    PrintBatch batch({desk.sheets("Титул")[0]}, target, diary);
    QVERIFY(batch.begin());
    QVERIFY(batch.run());
    target.namesInUse << "ИВАНОВ.pdf"; // a file system may not tell letter case apart
    PrintBatch further({desk.sheets("Приложение")[0]}, target, diary);
    QVERIFY(further.begin());
    QVERIFY(further.run());
    QCOMPARE(desk.filesInFolder(), (QStringList{"Иванов (2).pdf", "Иванов.pdf"}));
    QCOMPARE(PdfMeasure(desk.path("out/Иванов.pdf")).text(), QString("Диплом: Иванов"));
}

void tst_PrintBatchEngine::sheetKeepsItsFile()
{
    const Desk desk;
    Diary diary;
    QVector<PrintSheet> sheets = {desk.sheets("Титул")[0]};
    sheets[0].fileName = "Второй (2).pdf";
    PrintBatch batch(sheets, desk.folder(), diary);
    QVERIFY(batch.begin());
    QVERIFY(batch.run());
    QCOMPARE(desk.filesInFolder(), QStringList("Второй (2).pdf"));
}

void tst_PrintBatchEngine::endedByTheCaller()
{
    const Desk desk;
    Diary diary;
    PrintBatch batch(desk.sheets(), desk.folder(), diary);
    QVERIFY(batch.begin());
    batch.printNext();
    QVERIFY(!batch.finish());
    QCOMPARE(batch.end(), End::Stopped);
    QCOMPARE(batch.next(), -1);
    QCOMPARE(batch.reprint(0).state, State::Printed); // nothing more is sent
    QCOMPARE(diary.lines, (QStringList{"Иванов.pdf", "0 printed"}));
}

void tst_PrintBatchEngine::checkTellsOfEachSheet()
{
    Desk desk;
    const QVariant spoiled = desk.addBlank({blankItem(0, "Город: #CITY", QRectF(50, 50, 400, 60))},
                                           {{"NAME", "С замечанием"}});
    QVector<PrintSheet> sheets = desk.sheets();
    PrintSheet onAnother = sheets[1];
    onAnother.blank.id = spoiled;
    sheets.replace(1, onAnother);
    sheets.replace(2, desk.sheets("Другой")[2]);
    Diary diary;
    BatchCheck check(sheets, diary);
    QVERIFY(check.run());
    QCOMPARE(diary.lines,
             (QStringList{"0 of 3", "0 has 0", "1 of 3", "1 has 1", "2 of 3", "2 not checked"}));
    QCOMPARE(diary.reasons, QVector<Reason>{Reason::NoSuchBlank});
    QCOMPARE(check.pageCheck().findings()[0].kind, Finding::Kind::TagNotExpanded);
    QVERIFY(check.checkSheet(0)); // once more, after a change
    QCOMPARE(diary.lines.last(), QString("0 has 0"));
}

void tst_PrintBatchEngine::checkStops()
{
    const Desk desk;
    Diary diary;
    diary.stopBefore = 1;
    QVERIFY(!BatchCheck(desk.sheets(), diary).run());
    QCOMPARE(diary.lines, (QStringList{"0 of 3", "0 has 0", "1 of 3"}));
}

QTEST_MAIN(tst_PrintBatchEngine)
#include "tst_PrintBatchEngine.moc"
