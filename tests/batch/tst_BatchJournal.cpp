#include <QtTest>

#include <QDir>
#include <QFileInfo>

#include "batch/BatchJournal.h"
#include "store/OrgData.h"
#include "support/Process.h"
#include "support/TempApplication.h"

namespace {

JournalEntry entry(const QString& person, const QString& event)
{
    JournalEntry made;
    made.time = QDateTime(QDate::currentDate(), QTime(13, 5, 9));
    made.document = "7";
    made.person = person;
    made.form = "Диплом";
    made.blank = "Титул";
    made.paper = "АБ № 000123";
    made.place = "Офис";
    made.event = event;
    return made;
}

QString today()
{
    return QDate::currentDate().toString("yyyy-MM-dd");
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

constexpr QFile::Permissions ofOthers = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                        QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;

} // namespace

/// The list of what was printed: what stands in it, where, for whom, and what a power cut leaves.
class tst_BatchJournal : public QObject
{
    Q_OBJECT

private slots:
    void standsBesideTheUsersData();
    void lineByLine();
    void fileADay();
    void forItsUserAlone();
    void brokenLineIsEnded();
    void spreadsheetReadsIt();
    void noFormulas_data();
    void noFormulas();
    void unwritableFolder();
    void followsNoLink();
    void savedOnDemand();
    void saveThatFails();
};

void tst_BatchJournal::standsBesideTheUsersData()
{
    const TempApplication application(TempApplication::Database::None);
    BatchJournal journal;
    QVERIFY(journal.open());
    QCOMPARE(journal.path(), application.path("data/Zelvora/journal/" + today() + ".csv"));
}

// Each line is there as soon as add() returns; a second journal goes on with the file.
void tst_BatchJournal::lineByLine()
{
    const TempApplication application(TempApplication::Database::None);
    const QString time = '"' + today() + " 13:05:09\";\"7\";";
    const QString heading = QString::fromUtf8("\xEF\xBB\xBF") +
                            "\"Время\";\"Документ\";\"Фамилия и имя\";\"Форма\";\"Бланк\";"
                            "\"Серия и номер\";\"Принтер или файл\";\"Итог\"\r\n";
    const QString first = time + "\"Иванов\";\"Диплом\";\"Титул\";\"АБ № 000123\";\"Офис\";"
                                 "\"печатается\"\r\n";
    BatchJournal journal;
    QVERIFY(journal.open());
    QVERIFY(journal.add(entry("Иванов", "печатается")));
    QCOMPARE(QString::fromUtf8(contentOf(journal.path())), heading + first);

    BatchJournal other;
    QVERIFY(other.open());
    QVERIFY(other.add(entry("Иванов", "печатается")));
    QCOMPARE(QString::fromUtf8(contentOf(journal.path())), heading + first + first);
}

void tst_BatchJournal::fileADay()
{
    const TempApplication application(TempApplication::Database::None);
    BatchJournal journal;
    QVERIFY(journal.open());
    JournalEntry afterMidnight = entry("Иванов", "напечатан");
    afterMidnight.time = QDateTime(QDate::currentDate().addDays(1), QTime(0, 1));
    QVERIFY(journal.add(afterMidnight));
    const QString next = QDate::currentDate().addDays(1).toString("yyyy-MM-dd") + ".csv";
    QCOMPARE(QFileInfo(journal.path()).fileName(), next);
    QCOMPARE(contentOf(journal.path()).count('\n'), 2);
}

void tst_BatchJournal::forItsUserAlone()
{
    const TempApplication application(TempApplication::Database::None);
    const QString folder = BatchJournal::defaultFolder();
    const QString file = folder + "/" + today() + ".csv";
    QVERIFY(QDir().mkpath(folder));
    QFile older(file); // of a careless hand
    QVERIFY(older.open(QIODevice::WriteOnly));
    QVERIFY(older.setPermissions(older.permissions() | ofOthers));
    older.close();
    BatchJournal journal;
    QVERIFY(journal.open());
    for (const QString& path : {file, folder}) {
        QVERIFY2(!(QFile::permissions(path) & ofOthers), qPrintable(path));
        QVERIFY(QFile::permissions(path).testFlag(QFile::ReadOwner));
    }
}

// A power cut amid a line.
void tst_BatchJournal::brokenLineIsEnded()
{
    const TempApplication application(TempApplication::Database::None);
    BatchJournal journal;
    QVERIFY(journal.open());
    QVERIFY(journal.add(entry("Иванов", "печатается")));
    QFile file(journal.path());
    QVERIFY(file.resize(file.size() - 9));
    BatchJournal other;
    QVERIFY(other.open());
    QVERIFY(other.add(entry("Петрова", "печатается")));
    const QList<QByteArray> lines = contentOf(journal.path()).split('\n');
    QCOMPARE(lines.size(), 4); // heading, the broken one, the new one, nothing
    QVERIFY(lines[2].contains(QByteArray("Петрова")));
}

// As a spreadsheet does: the mark, then cells parted by ';' with doubled quotes.
void tst_BatchJournal::spreadsheetReadsIt()
{
    const TempApplication application(TempApplication::Database::None);
    BatchJournal journal;
    QVERIFY(journal.open());
    QVERIFY(journal.add(entry("Иванов; \"Ваня\"\nи др.", "напечатан")));
    const ProcessResult read =
        runPython("import csv, sys\n"
                  "with open(sys.argv[1], encoding='utf-8-sig', newline='') as file:\n"
                  "    rows = list(csv.reader(file, delimiter=';'))\n"
                  "print(len(rows), len(rows[1]), rows[0][0], rows[1][2], sep='|')\n",
                  {journal.path()});
    QCOMPARE(QString::fromUtf8(read.out), QString("2|8|Время|Иванов; \"Ваня\" и др.\n"));
}

void tst_BatchJournal::noFormulas_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("cell");
    QTest::newRow("sum") << "=1+1"
                         << "'=1+1";
    QTest::newRow("command") << "@cmd"
                             << "'@cmd";
    QTest::newRow("plus") << "+7"
                          << "'+7";
    QTest::newRow("minus") << "-7"
                           << "'-7";
    QTest::newRow("behind a blank") << " =1"
                                    << "' =1";
    QTest::newRow("behind a tab") << "\t=1"
                                  << "' =1";
    QTest::newRow("a name") << "Салтыков-Щедрин"
                            << "Салтыков-Щедрин";
}

