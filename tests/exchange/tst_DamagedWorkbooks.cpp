#include <QtTest>

#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>

#include <xlsxdocument.h>

#include "ExchangeFixture.h"
#include "exchange/WorkbookFile.h"
#include "support/ModalDriver.h"

/// Workbooks that are none, or are broken, or were made to do harm: they read as empty ones.
class tst_DamagedWorkbooks : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_fixture.reset(); }

    void soundOne();
    void damages_data();
    void damages();
    void oddities_data();
    void oddities();
    void missingFile();
    void hundredThousandRows();
    void cellsFarOutside();
    void commentBehindTheArchive();

private:
    QString book() const { return m_fixture->app.path("in.xlsx"); }
    bool isSound() const;
    void runImport(int first, int last, const QStringList& emptyCells);
    void runExport(bool isToldOfTemplate = false);

    std::unique_ptr<ExchangeFixture> m_fixture;
};

void tst_DamagedWorkbooks::init()
{
    m_fixture = std::make_unique<ExchangeFixture>();
    m_fixture->addForm("Аттестат");
    m_fixture->addTemplate("Шаблон", {{"A", "#DUPLICATE"}, {"B", "#LNAME"}}, book());
}

bool tst_DamagedWorkbooks::isSound() const
{
    QString error;
    openWorkbook(book(), nullptr, &error);
    return error.isEmpty();
}

void tst_DamagedWorkbooks::runImport(int first, int last, const QStringList& emptyCells)
{
    m_fixture->open();
    m_fixture->selectTemplate(0);
    m_fixture->child<QComboBox>("formCombo")->setCurrentIndex(0);
    m_fixture->child<QLineEdit>("fromRow")->setText(QString::number(first));
    m_fixture->child<QLineEdit>("toRow")->setText(QString::number(last));
    ModalDriver user;
    user.expectFileDialog(book());
    for (const QString& cell : emptyCells) {
        user.expectMessage("Внимание!", "Ошибка чтения: ячейка " + cell);
    }
    m_fixture->click("importButton");
    QVERIFY2(user.finished(), user.failures());
}

void tst_DamagedWorkbooks::runExport(bool isToldOfTemplate)
{
    m_fixture->open();
    m_fixture->selectTemplate(0);
    ModalDriver user;
    if (isToldOfTemplate) {
        user.expectMessage("Ошибка", "Не удалось прочитать таблицу-шаблон\n" + book() +
                                         "\nДокументы будут записаны в пустую таблицу.");
    }
    user.expectFileDialog(m_fixture->app.path("out.xlsx"));
    user.expectMessageStarting("Экспорт данных", "Документ\n");
    m_fixture->click("exportButton");
    QVERIFY2(user.finished(), user.failures());
}

void tst_DamagedWorkbooks::soundOne()
{
    workbooks({"rows", book(), 3});
    QVERIFY(isSound());
    runImport(2, 3, {});
    QCOMPARE(m_fixture->app.value("SELECT group_concat(LNAME) FROM docs").toString(),
             QString("2,3"));
}

void tst_DamagedWorkbooks::damages_data()
{
    QTest::addColumn<int>("unused");
    for (const char* way : {"text file",
                            "empty file",
                            "cut in the middle",
                            "cut at the end",
                            "another zip",
                            "flipped bit",
                            "part behind the end",
                            "declared size too large",
                            "encrypted",
                            "unknown method",
                            "bomb",
                            "bomb that denies it",
                            "two parts of one name",
                            "sheet without a part",
                            "sheet without a relation",
                            "sheet in another vocabulary",
                            "texts cut",
                            "formats cut",
                            "relations cut",
                            "unknown encoding",
                            "row that no sheet has",
                            "sheet cut",
                            "tags crossed",
                            "validation cut",
                            "entities",
                            "cell that no sheet has",
                            "dialog sheet",
                            "too many cells",
                            "too wide for its rows",
                            "text that all cells share",
                            "rows far apart on many sheets",
                            "too many elements",
                            "too many fonts",
                            "too many pictures",
                            "too many workbooks",
                            "too many sheets",
                            "too many formats",
                            "too many parts",
                            "nested too deep",
                            "too many attributes",
                            "attributes behind a quoted bracket",
                            "attributes behind a comment",
                            "too many namespaces"})
    {
        QTest::newRow(way) << 0;
    }
}

