#include <QtTest>

#include "batch/BatchWindow.h"

class TestBatchWindow : public QObject
{
    Q_OBJECT

private slots:
    void isNamed()
    {
        const BatchWindow window;
        QCOMPARE(window.windowTitle(), QString("Zelvora - Печать партии"));
    }
};

QTEST_MAIN(TestBatchWindow)
#include "tst_BatchWindow.moc"
