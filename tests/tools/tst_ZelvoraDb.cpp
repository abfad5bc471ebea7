#include <QtTest>

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include "support/InterruptedChange.h"
#include "support/Process.h"

namespace {

ProcessResult run(const QStringList& arguments)
{
    return runProcess(QString(ZELVORA_BIN_DIR) + "/tools/zelvora-db", arguments, QByteArray(),
                      240000);
}

/// What the sqlite3 program answers, a line a row, columns parted by "|".
QStringList sqlite(const QString& file, const QString& statement)
{
    const QString text = QString::fromUtf8(runProcess("sqlite3", {file, statement}).out).trimmed();
    return text.isEmpty() ? QStringList() : text.split('\n');
}

QString sqliteValue(const QString& file, const QString& statement)
{
    return sqlite(file, statement).value(0);
}

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray hashOf(const QString& path)
{
    return QCryptographicHash::hash(content(path), QCryptographicHash::Sha1);
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// The column's texts, one a row, each as UTF-8 whatever its storage class.
QList<QByteArray> jsonTexts(const QString& file, const QString& table, const QString& column,
                            const QString& where = "1")
{
    QList<QByteArray> texts;
    for (const QString& hex :
         sqlite(file,
                QString("SELECT hex(%1) FROM %2 WHERE %3 ORDER BY ID").arg(column, table, where)))
    {
        texts << QByteArray::fromHex(hex.toLatin1());
    }
    return texts;
}

/// Sets an environment variable for the programs that are started while it lives.
class Environment
{
public:
    Environment(const char* name, const QByteArray& value)
        : m_name(name)
        , m_old(qgetenv(name))
    {
        qputenv(name, value);
    }
    ~Environment() { qputenv(m_name, m_old); }
    Q_DISABLE_COPY(Environment)

private:
    const char* m_name;
    QByteArray m_old;
};

} // namespace

/// The companion program for the database, run as a user runs it.
class tst_ZelvoraDb : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void helpSpeaksTheUsersLanguage_data();
    void helpSpeaksTheUsersLanguage();
    void wrongUseIsRefused_data();
    void wrongUseIsRefused();

    void nothingForATerminal();

    void createMakesAnEmptyDatabase();
    void createCarriesTheStandardLists();
    void createCarriesTheStandardForms();
    void createNeverOverwrites();
    void createReportsAnUnwritablePlace();
    void emptyPathIsRefused_data();
    void emptyPathIsRefused();
    void createNeverFollowsALink();
    void createRemovesLeftovers();

    void sampleIsAWholeDirectory();
    void sampleHasTwoHundredDocuments();
    void sampleNamesAreConsistent();
    void sampleIsStoredAsTheDialogsStoreIt();
    void sampleContentFollowsTheForms();
    void sampleValuesSurviveTheEditors();
    void sampleUsesEveryTypeOfField();
    void sampleHasTwoDocumentTemplates();
    void sampleBlanksCoverEveryPaper();
    void sampleBlanksUseEveryKindOfItem();
    void sampleBackgroundsFitTheirPages();
    void sampleHasAnExchangeTemplate();
    void sampleValuesHoldNoApostrophe();
    void sampleIsTheSameEveryTime();
    void sampleWritesNothingElsewhere();
    void sampleNeverOverwrites();
    void sampleKeepsFilesThatAreThere();
    void sampleReportsAnUnwritablePlace();
    void sampleReportsAFileThatCannotBeWritten();

    void checkPassesWhatTheProgramMade();
    void checkFindsDamagedTables_data();
    void checkFindsDamagedTables();
    void checkFindsDamagedDocuments_data();
    void checkFindsDamagedDocuments();
    void checkFindsDamagedForms_data();
    void checkFindsDamagedForms();
    void checkFindsDamagedLayouts_data();
    void fullOutputIsAFailure();
    void checkFindsDamagedLayouts();
    void checkLooksForFilesBesideTheDatabase();
    void checkAcceptsWhatTheProgramToo_data();
    void checkAcceptsWhatTheProgramToo();
    void checkNeedsADatabase_data();
    void checkNeedsADatabase();
    void checkFindsADamagedPage();
    void checkSeesBeyondAnInterruptedChange();
    void checkNeedsAPlaceForACopy();
    void checkOfADatabaseInUse();
    void checkLeavesNoLog_data();
    void checkLeavesNoLog();

private:
    void checkFindsTheDamage();
    QString sample(const QString& relative = "docs.db") const
    {
        return m_sample.filePath(relative);
    }
    QString path(const QString& relative) const { return m_dir->filePath(relative); }

    QTemporaryDir m_sample;
    QByteArray m_sampleOutput;
    QScopedPointer<QTemporaryDir> m_dir;
};

void tst_ZelvoraDb::initTestCase()
{
    const ProcessResult result = run({"sample", m_sample.path()});
    QVERIFY2(result.exitCode == 0, result.err.constData());
    m_sampleOutput = result.out;
}

void tst_ZelvoraDb::init()
{
    m_dir.reset(new QTemporaryDir);
}

void tst_ZelvoraDb::helpSpeaksTheUsersLanguage_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("start");
    QTest::newRow("Russian") << QByteArray("ru_RU.UTF-8") << "Использование: zelvora-db ";
    QTest::newRow("English") << QByteArray("en_US.UTF-8") << "Usage: zelvora-db ";
    QTest::newRow("none") << QByteArray("C") << "Usage: zelvora-db ";
}

void tst_ZelvoraDb::helpSpeaksTheUsersLanguage()
{
    QFETCH(QByteArray, locale);
    QFETCH(QString, start);
    const Environment environment("LC_ALL", locale);
    const ProcessResult result = run({"--help"});
    QCOMPARE(result.exitCode, 0);
    const QString text = QString::fromUtf8(result.out);
    QVERIFY2(text.startsWith(start), qPrintable(text));
    for (const char* command : {"create", "sample", "check", "--help"}) {
        QVERIFY(text.contains(command));
    }
}

void tst_ZelvoraDb::wrongUseIsRefused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("nothing") << QStringList();
    QTest::newRow("no path") << QStringList{"create"};
    QTest::newRow("two paths") << QStringList{"check", "a", "b"};
    QTest::newRow("unknown command") << QStringList{"delete", "docs.db"};
}

void tst_ZelvoraDb::wrongUseIsRefused()
{
    QFETCH(QStringList, arguments);
    const ProcessResult result = run(arguments);
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.contains("Usage: zelvora-db "));
    QCOMPARE(result.out, QByteArray());
}

void tst_ZelvoraDb::nothingForATerminal()
{
    for (const QStringList& arguments :
         {QStringList{"check", "no\x1b[2J\r.db"}, QStringList{"che\x1b[2J\rck", "docs.db"}})
    {
        const ProcessResult result = run(arguments);
        QCOMPARE(result.exitCode, 2);
        QVERIFY(!result.err.contains('\x1b') && !result.err.contains('\r'));
        QVERIFY(result.err.contains(" [2J "));
    }
}

void tst_ZelvoraDb::createMakesAnEmptyDatabase()
{
    const ProcessResult result = run({"create", path("docs.db")});
    QVERIFY2(result.exitCode == 0, result.err.constData());
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden), QStringList{"docs.db"});
    for (const char* table : {"docs", "blanks", "export"}) {
        QCOMPARE(sqliteValue(path("docs.db"), QString("SELECT COUNT(*) FROM %1").arg(table)),
                 QString("0"));
    }
    QCOMPARE(sqlite(path("docs.db"), "SELECT DB_VERSION FROM zvsys"), QStringList{"1.0.0.0"});
    QCOMPARE(sqliteValue(path("docs.db"), "PRAGMA integrity_check"), QString("ok"));
}

