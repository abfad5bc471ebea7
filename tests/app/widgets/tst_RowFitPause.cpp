#include <QtTest>

#include <QHeaderView>
#include <QTableWidget>

#include "app/AppStyle.h"
#include "app/widgets/RowFitPause.h"

namespace {

constexpr int tallest = 104; // pixels

QString words(int count)
{
    return QString("слово ").repeated(count).trimmed();
}

/// Height that the text of a cell needs in the cell's width.
int neededHeight(const QTableWidget& table, int row)
{
    const QTableWidgetItem* item = table.item(row, 0);
    constexpr int textMargin = 3; // of a cell, on each side
    const QRect room(0, 0, table.columnWidth(0) - 2 * textMargin, 10000);
    return table.fontMetrics().boundingRect(room, Qt::TextWordWrap, item->text()).height();
}

} // namespace

/// Rows that fit their texts, and the pause of it.
class tst_RowFitPause : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void rowsFitTheirTexts();
    void rowFollowsAnEdit();
    void rowsFollowTheColumn();
    void heightsHaveLimits();
    void pauseFitsAtItsEnd();
    void manyRowsInAPause();
    void columnThatChangesInAPause();
    void rowsFilledBeforeTheyAreShown();
    void shownInAPause();

private:
    std::unique_ptr<QTableWidget> m_table;
};

void tst_RowFitPause::init()
{
    m_table = std::make_unique<QTableWidget>(3, 1);
    m_table->setColumnWidth(0, 200);
    fitRows(m_table.get());
    m_table->setItem(0, 0, new QTableWidgetItem(words(1)));
    m_table->setItem(1, 0, new QTableWidgetItem(words(8)));
    m_table->setItem(2, 0, new QTableWidgetItem(words(900)));
    m_table->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_table.get()));
}

void tst_RowFitPause::rowsFitTheirTexts()
{
    QCOMPARE(m_table->rowHeight(0), plainRowHeight);
    QVERIFY(m_table->rowHeight(1) > plainRowHeight);
    // Several lines have some air above and below; they would touch the lines of the table.
    QVERIFY(m_table->rowHeight(1) >= neededHeight(*m_table, 1) + 8);
}

void tst_RowFitPause::rowFollowsAnEdit()
{
    m_table->item(0, 0)->setText(words(8));
    QTRY_COMPARE(m_table->rowHeight(0), m_table->rowHeight(1));
    m_table->item(0, 0)->setText(words(1));
    QTRY_COMPARE(m_table->rowHeight(0), plainRowHeight);
}

void tst_RowFitPause::rowsFollowTheColumn()
{
    const int before = m_table->rowHeight(1);
    m_table->setColumnWidth(0, 150);
    QTRY_VERIFY(m_table->rowHeight(1) > before);
    QVERIFY(m_table->rowHeight(1) >= neededHeight(*m_table, 1));
    m_table->setColumnWidth(0, 2000);
    QTRY_COMPARE(m_table->rowHeight(1), plainRowHeight);
}

void tst_RowFitPause::heightsHaveLimits()
{
    QCOMPARE(m_table->rowHeight(2), tallest);
    QTableWidget taller(1, 1);
    fitRows(&taller, 34);
    QCOMPARE(taller.rowHeight(0), 34);
}

void tst_RowFitPause::pauseFitsAtItsEnd()
{
    {
        const RowFitPause pause(m_table.get());
        m_table->item(0, 0)->setText(words(8));
        QCoreApplication::processEvents();
        QCOMPARE(m_table->rowHeight(0), plainRowHeight);
    }
    QVERIFY(m_table->rowHeight(0) > plainRowHeight);
}

void tst_RowFitPause::manyRowsInAPause()
{
    constexpr int rows = 3000; // one fit of all of them at each cell would take minutes
    {
        const RowFitPause pause(m_table.get());
        m_table->setRowCount(0);
        for (int row = 0; row < rows; ++row) {
            m_table->insertRow(row);
            m_table->setItem(row, 0, new QTableWidgetItem(words(row % 20)));
        }
    }
    QCOMPARE(m_table->rowHeight(1), plainRowHeight);
    QVERIFY(m_table->rowHeight(rows - 1) > plainRowHeight);
}

void tst_RowFitPause::columnThatChangesInAPause()
{
    const int before = m_table->rowHeight(1);
    {
        const RowFitPause pause(m_table.get());
        m_table->setColumnWidth(0, 2000);
        QCoreApplication::processEvents();
        QCOMPARE(m_table->rowHeight(1), before);
    }
    QCOMPARE(m_table->rowHeight(1), plainRowHeight);
    m_table->setColumnWidth(0, 200); // is followed again
    QTRY_COMPARE(m_table->rowHeight(1), before);
}

void tst_RowFitPause::rowsFilledBeforeTheyAreShown()
{
    QTableWidget table(0, 1);
    table.horizontalHeader()->setStretchLastSection(true);
    table.resize(1200, 300);
    fitRows(&table);
    for (int round = 0; round < 2; ++round) { // a form is chosen, then a document is set
        const RowFitPause pause(&table);
        table.setRowCount(0);
        table.setRowCount(2);
        table.setItem(0, 0, new QTableWidgetItem(words(8)));
        table.setItem(1, 0, new QTableWidgetItem(words(60)));
    }
    table.show();
    QVERIFY(table.columnWidth(0) > 1000);
    QCOMPARE(table.rowHeight(0), plainRowHeight); // one line in the column as it is shown
    const int lines = table.rowHeight(1);
    QVERIFY(lines >= neededHeight(table, 1));
    QCoreApplication::processEvents();
    QCOMPARE(table.rowHeight(0), plainRowHeight);
    QCOMPARE(table.rowHeight(1), lines);

    table.hide();
    {
        const RowFitPause pause(&table);
        table.item(0, 0)->setText(words(60));
    }
    table.show();
    QCOMPARE(table.rowHeight(0), lines);
}

void tst_RowFitPause::shownInAPause()
{
    QTableWidget table(1, 1);
    fitRows(&table);
    {
        const RowFitPause first(&table);
        table.setItem(0, 0, new QTableWidgetItem(words(60)));
    }
    {
        const RowFitPause second(&table);
        table.show();
        QCoreApplication::processEvents();
        QCOMPARE(table.rowHeight(0), plainRowHeight);
    }
    QCOMPARE(table.rowHeight(0), tallest);
}

QTEST_MAIN(tst_RowFitPause)
#include "tst_RowFitPause.moc"
