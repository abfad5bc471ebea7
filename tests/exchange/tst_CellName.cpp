#include <QtTest>

#include "exchange/CellName.h"

/// Which texts name a cell, and which one.
class tst_CellName : public QObject
{
    Q_OBJECT

private slots:
    void cells_data();
    void cells();
    void noCells_data();
    void noCells();
    void agreesWithTheLibrary();
};

void tst_CellName::cells_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");

    QTest::newRow("first") << "A1" << 1 << 1;
    QTest::newRow("last one letter") << "Z12" << 12 << 26;
    QTest::newRow("first two letters") << "AA1" << 1 << 27;
    QTest::newRow("last column of a sheet") << "XFD1048576" << 1048576 << 16384;
    QTest::newRow("beyond any sheet") << "ZZZ9999999" << 9999999 << 18278;
    QTest::newRow("fixed column") << "$C12" << 12 << 3;
    QTest::newRow("fixed row") << "C$12" << 12 << 3;
    QTest::newRow("fixed both") << "$C$12" << 12 << 3;
    QTest::newRow("leading zeros") << "C0012" << 12 << 3;
}

void tst_CellName::cells()
{
    QFETCH(QString, name);
    QFETCH(int, row);
    QFETCH(int, column);
    const QXlsx::CellReference cell = cellFromName(name);
    QCOMPARE(cell.row(), row);
    QCOMPARE(cell.column(), column);
    QVERIFY(cell.isValid());
}

void tst_CellName::noCells_data()
{
    QTest::addColumn<QString>("name");

    for (const char* name : {"",
                             "C",
                             "12",
                             "$",
                             "$$C1",
                             "C$$1",
                             "$C1$",
                             "c12",
                             "С12" /* Cyrillic */,
                             "C 12",
                             " C12",
                             "C12 ",
                             "C12\n",
                             "ABCD1",
                             "C-1",
                             "C0",
                             "C000",
                             "C1.5",
                             "колонка excel2",
                             "C12345678",
                             "C99999999999999999999",
                             "C1A",
                             "A1:B2"})
    {
        QTest::newRow(name) << QString(name);
    }
}

void tst_CellName::noCells()
{
    QFETCH(QString, name);
    QVERIFY(!cellFromName(name).isValid());
}

void tst_CellName::agreesWithTheLibrary()
{
    for (int column = 1; column <= 16384; column += 7) {
        const QString name = QXlsx::CellReference(column, column).toString();
        QCOMPARE(cellFromName(name).row(), column);
        QCOMPARE(cellFromName(name).column(), column);
    }
}

QTEST_MAIN(tst_CellName)
#include "tst_CellName.moc"