void tst_ZelvoraDb::createCarriesTheStandardLists()
{
    QCOMPARE(run({"create", path("docs.db")}).exitCode, 0);
    const QStringList names = sqlite(path("docs.db"), "SELECT LIST_NAME FROM lists ORDER BY ID");
    // The lists that update packages look up by name.
    for (const char* name :
         {"Вид документа", "Да/Нет", "Уровень образования", "Гражданство получателя (по ОКСМ)",
          "Форма получения образования", "Пол", "Источник финансирования", "Форма обучения"})
    {
        QCOMPARE(names.count(name), 1);
    }
    for (const char* name : {"Оценки", "Предметы", "Специальности", "Квалификации"}) {
        QCOMPARE(names.count(name), 1);
    }
    for (const QByteArray& text : jsonTexts(path("docs.db"), "lists", "LIST_ITEMS")) {
        const QJsonObject object = QJsonDocument::fromJson(text).object();
        QCOMPARE(object.keys(), QStringList{"items"});
        QVERIFY(object["items"].toArray().size() >= 2);
        QCOMPARE(text, QJsonDocument(object).toJson());
    }
    QCOMPARE(sqlite(path("docs.db"), "SELECT DISTINCT typeof(LIST_ITEMS) FROM lists"),
             QStringList{"blob"});
}

void tst_ZelvoraDb::createCarriesTheStandardForms()
{
    QCOMPARE(run({"create", path("docs.db")}).exitCode, 0);
    QCOMPARE(sqlite(path("docs.db"), "SELECT ID, FORM_NAME FROM forms ORDER BY ID"),
             (QStringList{"1|Аттестат", "2|Диплом СПО", "3|Справка об обучении",
                          "28|Удостоверение ПК"}));
    for (const QByteArray& text : jsonTexts(path("docs.db"), "forms", "FIELDS")) {
        const QJsonObject object = QJsonDocument::fromJson(text).object();
        QCOMPARE(object.keys(), QStringList{"fields"});
        QVERIFY(object["fields"].toArray().size() >= 5);
        QCOMPARE(text, QJsonDocument(object).toJson());
    }
    QCOMPARE(sqlite(path("docs.db"), "SELECT DISTINCT typeof(FIELDS) FROM forms"),
             QStringList{"blob"});
    // A field refers to its list by number, a column by the number as text.
    QCOMPARE(sqlite(path("docs.db"),
                    "SELECT DISTINCT typeof(json_extract(value, '$.list')) FROM forms, "
                    "json_each(CAST(FIELDS AS TEXT), '$.fields') WHERE json_extract(value, "
                    "'$.type') = 1"),
             QStringList{"integer"});
    QCOMPARE(sqlite(path("docs.db"),
                    "SELECT DISTINCT typeof(json_extract(c.value, '$.listID')) FROM forms, "
                    "json_each(CAST(FIELDS AS TEXT), '$.fields') AS f, json_each(f.value, "
                    "'$.content') AS c WHERE json_extract(c.value, '$.listID') NOT NULL"),
             QStringList{"text"});
}

void tst_ZelvoraDb::createNeverOverwrites()
{
    QVERIFY(writeFile(path("docs.db"), "важное"));
    const ProcessResult result = run({"create", path("docs.db")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.contains("exists already"));
    QCOMPARE(content(path("docs.db")), QByteArray("важное"));
}

void tst_ZelvoraDb::createReportsAnUnwritablePlace()
{
    const ProcessResult result = run({"create", path("no/folder/docs.db")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.startsWith("zelvora-db: no database was made: "));
    QVERIFY(!QFile::exists(path("no")));
}

void tst_ZelvoraDb::emptyPathIsRefused_data()
{
    QTest::addColumn<QString>("command");
    for (const char* command : {"create", "sample", "check"}) {
        QTest::newRow(command) << command;
    }
}

void tst_ZelvoraDb::emptyPathIsRefused()
{
    QFETCH(QString, command);
    const QStringList before = QDir().entryList(QDir::AllEntries | QDir::Hidden);
    const ProcessResult result = run({command, ""});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.err.endsWith("zelvora-db: no file or folder is named\n"), result.err);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(QDir().entryList(QDir::AllEntries | QDir::Hidden), before);
}

void tst_ZelvoraDb::createNeverFollowsALink()
{
    QVERIFY(QFile::link(path("elsewhere.db"), path("docs.db"))); // which leads nowhere
    QVERIFY(QFile::link("/dev/full", path("device.db")));
    for (const QString& target : {path("docs.db"), path("device.db")}) {
        const ProcessResult result = run({"create", target});
        QCOMPARE(result.exitCode, 2);
        QCOMPARE(result.err.count('\n'), 1);
        QVERIFY(QFileInfo(target).isSymLink());
    }
    QVERIFY(!QFile::exists(path("elsewhere.db")));
}

void tst_ZelvoraDb::createRemovesLeftovers()
{
    const QString unfinished = "docs.db.0123456789abcdef0123456789abcdef.new";
    const QStringList kept{"docs.db.new", "docs.new", "young.db." + QString(32, 'a') + ".new"};
    for (const QString& name : QStringList{unfinished, unfinished + "-journal"} + kept) {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        const int hours = name.startsWith("young") ? 23 : 25;
        QVERIFY(file.setFileTime(QDateTime::currentDateTimeUtc().addSecs(qint64(-3600) * hours),
                                 QFileDevice::FileModificationTime));
    }
    QCOMPARE(run({"create", path("docs.db")}).exitCode, 0);
    QStringList expected = kept + QStringList("docs.db");
    expected.sort();
    QStringList files = QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden);
    files.sort();
    QCOMPARE(files, expected);
}

void tst_ZelvoraDb::sampleIsAWholeDirectory()
{
    QVERIFY(m_sampleOutput.contains(m_sample.path().toUtf8()));
    for (const char* folder : {"blanks", "exports", "imports", "storage", "templates"}) {
        QVERIFY2(QFileInfo(sample(folder)).isDir(), folder);
    }
    QCOMPARE(sqlite(sample(), "SELECT DB_VERSION FROM zvsys"), QStringList{"1.0.0.0"});
    QCOMPARE(sqliteValue(sample(), "PRAGMA integrity_check"), QString("ok"));
    QVERIFY(sqliteValue(sample(), "SELECT COUNT(*) FROM blanks").toInt() >= 3);
    QCOMPARE(sqliteValue(sample(), "SELECT COUNT(*) FROM export"), QString("1"));
    // Every form has a blank to print on.
    QCOMPARE(sqlite(sample(), "SELECT ID FROM forms WHERE ID NOT IN (SELECT FORM_ID FROM blanks)"),
             QStringList());
    const QJsonObject organisation =
        QJsonDocument::fromJson(content(sample("data/Zelvora/orgData.json"))).object();
    QCOMPARE(organisation.keys(),
             (QStringList{"director", "locality", "nameFormat1", "nameFormat2", "region"}));
}

void tst_ZelvoraDb::sampleHasTwoHundredDocuments()
{
    QCOMPARE(sqliteValue(sample(), "SELECT COUNT(*) FROM docs WHERE TEMPLATE = 0"), QString("200"));
    QCOMPARE(sqliteValue(sample(), "SELECT COUNT(*) FROM docs WHERE TEMPLATE = 0 AND "
                                   "TEMPLATE_NAME IS NOT ''"),
             QString("0"));
    const int duplicates =
        sqliteValue(sample(), "SELECT COUNT(*) FROM docs WHERE DUPLICATE = 1").toInt();
    QVERIFY(duplicates >= 3 && duplicates <= 20);
    QCOMPARE(sqlite(sample(), "SELECT DISTINCT DUPLICATE FROM docs ORDER BY 1"),
             (QStringList{"0", "1"}));
    // Series and number are given once.
    QCOMPARE(sqlite(sample(), "SELECT BLANK_SER, BLANK_NO FROM docs WHERE TEMPLATE = 0 GROUP BY "
                              "DOC_TYPE, BLANK_SER, BLANK_NO HAVING COUNT(*) > 1"),
             QStringList());
    const QString date = "[12][0-9][0-9][0-9]-[01][0-9]-[0-3][0-9]";
    QCOMPARE(sqliteValue(sample(), QString("SELECT COUNT(*) FROM docs WHERE BIRTH_DATE GLOB '%1' "
                                           "AND ISSUE_DATE GLOB '%1' AND EDIT_DATE GLOB '%1'")
                                       .arg(date)),
             QString("202"));
    QCOMPARE(sqliteValue(sample(), "SELECT COUNT(*) FROM docs WHERE TEMPLATE = 0 AND "
                                   "julianday(ISSUE_DATE) - julianday(BIRTH_DATE) < 14 * 365"),
             QString("0"));
    QVERIFY(sqliteValue(sample(), "SELECT COUNT(*) FROM docs WHERE CONTENT LIKE '%\\n%'").toInt() >
            0);
    // No column that a dialog fills is left NULL.
    QCOMPARE(sqliteValue(sample(),
                         "SELECT COUNT(*) FROM docs WHERE BLANK_SER || BLANK_NO || FNAME || LNAME "
                         "|| MNAME || DOC_TYPE || DOC_GROUP || TEMPLATE_NAME IS NULL"),
             QString("0"));
}

