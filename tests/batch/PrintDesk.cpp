#include "PrintDesk.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

#include "app/AppStyle.h"
#include "batch/BatchJournal.h"
#include "batch/SheetPanel.h"
#include "support/Widgets.h"

PrintDesk::PrintDesk()
    : window(std::make_unique<QMainWindow>())
{
    const QStringList surnames = {"Петрова", "Абаев", "Иваненко"};
    numbers = {"000010", "000002", "000009"};
    for (int i = 0; i < surnames.size(); ++i) {
        PrintDocument document;
        document.id = addDocument({}, {{"LNAME", surnames[i]}, {"BLANK_NO", numbers[i]}});
        document.surname = surnames[i];
        documents.append(document);
    }
    title = addBlank({blankItem(0, "Титул: #LNAME", QRectF(50, 50, 400, 60))}, {{"NAME", "Титул"}});
    supplement =
        addBlank({blankItem(0, "Вкладыш: #LNAME", QRectF(50, 50, 400, 60))}, {{"NAME", "Вкладыш"}});
    loadBaseStyle();
    step = new PrintStep;
    window->setCentralWidget(step);
    applyBaseStyle(window.get());
    window->resize(1100, 700);
    window->show();
}

PlannedSheet PrintDesk::sheet(int document, const QVariant& blank) const
{
    PlannedSheet planned;
    planned.sheet.document = documents[document];
    planned.sheet.blank.id = blank;
    planned.form = "Диплом";
    planned.group = "9А";
    planned.blankName = blank == title ? "Титул" : "Вкладыш";
    planned.blankSeries = "АБ";
    planned.blankNumber = numbers[document];
    return planned;
}

QVector<PlannedSheet> PrintDesk::titles() const
{
    QVector<PlannedSheet> sheets;
    for (int i = 0; i < documents.size(); ++i) {
        sheets << sheet(i, title);
    }
    return sheets;
}

QVector<PlannedSheet> PrintDesk::all() const
{
    QVector<PlannedSheet> sheets;
    for (int i = 0; i < documents.size(); ++i) {
        sheets << sheet(i, title) << sheet(i, supplement);
    }
    return sheets;
}

void PrintDesk::chooseTarget(const QString& caption)
{
    auto* targets = named<QComboBox>(step, "targetCmb");
    QVERIFY2(targets->findText(caption) >= 0, qPrintable(caption));
    targets->setCurrentText(caption);
}

void PrintDesk::chooseFile(const QString& name)
{
    chooseTarget("PDF: один файл");
    typeInto(named<QLineEdit>(step, "fileEdit"), path(name));
}

void PrintDesk::chooseFolder()
{
    chooseTarget("PDF: файл на документ");
    typeInto(named<QLineEdit>(step, "folderEdit"), path("out"));
    typeInto(named<QLineEdit>(step, "patternEdit"), "{#LNAME}");
}

void PrintDesk::click(const QString& button)
{
    clickButton(step, button);
    waitUntilDone();
}

void PrintDesk::waitUntilDone()
{
    QTRY_VERIFY(!step->isBusy() || (named<SheetPanel>(step, "sheetPanel")->isVisible() &&
                                    named<QPushButton>(step, "nextSheetButton")->isEnabled()));
}

QStringList PrintDesk::persons() const
{
    return columnTexts(named<QTableWidget>(step, "resultsTable"), 0);
}

QStringList PrintDesk::outcomes() const
{
    return columnTexts(named<QTableWidget>(step, "resultsTable"), 5);
}

QString PrintDesk::result() const
{
    return named<QLabel>(step, "resultLabel")->text();
}

QString PrintDesk::paper() const
{
    return named<SheetPanel>(step, "sheetPanel")->paper();
}

void PrintDesk::tick(int row)
{
    clickRow(named<QTableWidget>(step, "resultsTable"), row);
    pressKey(Qt::Key_Space);
}

QStringList PrintDesk::journal() const
{
    const QDir folder(BatchJournal::defaultFolder());
    QFile file(folder.filePath(folder.entryList(QDir::Files).value(0)));
    QStringList lines;
    if (file.open(QIODevice::ReadOnly)) {
        lines = QString::fromUtf8(file.readAll()).split("\r\n", Qt::SkipEmptyParts).mid(1);
    }
    for (QString& line : lines) {
        line = line.section(';', 1).remove('"');
    }
    return lines;
}

QStringList PrintDesk::filesInFolder() const
{
    return QDir(path("out")).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}