void tst_DamagedWorkbooks::damages()
{
    workbooks({"damage", book(), QString(QTest::currentDataTag())});
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!isSound());
    QVERIFY2(clock.elapsed() < 10000, "a file is refused at once");
    const QByteArray before = m_fixture->app.dump();
    runImport(2, 3, {"A2"});
    QCOMPARE(m_fixture->app.dump(), before);

    // As the workbook to fill it counts as none, which is told.
    m_fixture->addDocument({{"LNAME", "Сидоров"}});
    runExport(true);
    QCOMPARE(readCells(m_fixture->app.path("out.xlsx"), "Sheet1"),
             (QJsonObject{{"A2", "Оригинал"}, {"B2", "Сидоров"}}));
}

void tst_DamagedWorkbooks::oddities_data()
{
    QTest::addColumn<int>("unused");
    const QJsonArray ways = workbooks({"oddities"}).toArray();
    for (const QJsonValue& way : ways) {
        QTest::newRow(qPrintable(way.toString())) << 0;
    }
}

// What can be read in spite of what is wrong with it is read, and filled as well.
void tst_DamagedWorkbooks::oddities()
{
    workbooks({"odd", book(), QString(QTest::currentDataTag())});
    QVERIFY(isSound());
    runImport(2, 3, {});
    QCOMPARE(m_fixture->app.value("SELECT group_concat(LNAME) FROM docs").toString(),
             QString("Иванов,Петров"));

    m_fixture->app.exec("UPDATE export SET FROM_ROW = 4");
    runExport();
    const QJsonObject cells = readCells(m_fixture->app.path("out.xlsx"), "Лист1");
    QCOMPARE(cells["B2"], QJsonValue("Иванов"));
    QCOMPARE(cells["B3"], QJsonValue("Петров"));
    QCOMPARE(cells["B4"], QJsonValue("Иванов"));
    QCOMPARE(cells["B5"], QJsonValue("Петров"));
}

void tst_DamagedWorkbooks::missingFile()
{
    QVERIFY(!isSound());
    m_fixture->addDocument({{"LNAME", "Сидоров"}});
    runExport();
    QCOMPARE(readCells(m_fixture->app.path("out.xlsx"), "Sheet1").size(), 2);
}

void tst_DamagedWorkbooks::hundredThousandRows()
{
    workbooks({"rows", book(), 100000});
    runImport(99998, 100002, {"A100001"});
    QCOMPARE(m_fixture->app.value("SELECT group_concat(LNAME) FROM docs").toString(),
             QString("99998,99999,100000"));
}

void tst_DamagedWorkbooks::cellsFarOutside()
{
    writeCells(book(), {{"A2", "нет"}, {"B2", "Иванов"}, {"XFD1048576", "край"}});
    runImport(2, 2, {});
    QCOMPARE(m_fixture->app.value("SELECT LNAME FROM docs").toString(), QString("Иванов"));
    // Filled and saved with all its empty rows in between.
    runExport();
    QVERIFY(QFile::exists(m_fixture->app.path("out.xlsx")));
}

void tst_DamagedWorkbooks::commentBehindTheArchive()
{
    workbooks({"rows", book(), 3});
    QFile file(book());
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    const QByteArray comment(60000, 'x');
    bytes[bytes.size() - 2] = static_cast<char>(comment.size() & 0xff);
    bytes[bytes.size() - 1] = static_cast<char>(comment.size() >> 8);
    file.seek(0);
    file.write(bytes + comment);
    file.close();
    QVERIFY(isSound());
    runImport(2, 2, {});
    QCOMPARE(m_fixture->app.value("SELECT LNAME FROM docs").toString(), QString("2"));
}

QTEST_MAIN(tst_DamagedWorkbooks)
#include "tst_DamagedWorkbooks.moc"