void tst_ZelvoraDb::sampleNamesAreConsistent()
{
    const QStringList people =
        sqlite(sample(), "SELECT LNAME || ' ' || FNAME || ' ' || MNAME FROM docs WHERE TEMPLATE = "
                         "0");
    QCOMPARE(people.size(), 200);
    int women = 0;
    for (const QString& person : people) {
        const QStringList names = person.split(' ');
        QCOMPARE(names.size(), 3);
        const bool woman = names[2].endsWith("на");
        QVERIFY2(woman || names[2].endsWith("ич"), qPrintable(person));
        const QChar last = names[1].back();
        QVERIFY2((last == QChar(0x0430) || last == QChar(0x044f)) == woman ||
                     names[1] == "Никита" || names[1] == "Илья",
                 qPrintable(person));
        const bool feminineSurname =
            names[0].endsWith("ва") || names[0].endsWith("на") || names[0].endsWith("ая");
        const bool indeclinable = names[0].endsWith("ко") || names[0].endsWith("ых");
        QVERIFY2(indeclinable || feminineSurname == woman, qPrintable(person));
        women += woman ? 1 : 0;
    }
    QVERIFY(women > 60 && women < 140);
}

void tst_ZelvoraDb::sampleIsStoredAsTheDialogsStoreIt()
{
    QCOMPARE(sqlite(sample(), "SELECT DISTINCT typeof(CONTENT) FROM docs"), QStringList{"text"});
    QCOMPARE(sqlite(sample(), "SELECT DISTINCT typeof(CONTENT) FROM blanks"), QStringList{"blob"});
    QCOMPARE(sqlite(sample(), "SELECT DISTINCT typeof(FIELDS) FROM forms"), QStringList{"blob"});
    QCOMPARE(sqlite(sample(), "SELECT DISTINCT typeof(FIELDS) FROM export"), QStringList{"blob"});
    QCOMPARE(sqlite(sample(), "SELECT typeof(BLANK_SER), typeof(BLANK_NO), typeof(DOC_TYPE), "
                              "typeof(DUPLICATE), typeof(TEMPLATE) FROM docs GROUP BY 1, 2, 3, 4, "
                              "5"),
             QStringList{"text|text|integer|integer|integer"});
    for (const QByteArray& text : jsonTexts(sample(), "docs", "CONTENT")) {
        QCOMPARE(text, QJsonDocument::fromJson(text).toJson());
    }
    for (const QByteArray& text : jsonTexts(sample(), "blanks", "CONTENT")) {
        QCOMPARE(text, QJsonDocument::fromJson(text).toJson(QJsonDocument::Compact));
    }
}

void tst_ZelvoraDb::sampleContentFollowsTheForms()
{
    for (const QString& form : sqlite(sample(), "SELECT ID FROM forms")) {
        const QByteArray fieldsText = jsonTexts(sample(), "forms", "FIELDS", "ID = " + form).at(0);
        const QJsonArray fields = QJsonDocument::fromJson(fieldsText)["fields"].toArray();
        for (const QByteArray& text : jsonTexts(sample(), "docs", "CONTENT", "DOC_TYPE = " + form))
        {
            const QJsonObject document = QJsonDocument::fromJson(text).object();
            QCOMPARE(document.size(), fields.size());
            for (const QJsonValue& field : fields) {
                const QJsonObject entry = document[field["tag"].toString()].toObject();
                const int type = field["type"].toInt();
                QStringList keys = {"name", "type", "value"};
                if (type == 1) {
                    keys.prepend("list");
                } else if (type == 3) {
                    keys.prepend("format");
                } else if (type == 4) {
                    keys.prepend("columns");
                }
                QCOMPARE(entry.keys(), keys);
                QCOMPARE(entry["name"], field["name"]);
                QCOMPARE(entry["type"], field["type"]);
                QCOMPARE(entry["list"], field["list"]);
                QCOMPARE(entry["format"], field["format"]);
                QCOMPARE(entry["columns"], field["content"]);
                const QJsonValue value = entry["value"];
                QVERIFY(type == 4 ? value.isArray()
                                  : (type == 2 ? value.isDouble() : value.isString()));
                if (type == 3) {
                    QVERIFY(
                        QDate::fromString(value.toString(), entry["format"].toString()).isValid());
                }
                const QJsonArray rows = value.toArray();
                for (const QJsonValue& row : rows) {
                    QCOMPARE(row.toArray().size(), entry["columns"].toArray().size());
                    const QJsonArray cells = row.toArray();
                    for (const QJsonValue& cell : cells) {
                        QVERIFY(cell.isString());
                    }
                }
            }
        }
    }
}

// A combo shows only what its list offers, a counter in a table has a range, a date its format:
// anything else would be lost when the document is edited.
void tst_ZelvoraDb::sampleValuesSurviveTheEditors()
{
    const QString lost = sqliteValue(
        sample(),
        "SELECT json_group_array(docs.ID || ' ' || e.key) FROM docs, json_each(CONTENT) AS e WHERE "
        "json_extract(e.value, '$.type') = 1 AND json_extract(e.value, '$.value') <> '' AND "
        "json_extract(e.value, '$.value') NOT IN (SELECT i.value FROM lists, "
        "json_each(CAST(LIST_ITEMS AS TEXT), '$.items') AS i WHERE lists.ID = "
        "json_extract(e.value, '$.list'))");
    QCOMPARE(lost, QString("[]"));

    const QString cells = "SELECT json_extract(c.value, '$.typeID'), json_extract(c.value, "
                          "'$.listID'), json_extract(r.value, '$[' || c.key || ']') AS cell FROM "
                          "docs, json_each(CONTENT) AS e, json_each(e.value, '$.value') AS r, "
                          "json_each(e.value, '$.columns') AS c WHERE json_extract(e.value, "
                          "'$.type') = 4 GROUP BY 1, 2, 3";
    int seen = 0;
    for (const QString& row : sqlite(sample(), cells)) {
        const QStringList parts = row.split('|');
        const QString& cell = parts[2];
        seen++;
        if (parts[0] == "1") {
            const QStringList items =
                sqlite(sample(), "SELECT value FROM lists, json_each(CAST(LIST_ITEMS AS TEXT), "
                                 "'$.items') WHERE lists.ID = " +
                                     parts[1]);
            QVERIFY2(items.contains(cell), qPrintable(row));
        } else if (parts[0] == "2") {
            QVERIFY2(cell.toInt() > 0 && cell.toInt() <= 99999, qPrintable(row));
        } else if (parts[0] == "3") {
            QVERIFY2(QDate::fromString(cell, "dd.MM.yyyy").isValid(), qPrintable(row));
        } else {
            QVERIFY2(!cell.isEmpty(), qPrintable(row));
        }
    }
    QVERIFY(seen > 50);
}

