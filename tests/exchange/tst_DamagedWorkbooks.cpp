#include <QtTest>

#include <QComboBox>
#include <QLineEdit>

#include "ExchangeFixture.h"
#include "exchange/WorkbookCheck.h"
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
    void missingFile();
    void hundredThousandRows();
    void cellsFarOutside();
    void commentBehindTheArchive();

private:
    QString book() const { return m_fixture->app.path("in.xlsx"); }
    bool isSound() const;
    void runImport(int first, int last, const QStringList& emptyCells);
    void runExport();

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
    QFile file(book());
    return file.open(QIODevice::ReadOnly) && isSoundWorkbook(file);
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

void tst_DamagedWorkbooks::runExport()
{
    m_fixture->open();
    m_fixture->selectTemplate(0);
    ModalDriver user;
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
                            "packed size too large",
                            "declared size too large",
                            "encrypted",
                            "unknown method",
                            "bomb",
                            "bomb that denies it",
                            "sheet cut",
                            "tags crossed",
                            "validation cut",
                            "entities",
                            "cells without names",
                            "cell that no sheet has",
                            "dimension without cells",
                            "endless columns",
                            "name of a missing sheet",
                            "negative font",
                            "dialog sheet"})
    {
        QTest::newRow(way) << 0;
    }
}

void tst_DamagedWorkbooks::damages()
{
    workbooks({"damage", book(), QString(QTest::currentDataTag())});
    const QByteArray before = m_fixture->app.dump();
    runImport(2, 3, {"A2"});
    QCOMPARE(m_fixture->app.dump(), before);

    // As the workbook to fill it counts as none.
    m_fixture->addDocument({{"LNAME", "Сидоров"}});
    runExport();
    QCOMPARE(readCells(m_fixture->app.path("out.xlsx"), "Sheet1"),
             (QJsonObject{{"A2", "Оригинал"}, {"B2", "Сидоров"}}));
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