void tst_BatchJournal::noFormulas()
{
    QFETCH(QString, name);
    QFETCH(QString, cell);
    const TempApplication application(TempApplication::Database::None);
    BatchJournal journal;
    QVERIFY(journal.open());
    QVERIFY(journal.add(entry(name, "напечатан")));
    const QString line = QString::fromUtf8(contentOf(journal.path())).section("\r\n", 1, 1);
    QCOMPARE(line.section(';', 2, 2), '"' + cell + '"');
}

void tst_BatchJournal::unwritableFolder()
{
    const TempApplication application(TempApplication::Database::None);
    QVERIFY(QDir().mkpath(QFileInfo(orgDataPath).path()));
    QFile inTheWay(BatchJournal::defaultFolder());
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    BatchJournal journal;
    QString error;
    QVERIFY(!journal.open(&error));
    QVERIFY(!error.isEmpty());
    QVERIFY(!journal.isOpen());
    QVERIFY(journal.add(entry("Иванов", "напечатан"))); // is remembered
    QCOMPARE(journal.entries().size(), 1);
}

void tst_BatchJournal::followsNoLink()
{
    const TempApplication application(TempApplication::Database::None);
    QVERIFY(QDir().mkpath(BatchJournal::defaultFolder()));
    QFile elsewhere(application.path("elsewhere"));
    QVERIFY(elsewhere.open(QIODevice::WriteOnly));
    QVERIFY(elsewhere.setPermissions(elsewhere.permissions() | ofOthers));
    QVERIFY(elsewhere.link(BatchJournal::defaultFolder() + "/" + today() + ".csv"));
    BatchJournal journal;
    QVERIFY(!journal.open());
    QCOMPARE(elsewhere.size(), 0);
    QVERIFY(QFile::permissions(elsewhere.fileName()) & QFile::ReadOther);
}

void tst_BatchJournal::savedOnDemand()
{
    const TempApplication application(TempApplication::Database::None);
    BatchJournal journal;
    QVERIFY(journal.open());
    QVERIFY(journal.add(entry("Вчерашний", "напечатан")));
    journal.clear();
    QVERIFY(journal.add(entry("Иванов", "напечатан")));
    QVERIFY(journal.saveAs(application.path("журнал.csv")));
    const QByteArray saved = contentOf(application.path("журнал.csv"));
    QCOMPARE(saved.count('\n'), 2);
    QVERIFY(saved.startsWith("\xEF\xBB\xBF"));
    QVERIFY(saved.contains(QByteArray("Иванов")));
}

void tst_BatchJournal::saveThatFails()
{
    const TempApplication application(TempApplication::Database::None);
    BatchJournal journal;
    QString error;
    QVERIFY(!journal.saveAs(application.path("нет/журнал.csv"), &error));
    QVERIFY(!error.isEmpty());
}

QTEST_MAIN(tst_BatchJournal)
#include "tst_BatchJournal.moc"