void tst_ZelvoraDb::sampleUsesEveryTypeOfField()
{
    const QString fields = "forms, json_each(CAST(FIELDS AS TEXT), '$.fields') AS f";
    QCOMPARE(sqlite(sample(), "SELECT DISTINCT json_extract(f.value, '$.type') FROM " + fields +
                                  " ORDER BY 1"),
             (QStringList{"0", "1", "2", "3", "4", "5"}));
    const QString columns = fields + ", json_each(f.value, '$.content') AS c";
    QCOMPARE(sqlite(sample(), "SELECT DISTINCT json_extract(c.value, '$.typeID') FROM " + columns +
                                  " ORDER BY 1"),
             (QStringList{"0", "1", "2", "3"}));
    QVERIFY(!sqlite(sample(), "SELECT 1 FROM " + columns +
                                  " WHERE json_extract(c.value, '$.edtColumnW') NOT NULL")
                 .isEmpty());
    // The form that the updater's migration knows waits for the fields that it appends.
    QCOMPARE(sqliteValue(sample(), "SELECT FORM_FULLNAME FROM forms WHERE ID = 28"),
             QString("Удостоверение о повышении квалификации"));
    QVERIFY(sqliteValue(sample(), "SELECT COUNT(*) FROM docs WHERE DOC_TYPE = 28").toInt() > 10);
}

void tst_ZelvoraDb::sampleHasTwoDocumentTemplates()
{
    QCOMPARE(sqlite(sample(), "SELECT TEMPLATE, DOC_TYPE, TEMPLATE_NAME FROM docs WHERE TEMPLATE > "
                              "0 ORDER BY ID"),
             (QStringList{"1|1|Аттестат, 9 класс", "1|2|Диплом, программисты"}));
}

void tst_ZelvoraDb::sampleBlanksCoverEveryPaper()
{
    QCOMPARE(sqlite(sample(), "SELECT DISTINCT PAPER_FORMAT FROM blanks ORDER BY 1"),
             (QStringList{"0", "1", "42"}));
    QCOMPARE(sqlite(sample(), "SELECT DISTINCT PAPER_ORIENTATION FROM blanks ORDER BY 1"),
             (QStringList{"0", "1"}));
    // The page's size is the one that its format and orientation name.
    const QStringList sizes = sqlite(sample(), "SELECT DISTINCT PAPER_FORMAT, PAPER_ORIENTATION, "
                                               "SIZE_WIDTH, SIZE_HEIGHT FROM blanks ORDER BY 1, 2");
    QCOMPARE(sizes, (QStringList{"0|0|297|210", "0|1|210|297", "1|0|210|148", "1|1|148|210",
                                 "42|0|297|210"}));
    QVERIFY(!sqlite(sample(), "SELECT 1 FROM blanks WHERE OFFSET_X > 0").isEmpty());
    QVERIFY(!sqlite(sample(), "SELECT 1 FROM blanks WHERE OFFSET_X < 0").isEmpty());
    QVERIFY(!sqlite(sample(), "SELECT 1 FROM blanks WHERE OFFSET_Y > 0").isEmpty());
    QVERIFY(!sqlite(sample(), "SELECT 1 FROM blanks WHERE OFFSET_Y < 0").isEmpty());
    QCOMPARE(sqlite(sample(), "SELECT DISTINCT PAGES, FONT FROM blanks"),
             QStringList{"1|Times New Roman"});
}

void tst_ZelvoraDb::sampleBlanksUseEveryKindOfItem()
{
    const QString items = "blanks, json_each(CAST(CONTENT AS TEXT), '$.fields')";
    QCOMPARE(sqlite(sample(),
                    "SELECT DISTINCT json_extract(value, '$.type') FROM " + items + " ORDER BY 1"),
             (QStringList{"0", "1", "2"}));
    QVERIFY(
        !sqlite(sample(), "SELECT 1 FROM " + items + " WHERE json_extract(value, '$.f_cut') = 1")
             .isEmpty());
    // A table is split over two items of one blank.
    QVERIFY(
        !sqlite(sample(), "SELECT 1 FROM " + items + " WHERE json_extract(value, '$.row_from') > 1")
             .isEmpty());
    // Every frame lies on its page.
    QCOMPARE(sqlite(sample(),
                    "SELECT NAME, json_extract(value, '$.value') FROM " + items +
                        " WHERE json_extract(value, '$.pos_x') < 0 OR json_extract(value, "
                        "'$.pos_y') < 0 OR json_extract(value, '$.pos_x') + json_extract(value, "
                        "'$.size_w') > CAST(SIZE_WIDTH * 3.7795 AS INTEGER) OR json_extract(value, "
                        "'$.pos_y') + json_extract(value, '$.size_h') > CAST(SIZE_HEIGHT * 3.7795 "
                        "AS INTEGER)"),
             QStringList());
    // A table item names a table of its form.
    QCOMPARE(sqlite(sample(),
                    "SELECT NAME FROM " + items +
                        " WHERE json_extract(value, '$.type') = 2 AND NOT EXISTS (SELECT 1 FROM "
                        "forms, json_each(CAST(FIELDS AS TEXT), '$.fields') AS f WHERE forms.ID = "
                        "FORM_ID AND json_extract(f.value, '$.type') = 4 AND json_extract(f.value, "
                        "'$.tag') = json_extract(json_each.value, '$.value'))"),
             QStringList());
}

void tst_ZelvoraDb::sampleBackgroundsFitTheirPages()
{
    const QStringList rows =
        sqlite(sample(), "SELECT BACKGROUND_IMG, SIZE_WIDTH, SIZE_HEIGHT FROM blanks");
    for (const QString& row : rows) {
        const QStringList cells = row.split('|');
        const QImage image(sample(cells[0]));
        QVERIFY2(!image.isNull(), qPrintable(cells[0]));
        const double dotsPerMillimetre = 192 / 25.4;
        QVERIFY(qAbs(image.width() - cells[1].toInt() * dotsPerMillimetre) < 3);
        QVERIFY(qAbs(image.height() - cells[2].toInt() * dotsPerMillimetre) < 3);
        // There is something on it, from the frame to the middle.
        QSet<QRgb> colours;
        for (int x = 0; x < image.width(); x += 3) {
            colours << image.pixel(x, image.height() / 2);
        }
        QVERIFY(colours.size() > 50);
    }
}

void tst_ZelvoraDb::sampleHasAnExchangeTemplate()
{
    QCOMPARE(sqlite(sample(), "SELECT NAME, TYPE, FROM_ROW, TO_ROW, DATE_FORMAT FROM export"),
             QStringList{"Реестр выданных документов|0|3|14|dd.MM.yyyy"});
    const QString workbook = sqliteValue(sample(), "SELECT TEMPLATE FROM export");
    QCOMPARE(workbook, sample("templates/registry.xlsx"));

    const QString script = "import json, openpyxl, sys\n"
                           "sheet = openpyxl.load_workbook(sys.argv[1]).active\n"
                           "rows = [[cell.value for cell in row] for row in sheet.iter_rows()]\n"
                           "print(json.dumps({'title': rows[0][0], 'heading': rows[1], "
                           "'bold': sheet['A2'].font.b, 'rows': [row for row in rows[2:] if "
                           "any(row)], 'merged': [str(m) for m in sheet.merged_cells.ranges], "
                           "'border': sheet['B5'].border.left.style}))";
    const QStringList heading = {"Фамилия",
                                 "Имя",
                                 "Отчество",
                                 "Дата рождения",
                                 "Вид документа",
                                 "Серия",
                                 "Номер",
                                 "Класс, группа",
                                 "Дата выдачи",
                                 "Регистрационный номер",
                                 "Оригинал или дубликат"};
    for (const char* file : {"templates/registry.xlsx", "imports/graduates.xlsx"}) {
        const ProcessResult result = runPython(script, {sample(file)});
        QVERIFY2(result.exitCode == 0, result.err.constData());
        const QJsonObject sheet = QJsonDocument::fromJson(result.out).object();
        QCOMPARE(sheet["title"].toString(), QString("Реестр выданных документов об образовании"));
        QCOMPARE(sheet["heading"].toArray(), QJsonArray::fromStringList(heading));
        QVERIFY(sheet["bold"].toBool());
        QCOMPARE(sheet["merged"].toArray(), QJsonArray{"A1:K1"});
        QCOMPARE(sheet["border"].toString(), QString("thin"));
        const QJsonArray rows = sheet["rows"].toArray();
        const bool isTemplate = QString(file).startsWith("templates");
        QCOMPARE(rows.size(), isTemplate ? 0 : 12);
        for (const QJsonValue& row : rows) {
            QVERIFY(!row.toArray().contains(QJsonValue())); // an empty cell would end an import
        }
    }
    // The mark of a duplicate is read first, so that an empty cell never breaks a row's insert.
    const QJsonArray items =
        QJsonDocument::fromJson(jsonTexts(sample(), "export", "FIELDS").at(0))["items"].toArray();
    QCOMPARE(items.size(), heading.size());
    QCOMPARE(items[0].toObject(), (QJsonObject{{"col", "K"}, {"tag", "#DUPLICATE"}}));
}

