#include "DeskFixture.h"

#include <QAction>
#include <QComboBox>
#include <QDateEdit>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMainWindow>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QToolBar>
#include <QtTest>

#include "store/DataBase.h"
#include "support/PrintProgram.h"
#include "support/Widgets.h"

namespace {

// What a user types into a section of a date edit.
QString typedSection(const QDateEdit* edit, QDateTimeEdit::Section section, const QDate& date)
{
    switch (section) {
    case QDateTimeEdit::DaySection:
        return date.toString("dd");
    case QDateTimeEdit::MonthSection:
        return edit->sectionText(section).at(0).isDigit()
                   ? date.toString("MM")
                   : edit->locale().monthName(date.month(), QLocale::ShortFormat);
    default:
        return date.toString("yyyy");
    }
}

// The tool draws the backgrounds, which takes a while: it runs once per test program.
const QString& sampleMaster()
{
    static const QTemporaryDir master;
    static const QString directory = master.path();
    if (!QFile::exists(directory + "/docs.db")) {
        const ProcessResult made = makeSample(directory);
        if (made.exitCode != 0) {
            qFatal("no sample: %s", made.err.constData());
        }
    }
    return directory;
}

void copyDirectory(const QString& from, const QString& to)
{
    QDirIterator entry(from, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (entry.hasNext()) {
        const QString source = entry.next();
        const QString target = to + source.mid(from.size());
        const bool ok =
            entry.fileInfo().isDir() ? QDir().mkpath(target) : QFile::copy(source, target);
        if (!ok) {
            qFatal("%s could not be made", qPrintable(target));
        }
    }
}

} // namespace

SampleApplication::SampleApplication()
    : TempApplication(Database::None)
{
    copyDirectory(sampleMaster(), path());
    if (!QFile::copy(path("docs.db"), pristine()) || !dataBase.open()) {
        qFatal("the sample's database cannot be opened");
    }
    exec("PRAGMA synchronous = OFF");
}

void pressToolBar(const QMainWindow* window, const QString& text)
{
    const auto bars = window->findChildren<QToolBar*>();
    for (const QToolBar* bar : bars) {
        const auto actions = bar->actions();
        for (QAction* action : actions) {
            if (action->text() == text) {
                QTest::mouseClick(bar->widgetForAction(action), Qt::LeftButton);
                return;
            }
        }
    }
    QFAIL(qPrintable("no such action: " + text));
}

int rowOfRecord(const QTableWidget* table, int id)
{
    for (int row = 0; row < table->rowCount(); ++row) {
        if (table->item(row, 0)->data(Qt::UserRole).toInt() == id) {
            return row;
        }
    }
    return -1;
}

void clickRecord(QTableWidget* table, int id, Qt::KeyboardModifiers modifiers)
{
    const int row = rowOfRecord(table, id);
    QVERIFY2(row >= 0, qPrintable(QString("no row of %1").arg(id)));
    clickRow(table, row, modifiers);
}

void chooseByKeys(QComboBox* combo, int index)
{
    combo->setFocus();
    while (combo->currentIndex() != index) {
        const int before = combo->currentIndex();
        QTest::keyClick(combo, before < index ? Qt::Key_Down : Qt::Key_Up);
        QVERIFY(combo->currentIndex() != before);
    }
}

void typeDate(QDateEdit* edit, const QDate& date)
{
    edit->setFocus();
    for (int i = 0; i < edit->sectionCount(); ++i) {
        const QDateTimeEdit::Section section = edit->sectionAt(i);
        edit->setSelectedSection(section);
        QTest::keyClicks(edit, typedSection(edit, section, date));
    }
    QCOMPARE(edit->date(), date);
}
