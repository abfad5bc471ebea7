#include "DeskFixture.h"

#include <QAction>
#include <QComboBox>
#include <QDateEdit>
#include <QMainWindow>
#include <QTableWidget>
#include <QToolBar>
#include <QtTest>

#include "store/DataBase.h"
#include "support/Process.h"

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

} // namespace

SampleApplication::SampleApplication()
    : TempApplication(Database::None)
{
    const ProcessResult made =
        runProcess(QString(ZELVORA_BIN_DIR) + "/tools/zelvora-db", {"sample", path()});
    if (made.exitCode != 0 || !QFile::copy(path("docs.db"), pristine()) || !dataBase.open()) {
        qFatal("no sample: %s", made.err.constData());
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

int rowOfDocument(const QTableWidget* list, int id)
{
    for (int row = 0; row < list->rowCount(); ++row) {
        if (list->item(row, 0)->data(Qt::UserRole).toInt() == id) {
            return row;
        }
    }
    return -1;
}

void clickDocument(QTableWidget* list, int id, Qt::KeyboardModifiers modifiers)
{
    const int row = rowOfDocument(list, id);
    QVERIFY2(row >= 0, qPrintable(QString("no row of document %1").arg(id)));
    const QTableWidgetItem* item = list->item(row, 0);
    list->scrollToItem(item);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, modifiers,
                      list->visualItemRect(item).center());
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