void tst_ZelvoraDb::sampleValuesHoldNoApostrophe()
{
    const QByteArray dump = runProcess("sqlite3", {sample(), ".mode csv", "SELECT * FROM docs",
                                                   "SELECT * FROM blanks", "SELECT * FROM lists",
                                                   "SELECT * FROM forms", "SELECT * FROM export"})
                                .out;
    QVERIFY(dump.size() > 100000);
    QCOMPARE(dump.count('\''), 0);
}

void tst_ZelvoraDb::sampleIsTheSameEveryTime()
{
    const ProcessResult result = run({"sample", m_dir->path()});
    QVERIFY2(result.exitCode == 0, result.err.constData());
    QByteArray first = runProcess("sqlite3", {sample(), ".dump"}).out;
    QByteArray second = runProcess("sqlite3", {path("docs.db"), ".dump"}).out;
    first.replace(m_sample.path().toUtf8(), "DIR");
    second.replace(m_dir->path().toUtf8(), "DIR");
    QVERIFY(first == second);
}

void tst_ZelvoraDb::sampleWritesNothingElsewhere()
{
    const Environment data("XDG_DATA_HOME", path("data").toUtf8());
    const Environment home("HOME", path("home").toUtf8());
    const QString target = path("target");
    QCOMPARE(run({"sample", target}).exitCode, 0);
    QStringList outside = QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    QCOMPARE(outside, QStringList{"target"});
}

void tst_ZelvoraDb::sampleNeverOverwrites()
{
    QVERIFY(writeFile(path("docs.db"), "важное"));
    const ProcessResult result = run({"sample", m_dir->path()});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.contains("exists already"));
    QCOMPARE(content(path("docs.db")), QByteArray("важное"));
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{"docs.db"});
}

void tst_ZelvoraDb::sampleKeepsFilesThatAreThere()
{
    QVERIFY(QDir(m_dir->path()).mkpath("blanks"));
    QVERIFY(writeFile(path("blanks/diploma-a5.png"), "скан"));
    QCOMPARE(run({"sample", m_dir->path()}).exitCode, 0);
    QCOMPARE(content(path("blanks/diploma-a5.png")), QByteArray("скан"));
    QVERIFY(QFile::exists(path("blanks/certificate-a4.png")));
    QVERIFY(QFile::exists(path("docs.db")));
}

void tst_ZelvoraDb::sampleReportsAnUnwritablePlace()
{
    QVERIFY(writeFile(path("file"), "x"));
    const ProcessResult result = run({"sample", path("file/below")});
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.err.contains("zelvora-db: cannot make the directory "), result.err.constData());
}

void tst_ZelvoraDb::sampleReportsAFileThatCannotBeWritten()
{
    QVERIFY(writeFile(path("data"), "x")); // where a folder is to be
    const ProcessResult result = run({"sample", m_dir->path()});
    QCOMPARE(result.exitCode, 2);
    const QString told = QString::fromUtf8(result.err);
    QVERIFY2(told.contains("zelvora-db: cannot write the file " +
                           path("data/Zelvora/orgData.json") + " ("),
             qPrintable(told));
    QVERIFY(!QFile::exists(path("docs.db"))); // which would say that the sample is complete
}

void tst_ZelvoraDb::checkPassesWhatTheProgramMade()
{
    const QByteArray before = hashOf(sample());
    const ProcessResult result = run({"check", sample()});
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.out.startsWith("Nothing found: "), result.out.constData());
    QCOMPARE(hashOf(sample()), before);

    QCOMPARE(run({"create", path("empty.db")}).exitCode, 0);
    QCOMPARE(run({"check", path("empty.db")}).exitCode, 0);
}

void tst_ZelvoraDb::checkFindsDamagedTables_data()
{
    QTest::addColumn<QString>("damage");
    QTest::addColumn<QString>("finding");
    QTest::newRow("missing table") << "DROP TABLE export"
                                   << "export: the table is missing";
    QTest::newRow("missing column") << "ALTER TABLE blanks DROP COLUMN FONT"
                                    << "blanks: the column FONT is missing";
    QTest::newRow("misspelt column") << "ALTER TABLE lists RENAME COLUMN LIST_NAME TO list_name"
                                     << "lists: the column LIST_NAME is missing";
    QTest::newRow("order of columns")
        << "ALTER TABLE forms RENAME TO old; CREATE TABLE forms (ID INTEGER PRIMARY KEY, "
           "FORM_FULLNAME TEXT, FORM_NAME TEXT, FIELDS TEXT); INSERT INTO forms SELECT ID, "
           "FORM_FULLNAME, FORM_NAME, FIELDS FROM old"
        << "forms: the columns are out of order: ID, FORM_FULLNAME, FORM_NAME, FIELDS; expected: "
           "ID, FORM_NAME, FORM_FULLNAME, FIELDS";
    QTest::newRow("type that loses zeros")
        << "ALTER TABLE docs RENAME COLUMN BLANK_NO TO OLD; ALTER TABLE docs ADD BLANK_NO INTEGER"
        << "docs.BLANK_NO: the type is INTEGER instead of TEXT";
    QTest::newRow("text for a number")
        << "ALTER TABLE blanks DROP COLUMN OFFSET_Y; ALTER TABLE blanks ADD OFFSET_Y TEXT"
        << "blanks.OFFSET_Y: the type is TEXT instead of INTEGER";
    QTest::newRow("no key") << "ALTER TABLE lists RENAME TO old; CREATE TABLE lists (ID INTEGER, "
                               "LIST_NAME TEXT, LIST_ITEMS TEXT); INSERT INTO lists SELECT * FROM "
                               "old"
                            << "lists.ID: this is no integer primary key";
    // Neither of them is ever read: the check would not end, or take all memory.
    const auto inPlaceOf = [](const QString& table, const QString& what) {
        return QString("ALTER TABLE %1 RENAME TO old_%1; CREATE %2").arg(table, what);
    };
    const QString endless = "VIEW %1 AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 "
                            "FROM n) SELECT i AS ID, n.*, old_%1.* FROM n, old_%1";
    const QString computed =
        ": this is no table of stored rows, but computations in its place; they were not run";
    for (const QString table : {"docs", "forms", "lists", "blanks", "export", "zvsys"}) {
        QTest::newRow(qPrintable("endless view of " + table))
            << inPlaceOf(table, endless.arg(table)) << table + computed;
    }
    QTest::newRow("view under another spelling")
        << inPlaceOf("lists", endless.arg("lists")).replace("VIEW lists", "VIEW Lists")
        << "lists" + computed;
    QTest::newRow("huge values of a view")
        << inPlaceOf("docs", "VIEW docs AS SELECT 1 AS ID, 1 AS DOC_TYPE, zeroblob(900000000) AS "
                             "CONTENT")
        << "docs" + computed;
    QTest::newRow("huge values of a computed column")
        << inPlaceOf("docs", "TABLE docs (ID INTEGER PRIMARY KEY, DOC_TYPE INTEGER, CONTENT TEXT "
                             "AS (zeroblob(900000000))); INSERT INTO docs (ID) VALUES (1)")
        << "docs" + computed;
    QTest::newRow("virtual table")
        << inPlaceOf("docs", "VIRTUAL TABLE docs USING fts5 (CONTENT)") << "docs" + computed;
    QTest::newRow("key that is a text")
        << "ALTER TABLE lists RENAME TO old; CREATE TABLE lists (ID TEXT PRIMARY KEY, LIST_NAME "
           "TEXT, LIST_ITEMS TEXT); INSERT INTO lists SELECT * FROM old"
        << "lists.ID: this is no integer primary key";
    QTest::newRow("two versions") << "INSERT INTO zvsys VALUES ('1.1.0.0')"
                                  << "zvsys: 2 rows where one is expected";
}

