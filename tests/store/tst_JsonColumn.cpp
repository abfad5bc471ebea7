#include <QtTest>

#include <QJsonArray>

#include "store/JsonColumn.h"

/// Changes of the array in a JSON column.
class tst_JsonColumn : public QObject
{
    Q_OBJECT

private slots:
    void elementsAreReplacedAndRemoved();
    void noElementBeyondTheEnds();
};

void tst_JsonColumn::elementsAreReplacedAndRemoved()
{
    QJsonArray array = {1, 2, 3};
    QVERIFY(replaceElement(array, 2, 4));
    QCOMPARE(array, (QJsonArray{1, 2, 4}));
    QVERIFY(removeElement(array, 0));
    QCOMPARE(array, (QJsonArray{2, 4}));
}

void tst_JsonColumn::noElementBeyondTheEnds()
{
    QJsonArray array = {1, 2};
    for (const int position : {-1, 2, 3}) {
        QVERIFY(!replaceElement(array, position, 4));
        QVERIFY(!removeElement(array, position));
    }
    QCOMPARE(array, (QJsonArray{1, 2}));
}

QTEST_GUILESS_MAIN(tst_JsonColumn)
#include "tst_JsonColumn.moc"
