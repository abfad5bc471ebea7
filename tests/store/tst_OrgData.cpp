#include <QtTest>

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include "store/OrgData.h"
#include "support/TempApplication.h"

namespace {

bool writeOrgFile(const QByteArray& content)
{
    QDir().mkpath(QFileInfo(orgDataPath).path());
    QFile file(orgDataPath);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QStringList strings()
{
    return {orgNameFormat1, orgNameFormat2, orgRegion, orgLocality, orgDirector};
}

const QStringList oldValues = {"в", "о", "р", "п", "д"};

void setOldValues()
{
    orgNameFormat1 = oldValues[0];
    orgNameFormat2 = oldValues[1];
    orgRegion = oldValues[2];
    orgLocality = oldValues[3];
    orgDirector = oldValues[4];
}

} // namespace

/// Reading of the organisation's data.
class tst_OrgData : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void missingFileLeavesTheStrings();
    void unreadableFileLeavesTheStrings();
    void readsTheFiveKeys();
    void otherKeysAreIgnored();
    void whatStandsThere();
    void hugeFileIsNotReadWhole();
    void unreadableFileIsBroken();
    void whatIsNoStringReadsAsEmpty_data();
    void whatIsNoStringReadsAsEmpty();
};

void tst_OrgData::initTestCase()
{
    // Fixed before main(), when no application name is known.
    QCOMPARE(orgDataPath, qEnvironmentVariable("XDG_DATA_HOME") + "/Zelvora/orgData.json");
    QCOMPARE(strings(), (QStringList{"", "", "", "", ""}));
}

void tst_OrgData::missingFileLeavesTheStrings()
{
    TempApplication app(TempApplication::Database::None);
    setOldValues();
    QVERIFY(!loadOrgData());
    QCOMPARE(strings(), oldValues);
}

void tst_OrgData::unreadableFileLeavesTheStrings()
{
    TempApplication app(TempApplication::Database::None);
    setOldValues();
    QVERIFY(QDir().mkpath(orgDataPath)); // a folder of that name exists and cannot be opened
    QVERIFY(loadOrgData());
    QCOMPARE(strings(), oldValues);
}

void tst_OrgData::readsTheFiveKeys()
{
    TempApplication app(TempApplication::Database::None);
    QVERIFY(writeOrgFile("{\n    \"director\": \"Громова Анна Сергеевна\",\n    \"locality\": "
                         "\"г. Тула\",\n    \"nameFormat1\": \"колледж\",\n    \"nameFormat2\": "
                         "\"колледже\",\n    \"region\": \" Тульская область \"\n}\n"));
    QVERIFY(loadOrgData());
    QCOMPARE(strings(), (QStringList{"колледж", "колледже", " Тульская область ", "г. Тула",
                                     "Громова Анна Сергеевна"}));
}

void tst_OrgData::otherKeysAreIgnored()
{
    TempApplication app(TempApplication::Database::None);
    QVERIFY(writeOrgFile("{\"director\": \"Громова\", \"inn\": \"7100000000\"}"));
    QVERIFY(loadOrgData());
    QCOMPARE(strings(), (QStringList{"", "", "", "", "Громова"}));
}

void tst_OrgData::whatIsNoStringReadsAsEmpty_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("Организация: колледж");
    QTest::newRow("cut off") << QByteArray("{\"director\": \"Громова\", \"region\"");
    QTest::newRow("an array") << QByteArray("[\"director\", \"Громова\"]");
    QTest::newRow("no keys") << QByteArray("{}");
    QTest::newRow("other types") << QByteArray(
        "{\"director\": 1, \"locality\": null, \"nameFormat1\": [\"x\"], "
        "\"nameFormat2\": {\"x\": \"y\"}, \"region\": true}");
    QTest::newRow("other case") << QByteArray("{\"Director\": \"Громова\"}");
}

void tst_OrgData::whatIsNoStringReadsAsEmpty()
{
    QFETCH(QByteArray, content);
    TempApplication app(TempApplication::Database::None);
    setOldValues();
    QVERIFY(writeOrgFile(content));
    QVERIFY(loadOrgData());
    QCOMPARE(strings(), (QStringList{"", "", "", "", ""}));
}

void tst_OrgData::whatStandsThere()
{
    const TempApplication app;
    QCOMPARE(readOrgData(), OrgDataFile::Missing);
    QVERIFY(writeOrgFile("{}"));
    QCOMPARE(readOrgData(), OrgDataFile::Sound);
    for (const char* broken : {"", "{\"region\": ", "[]", "null", "\"region\""}) {
        QVERIFY(writeOrgFile(broken));
        QVERIFY2(readOrgData() == OrgDataFile::Broken, broken);
    }
    QVERIFY(QFile::remove(orgDataPath));
    QVERIFY(QDir().mkpath(orgDataPath)); // a folder in its place
    QCOMPARE(readOrgData(), OrgDataFile::Broken);
}

void tst_OrgData::hugeFileIsNotReadWhole()
{
    const TempApplication app;
    constexpr int largest = 16 << 20;
    const QByteArray content = "{\"region\": \"Тула\"}";
    QVERIFY(writeOrgFile(content.leftJustified(largest, ' ')));
    QCOMPARE(readOrgData(), OrgDataFile::Sound);
    QVERIFY(writeOrgFile(content.leftJustified(largest + 1, ' ')));
    QCOMPARE(readOrgData(), OrgDataFile::Broken);
}

void tst_OrgData::unreadableFileIsBroken()
{
#ifdef Q_OS_LINUX
    const TempApplication app;
    setOldValues();
    const QStringList before = strings();
    orgDataPath = "/proc/self/mem"; // nothing stands at its beginning
    QCOMPARE(readOrgData(), OrgDataFile::Broken);
    QCOMPARE(strings(), before);
#else
    QSKIP("no file here that can't be read");
#endif
}

QTEST_GUILESS_MAIN(tst_OrgData)
#include "tst_OrgData.moc"