void tst_ZelvoraDb::checkFindsDamagedTables()
{
    checkFindsTheDamage();
}

void tst_ZelvoraDb::checkFindsDamagedDocuments_data()
{
    QTest::addColumn<QString>("damage");
    QTest::addColumn<QString>("finding");
    QTest::newRow("document: no JSON") << "UPDATE docs SET CONTENT = '{\"#A\": ' WHERE ID = 5"
                                       << "docs ID 5, CONTENT: this is no JSON: ";
    QTest::newRow("document: NULL") << "UPDATE docs SET CONTENT = NULL WHERE ID = 5"
                                    << "docs ID 5, CONTENT: it is NULL";
    QTest::newRow("document: array") << "UPDATE docs SET CONTENT = '[]' WHERE ID = 5"
                                     << "docs ID 5, CONTENT: this is no JSON object";
    QTest::newRow("document: entry is text")
        << "UPDATE docs SET CONTENT = '{\"#A\": \"x\"}' WHERE ID = 5"
        << "docs ID 5, CONTENT, #A: this is no object";
    QTest::newRow("document: unknown type")
        << "UPDATE docs SET CONTENT = '{\"#A\": {\"type\": 9}}' WHERE ID = 5"
        << "docs ID 5, CONTENT, #A: unknown type: 9";
    QTest::newRow("document: list gone")
        << "UPDATE docs SET CONTENT = '{\"#A\": {\"type\": 1, \"list\": 77}}' WHERE ID = 5"
        << "docs ID 5, CONTENT, #A: there is no list with the ID 77";
    QTest::newRow("document: column's list gone")
        << "UPDATE docs SET CONTENT = '{\"#A\": {\"type\": 4, \"columns\": [{\"typeID\": \"1\", "
           "\"listID\": \"77\"}]}}' WHERE ID = 5"
        << "docs ID 5, CONTENT, #A, columns[0]: there is no list with the ID 77";
    QTest::newRow("document: columns no array")
        << "UPDATE docs SET CONTENT = '{\"#A\": {\"type\": 4, \"columns\": {}}}' WHERE ID = 5"
        << "docs ID 5, CONTENT, #A: columns is no array";
    QTest::newRow("document: form gone") << "UPDATE docs SET DOC_TYPE = 9 WHERE ID = 7"
                                         << "docs ID 7, DOC_TYPE: there is no form with the ID 9";
    QTest::newRow("document: no form") << "UPDATE docs SET DOC_TYPE = NULL WHERE ID = 7"
                                       << "docs ID 7, DOC_TYPE: there is no form with the ID NULL";
    QTest::newRow("template: form gone") << "UPDATE docs SET DOC_TYPE = 9 WHERE TEMPLATE = 1"
                                         << "docs ID 201, DOC_TYPE: there is no form with the ID 9";
}

void tst_ZelvoraDb::checkFindsDamagedDocuments()
{
    checkFindsTheDamage();
}

void tst_ZelvoraDb::checkFindsDamagedForms_data()
{
    QTest::addColumn<QString>("damage");
    QTest::addColumn<QString>("finding");
    QTest::newRow("form: no JSON") << "UPDATE forms SET FIELDS = '' WHERE ID = 1"
                                   << "forms ID 1, FIELDS: this is no JSON: ";
    QTest::newRow("form: no array") << "UPDATE forms SET FIELDS = '{\"items\": []}' WHERE ID = 1"
                                    << "forms ID 1, FIELDS: the array fields is missing";
    QTest::newRow("form: field is text")
        << "UPDATE forms SET FIELDS = '{\"fields\": [\"#A\"]}' WHERE ID = 1"
        << "forms ID 1, FIELDS, fields[0]: this is no object";
    QTest::newRow("form: no tag")
        << "UPDATE forms SET FIELDS = '{\"fields\": [{\"name\": \"A\"}]}' WHERE ID = 1"
        << "forms ID 1, FIELDS, fields[0]: there is no tag";
    QTest::newRow("form: type as text")
        << "UPDATE forms SET FIELDS = '{\"fields\": [{\"tag\": \"#A\", \"type\": \"2\"}]}' WHERE "
           "ID = 1"
        << "forms ID 1, FIELDS, fields[0] #A: unknown type: 2";
    QTest::newRow("form: list gone") << "DELETE FROM lists WHERE LIST_NAME = 'Квалификации'"
                                     << "forms ID 2, FIELDS, fields[2] #QUALIFICATION: there is no "
                                        "list with the ID 13";
    QTest::newRow("form: column's list gone")
        << "DELETE FROM lists WHERE LIST_NAME = 'Отметки'"
        << "forms ID 1, FIELDS, fields[5] #SUBJECTS, content[1]: there is no list with the ID 9";
    QTest::newRow("form: no columns")
        << "UPDATE forms SET FIELDS = '{\"fields\": [{\"tag\": \"#A\", \"type\": 4}]}' WHERE ID = "
           "1"
        << "forms ID 1, FIELDS, fields[0] #A: content is no array";
    QTest::newRow("form: typeID beyond the known")
        << "UPDATE forms SET FIELDS = '{\"fields\": [{\"tag\": \"#A\", \"type\": 4, \"content\": "
           "[{\"typeID\": \"9\"}]}]}' WHERE ID = 1"
        << "forms ID 1, FIELDS, fields[0] #A, content[0]: unknown typeID: 9";
    QTest::newRow("form: typeID as number")
        << "UPDATE forms SET FIELDS = '{\"fields\": [{\"tag\": \"#A\", \"type\": 4, \"content\": "
           "[{\"typeID\": 2}]}]}' WHERE ID = 1"
        << "forms ID 1, FIELDS, fields[0] #A, content[0]: unknown typeID: 2";
}

void tst_ZelvoraDb::checkFindsDamagedForms()
{
    checkFindsTheDamage();
}

