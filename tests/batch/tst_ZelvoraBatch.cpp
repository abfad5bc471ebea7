#include <QtTest>

#include "support/Process.h"

/// The command line of the window for batches, without a window.
class tst_ZelvoraBatch : public QObject
{
    Q_OBJECT

private slots:
    void help_data();
    void help();
    void version_data();
    void version();
    void unknownOption_data();
    void unknownOption();
};

namespace {

ProcessResult runBatch(const QStringList& arguments)
{
    return runProcess(QString(ZELVORA_BIN_DIR) + "/batch/zelvora-batch", arguments);
}

const QString usage = "Использование: zelvora-batch [--dir КАТАЛОГ]\n";

} // namespace

void tst_ZelvoraBatch::help_data()
{
    QTest::addColumn<QString>("option");
    QTest::newRow("long") << "--help";
    QTest::newRow("short") << "-h";
}

void tst_ZelvoraBatch::help()
{
    QFETCH(QString, option);
    const ProcessResult result = runBatch({option});
    QCOMPARE(result.exitCode, 0);
    const QString text = QString::fromUtf8(result.out);
    QVERIFY2(text.startsWith(usage), result.out);
    QVERIFY2(text.contains("\n  --version      версия\n"), result.out);
}

void tst_ZelvoraBatch::version_data()
{
    QTest::addColumn<QString>("option");
    QTest::newRow("long") << "--version";
    QTest::newRow("as the application's") << "--v";
    QTest::newRow("in capitals") << "--V";
}

void tst_ZelvoraBatch::version()
{
    QFETCH(QString, option);
    const ProcessResult result = runBatch({option});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QByteArray("1.1.0.9\n"));
}

void tst_ZelvoraBatch::unknownOption_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("unknown") << QStringList{"--print"};
    QTest::newRow("no directory") << QStringList{"--dir"};
    QTest::newRow("no option") << QStringList{"docs.db"};
}

void tst_ZelvoraBatch::unknownOption()
{
    QFETCH(QStringList, arguments);
    const ProcessResult result = runBatch(arguments);
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.out, QByteArray());
    QVERIFY2(QString::fromUtf8(result.err).contains(usage), result.err);
}

QTEST_GUILESS_MAIN(tst_ZelvoraBatch)
#include "tst_ZelvoraBatch.moc"
