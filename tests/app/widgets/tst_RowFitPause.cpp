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

QTEST_MAIN(tst_RowFitPause)
#include "tst_RowFitPause.moc"