void tst_ZelvoraDb::checkFindsDamagedLayouts_data()
{
    QTest::addColumn<QString>("damage");
    QTest::addColumn<QString>("finding");
    QTest::newRow("list: no JSON") << "UPDATE lists SET LIST_ITEMS = 'да, нет' WHERE ID = 2"
                                   << "lists ID 2, LIST_ITEMS: this is no JSON: ";
    QTest::newRow("list: no array") << "UPDATE lists SET LIST_ITEMS = '{}' WHERE ID = 2"
                                    << "lists ID 2, LIST_ITEMS: the array items is missing";
    QTest::newRow("list: number")
        << "UPDATE lists SET LIST_ITEMS = '{\"items\": [\"да\", 5]}' WHERE ID = 2"
        << "lists ID 2, LIST_ITEMS, items[1]: this is no string";

    QTest::newRow("blank: no JSON") << "UPDATE blanks SET CONTENT = x'00ff' WHERE ID = 3"
                                    << "blanks ID 3, CONTENT: this is no JSON: ";
    QTest::newRow("blank: no array") << "UPDATE blanks SET CONTENT = '{\"fields\": 5}' WHERE ID = 3"
                                     << "blanks ID 3, CONTENT: the array fields is missing";
    QTest::newRow("blank: item is text")
        << "UPDATE blanks SET CONTENT = '{\"fields\": [1]}' WHERE ID = 3"
        << "blanks ID 3, CONTENT, fields[0]: this is no object";
    for (const char* column : {"SIZE_WIDTH", "SIZE_HEIGHT"}) {
        for (const char* size : {"-1", "501", "2147483648", "'wide'", "1e300"}) {
            const QString shown = QString(size).remove('\'').replace("1e300", "1e+300");
            QTest::addRow("blank: %s %s", column, size)
                << QString("UPDATE blanks SET %1 = %2 WHERE ID = 3").arg(column, size)
                << QString("blanks ID 3, %1: no size from 0 to 500 mm: %2").arg(column, shown);
        }
    }
    QTest::newRow("blank: unknown paper")
        << "UPDATE blanks SET PAPER_FORMAT = 77 WHERE ID = 3"
        << "blanks ID 3, PAPER_FORMAT: there is no paper format with the code 77";
    QTest::newRow("blank: form gone") << "DELETE FROM forms WHERE ID = 28"
                                      << "blanks ID 4, FORM_ID: there is no form with the ID 28";

    QTest::newRow("exchange: no JSON") << "UPDATE export SET FIELDS = 'A: #LNAME'"
                                       << "export ID 1, FIELDS: this is no JSON: ";
    QTest::newRow("exchange: item without a column")
        << "UPDATE export SET FIELDS = '{\"items\": [{\"tag\": \"#A\"}]}'"
        << "export ID 1, FIELDS, items[0]: the strings col and tag are missing";
    QTest::newRow("exchange: item without a tag")
        << "UPDATE export SET FIELDS = '{\"items\": [{\"col\": \"A\"}]}'"
        << "export ID 1, FIELDS, items[0]: the strings col and tag are missing";
}

// A status may be all that a script reads.
void tst_ZelvoraDb::fullOutputIsAFailure()
{
    const QString program = QString(ZELVORA_BIN_DIR) + "/tools/zelvora-db";
    const ProcessResult result =
        runPython("import subprocess, sys\n"
                  "full = open('/dev/full', 'w')\n"
                  "sys.exit(subprocess.call([sys.argv[1], '--help'], stdout=full))\n",
                  {program});
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(QString::fromUtf8(result.err),
             QString("zelvora-db: can't write to the standard output\n"));
}

void tst_ZelvoraDb::checkFindsDamagedLayouts()
{
    checkFindsTheDamage();
}

void tst_ZelvoraDb::checkFindsTheDamage()
{
    QFETCH(QString, damage);
    QFETCH(QString, finding);
    const QString file = path("copy.db");
    QVERIFY(QFile::copy(sample(), file));
    const ProcessResult damaged = runProcess("sqlite3", {file, damage});
    QVERIFY2(damaged.exitCode == 0 && damaged.err.isEmpty(), damaged.err.constData());
    const QByteArray before = hashOf(file);

    const ProcessResult result = run({"check", file});
    QCOMPARE(result.exitCode, 1);
    QStringList lines = QString::fromUtf8(result.out).split('\n', Qt::SkipEmptyParts);
    const bool found = std::any_of(lines.begin(), lines.end(), [&](const QString& line) {
        return finding.endsWith(": ") ? line.startsWith(finding) : line == finding;
    });
    QVERIFY2(found, result.out.constData());
    QCOMPARE(lines.last(), QString("Findings: %1").arg(lines.size() - 1));
    QCOMPARE(hashOf(file), before);
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), QStringList{"copy.db"});
}

void tst_ZelvoraDb::checkLooksForFilesBesideTheDatabase()
{
    QVERIFY(QFile::copy(sample(), path("docs.db")));
    ProcessResult result = run({"check", path("docs.db")});
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.out.contains("blanks ID 1, BACKGROUND_IMG: there is no file " +
                                 path("blanks/certificate-a4.png").toUtf8()),
             result.out.constData());
    // The workbook is named by its full path, and stands there.
    QVERIFY(!result.out.contains("export ID 1, TEMPLATE"));

    // A background may be named as on Windows.
    QVERIFY(QDir(path("")).mkpath("blanks"));
    QVERIFY(writeFile(path("blanks/a.png"), "скан"));
    sqlite(path("docs.db"), "UPDATE blanks SET BACKGROUND_IMG = 'Blanks\\A.PNG'");
    result = run({"check", path("docs.db")});
    QVERIFY2(!result.out.contains("BACKGROUND_IMG"), result.out.constData());

    sqlite(path("docs.db"), "UPDATE blanks SET BACKGROUND_IMG = NULL; UPDATE export SET TEMPLATE = "
                            "'/no/such.xlsx'");
    result = run({"check", path("docs.db")});
    QCOMPARE(result.out, QByteArray("export ID 1, TEMPLATE: there is no file /no/such.xlsx\n"
                                    "Findings: 1\n"));

    // A picture outside of the directory may be anyone's.
    const QTemporaryDir outside;
    QVERIFY(QFile::copy(sample("blanks/diploma-a5.png"), outside.filePath("a.png")));
    QVERIFY(QFile::link(outside.filePath("a.png"), path("linked.png")));
    sqlite(path("docs.db"), "UPDATE export SET TEMPLATE = ''; UPDATE blanks SET BACKGROUND_IMG = "
                            "'linked.png' WHERE ID = 1");
    result = run({"check", path("docs.db")});
    QCOMPARE(result.out, "blanks ID 1, BACKGROUND_IMG: the file lies outside the application "
                         "directory: " +
                             path("linked.png").toUtf8() + "\nFindings: 1\n");

    // An archive has no neighbours.
    QVERIFY(QFile::rename(path("docs.db"), path("archive.zlv")));
    QCOMPARE(run({"check", path("archive.zlv")}).exitCode, 0);
}

void tst_ZelvoraDb::checkAcceptsWhatTheProgramToo_data()
{
    QTest::addColumn<QString>("change");
    QTest::newRow("no version yet") << "DROP TABLE zvsys";
    QTest::newRow("no version row") << "DELETE FROM zvsys";
    QTest::newRow("new form") << "INSERT INTO forms (FORM_NAME, FIELDS) VALUES ('Новая', '{\"fields"
                                 "\":[]}')";
    QTest::newRow("blank never edited")
        << "INSERT INTO blanks (NAME, FORM_ID, BACKGROUND_IMG) VALUES ('', 1, '')";
    QTest::newRow("sizes at the bounds")
        << "UPDATE blanks SET SIZE_WIDTH = 0, SIZE_HEIGHT = 500 WHERE ID = 3";
    QTest::newRow("page without items") << "UPDATE blanks SET CONTENT = '{}' WHERE ID = 3";
    QTest::newRow("page with something else")
        << "UPDATE blanks SET CONTENT = x'7b226b657074223a317d' WHERE ID = 3"; // {"kept":1}
    QTest::newRow("imported table")
        << "UPDATE docs SET CONTENT = '{\"#A\": {\"type\": 4, \"name\": "
           "\"A\", \"value\": \"x\"}}' WHERE ID = 1";
    QTest::newRow("further column") << "ALTER TABLE docs ADD REMARK TEXT";
    QTest::newRow("columns of other types of text")
        << "ALTER TABLE docs ADD A VARCHAR(9); ALTER TABLE lists RENAME TO old; CREATE TABLE lists "
           "(ID INTEGER PRIMARY KEY, LIST_NAME VARCHAR(20), LIST_ITEMS CLOB); INSERT INTO lists "
           "SELECT * FROM old; ALTER TABLE zvsys RENAME TO older; CREATE TABLE zvsys (DB_VERSION "
           "BLOB)";
    QTest::newRow("column without a type")
        << "ALTER TABLE zvsys RENAME TO old; CREATE TABLE zvsys (DB_VERSION)";
    QTest::newRow("columns of other types of numbers")
        << "ALTER TABLE blanks DROP COLUMN OFFSET_X; ALTER TABLE blanks ADD OFFSET_X REAL; ALTER "
           "TABLE blanks DROP COLUMN OFFSET_Y; ALTER TABLE blanks ADD OFFSET_Y NUMERIC";
    QTest::newRow("column without a list")
        << "UPDATE forms SET FIELDS = '{\"fields\": [{\"tag\": \"#A\", \"type\": 4, \"content\": "
           "[{\"name\": \"A\", \"typeID\": \"1\"}]}]}' WHERE ID = 1";
    QTest::newRow("list of an earlier type")
        << "UPDATE forms SET FIELDS = '{\"fields\": [{\"tag\": \"#A\", \"type\": 0, \"list\": 77, "
           "\"content\": 5}]}' WHERE ID = 1";
}

void tst_ZelvoraDb::checkAcceptsWhatTheProgramToo()
{
    QFETCH(QString, change);
    QVERIFY(QFile::copy(sample(), path("copy.db")));
    QCOMPARE(sqlite(path("copy.db"), change), QStringList());
    const ProcessResult result = run({"check", path("copy.db")});
    QVERIFY2(result.exitCode == 0, result.out.constData());
}

void tst_ZelvoraDb::checkNeedsADatabase_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("name");
    QTest::newRow("text") << QByteArray("Это не база данных.\n").repeated(100) << "docs.db";
    QTest::newRow("no file") << QByteArray() << "absent.db";
    QTest::newRow("a folder") << QByteArray() << "";
}

void tst_ZelvoraDb::checkNeedsADatabase()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, name);
    if (!bytes.isEmpty()) {
        QVERIFY(writeFile(path(name), bytes));
    }
    const QStringList before = QDir(m_dir->path()).entryList(QDir::Files);
    const ProcessResult result = run({"check", path(name)});
    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.err.startsWith("zelvora-db: "));
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(content(path(name)), bytes);
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files), before);
}

void tst_ZelvoraDb::checkFindsADamagedPage()
{
    QByteArray bytes = content(sample());
    QVERIFY(bytes.size() > 100000);
    bytes.replace(40000, 20000, QByteArray(20000, '\x7f'));
    QVERIFY(writeFile(path("copy.db"), bytes));
    const ProcessResult result = run({"check", path("copy.db")});
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.out.contains("SQLite: "), result.out.constData());
    QCOMPARE(content(path("copy.db")), bytes);
}

void tst_ZelvoraDb::checkSeesBeyondAnInterruptedChange()
{
    QVERIFY(QFile::copy(sample(), path("live.db")));
    QCOMPARE(makeInterruptedChange(path("live.db"), path("copy.db")), QByteArray());
    const QByteArray database = hashOf(path("copy.db"));
    const QByteArray journal = hashOf(path("copy.db-journal"));
    const QStringList files = QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden);
    const ProcessResult result = run({"check", path("copy.db")});
    QVERIFY2(result.exitCode == 0, result.out + result.err);
    QVERIFY2(result.out.startsWith("The last change of the database was interrupted; the next "
                                   "opening will undo it."),
             result.out);
    QVERIFY(result.out.contains("Nothing found: "));
    QCOMPARE(hashOf(path("copy.db")), database);
    QCOMPARE(hashOf(path("copy.db-journal")), journal);
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden), files);
    // That was indeed such a change: who opens the database undoes it.
    QCOMPARE(sqliteValue(path("copy.db"), "SELECT COUNT(*) FROM docs"), QString("202"));
    QVERIFY(hashOf(path("copy.db")) != database && !QFile::exists(path("copy.db-journal")));
    QVERIFY(!run({"check", path("copy.db")}).out.contains("interrupted"));
}

// What an interrupted change left is looked into in a copy.
void tst_ZelvoraDb::checkNeedsAPlaceForACopy()
{
    QVERIFY(QFile::copy(sample(), path("live.db")));
    QCOMPARE(makeInterruptedChange(path("live.db"), path("copy.db")), QByteArray());
    const Environment temporary("TMPDIR", path("live.db").toUtf8()); // which is no folder
    for (const QStringList& command :
         {QStringList{"check", path("copy.db")}, QStringList{"backup", path("copy.db"), path("")}})
    {
        const ProcessResult result = run(command);
        QCOMPARE(result.exitCode, 2);
        QCOMPARE(QString::fromUtf8(result.err),
                 "zelvora-db: the database cannot be copied with its journal: " + path("copy.db") +
                     "\n");
    }
}

void tst_ZelvoraDb::checkOfADatabaseInUse()
{
    QVERIFY(QFile::copy(sample(), path("copy.db")));
    // A change on its way that still lets others read.
    const ProcessResult result = runPython(
        "import sqlite3, subprocess, sys\n"
        "change = sqlite3.connect(sys.argv[1], isolation_level=None)\n"
        "change.execute('BEGIN IMMEDIATE')\n"
        "change.execute('DELETE FROM forms')\n"
        "sys.stdout.write(subprocess.run(sys.argv[2:], stdout=subprocess.PIPE).stdout.decode())\n",
        {path("copy.db"), QString(ZELVORA_BIN_DIR) + "/tools/zelvora-db", "check",
         path("copy.db")});
    QCOMPARE(QString::fromUtf8(result.out), "Nothing found: " + path("copy.db") + "\n");
}

void tst_ZelvoraDb::checkLeavesNoLog_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::newRow("closed") << QStringList{"copy.db"};
    QTest::newRow("killed, without its index") << QStringList{"copy.db", "copy.db-wal"};
    QTest::newRow("killed") << QStringList{"copy.db", "copy.db-shm", "copy.db-wal"};
}

// A database that keeps a log ahead of its writes, as another program may have left it. Mere
// reading makes a log and its index.
void tst_ZelvoraDb::checkLeavesNoLog()
{
    QFETCH(QStringList, files);
    QVERIFY(QFile::copy(sample(), path("live.db")));
    QVERIFY(QDir(m_dir->path()).mkdir("left"));
    const ProcessResult made = runPython(R"(
import shutil, sqlite3, sys
folder, *files = sys.argv[1:]
database = sqlite3.connect(folder + '/live.db', isolation_level=None)
database.execute('PRAGMA journal_mode = WAL')
if len(files) == 1:
    database.execute("UPDATE docs SET CONTENT = '[]' WHERE ID = 7")
    database.close()
else:  # the change stands in the log only
    database.execute('PRAGMA wal_checkpoint(TRUNCATE)')
    database.execute("UPDATE docs SET CONTENT = '[]' WHERE ID = 7")
for name in files:
    shutil.copy(folder + '/' + name.replace('copy', 'live'), folder + '/left/' + name)
)",
                                         QStringList{m_dir->path()} + files);
    QCOMPARE(made.err, QByteArray());
    const QString database = path("left/copy.db");
    const QByteArray before = hashOf(database) + hashOf(database + "-wal");
    QVERIFY(QDir(m_dir->path()).mkdir("archives"));
    for (const QStringList& command :
         {QStringList{"check", database}, QStringList{"backup", database, path("archives")}})
    {
        const ProcessResult result = run(command);
        const bool isCheck = command[0] == "check";
        QVERIFY2(result.exitCode == (isCheck ? 1 : 0), result.out + result.err);
        QVERIFY2(!isCheck || result.out.startsWith("docs ID 7, CONTENT: "), result.out);
        QCOMPARE(QDir(path("left")).entryList(QDir::Files | QDir::Hidden), files);
        QCOMPARE(hashOf(database) + hashOf(database + "-wal"), before);
    }
    const QStringList archives = QDir(path("archives")).entryList(QDir::Files | QDir::Hidden);
    QCOMPARE(archives.size(), 1);
    QCOMPARE(sqliteValue(path("archives/" + archives[0]), "SELECT CONTENT FROM docs WHERE ID = 7"),
             QString("[]"));
}

QTEST_GUILESS_MAIN(tst_ZelvoraDb)
#include "tst_ZelvoraDb.moc"
