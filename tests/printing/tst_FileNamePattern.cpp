#include <QtTest>

#include "app/TargetFile.h"
#include "printing/FileNamePattern.h"
#include "support/PrintFixture.h"

namespace {

PrintDocument document(const QVariant& id)
{
    PrintDocument document;
    document.id = id;
    return document;
}

} // namespace

/// Names of the files that a batch writes.
class tst_FileNamePattern : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void patterns_data();
    void patterns();
    void badPatterns_data();
    void badPatterns();
    void values_data();
    void values();
    void reservedNames_data();
    void reservedNames();
    void usualNames();
    void sameNames();
    void numbersMeetNames();
    void longNames_data();
    void longNames();
    void longNamesThatAreTheSame();
    void anotherSuffix();
    void fileOfTheLongestNameIsReplaced();
    void documentThatCannotBeRead();
    void filesOfAllNames();

private:
    QString nameOf(const QString& pattern, const QVariantMap& columns = {});

    std::unique_ptr<PrintFixture> m_app;
};

void tst_FileNamePattern::init()
{
    m_app = std::make_unique<PrintFixture>();
}

void tst_FileNamePattern::cleanup()
{
    m_app.reset();
}

QString tst_FileNamePattern::nameOf(const QString& pattern, const QVariantMap& columns)
{
    return FileNamePattern(pattern).nameFor(document(m_app->addDocument({}, columns))).value();
}

void tst_FileNamePattern::patterns_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("name");
    QTest::newRow("tags") << "{#LNAME}_{#BLANK_NO}.pdf"
                          << "Иванов_000123.pdf";
    QTest::newRow("no suffix") << "{#LNAME}"
                               << "Иванов.pdf";
    QTest::newRow("suffix in capitals") << "{#LNAME}.PDF"
                                        << "Иванов.pdf";
    QTest::newRow("another suffix") << "{#LNAME}.txt"
                                    << "Иванов.txt.pdf";
    QTest::newRow("several in braces") << "{#LNAME #FNAME #MNAME}"
                                       << "Иванов Иван Петрович.pdf";
    QTest::newRow("joined") << "{#BLANK_SER^#BLANK_NO}"
                            << "АБ000123.pdf";
    QTest::newRow("date in words") << "{#ISSUE_DATE}"
                                   << "25 июня 2021.pdf";
    QTest::newRow("literal tag") << "#LNAME {#LNAME}"
                                 << "#LNAME Иванов.pdf";
    QTest::newRow("unknown tag") << "{#NONE}-{#LNAME}"
                                 << "#NONE-Иванов.pdf";
    QTest::newRow("tail of one character") << "{#LNAME,}x"
                                           << "Ивановx.pdf";
    QTest::newRow("tail of two") << "{#LNAME,!}x"
                                 << "Иванов,!x.pdf";
    QTest::newRow("literal of one character") << "{5}a"
                                              << "a.pdf";
    QTest::newRow("nothing in braces") << "a{}b"
                                       << "ab.pdf";
    QTest::newRow("^ outside") << "a^b"
                               << "a^b.pdf";
    // No database keeps half a character, but a command line may hold one.
    QTest::newRow("half a character")
        << QString("a") + QChar(0xD83D) + "b" + QChar(0xDE00) << "a_b_.pdf";
    QTest::newRow("halves at the ends")
        << QString(QChar(0xDE00)) + "a" + QChar(0xD83D) << "_a_.pdf";
    QTest::newRow("folder") << "{#DOC_GROUP}/{#LNAME}"
                            << "9А_Иванов.pdf";
}

void tst_FileNamePattern::patterns()
{
    QFETCH(QString, pattern);
    QFETCH(QString, name);
    QVERIFY(FileNamePattern(pattern).isValid());
    QCOMPARE(nameOf(pattern), name);
}

void tst_FileNamePattern::badPatterns_data()
{
    QTest::addColumn<QString>("pattern");
    for (const char* pattern : {"{", "}", "{#LNAME", "#LNAME}", "{{#LNAME}}", "{a}}", "}{"}) {
        QTest::newRow(pattern) << pattern;
    }
}

void tst_FileNamePattern::badPatterns()
{
    QFETCH(QString, pattern);
    QVERIFY(!FileNamePattern(pattern).isValid());
}

void tst_FileNamePattern::values_data()
{
    QTest::addColumn<QString>("surname");
    QTest::addColumn<QString>("name");
    const auto row = [](const char* title, const QString& surname, const QString& name) {
        QTest::newRow(title) << surname << name;
    };
    row("separators", "../../etc/passwd", "_.._.._etc_passwd.pdf");
    row("backslashes", "C:\\x", "C__x.pdf");
    row("forbidden", "a*b?c\"d<e>f|g", "a_b_c_d_e_f_g.pdf");
    row("control", QString("a\tb\x7F") + QChar(0x85), "a_b__.pdf");
    row("line feed of a tag", "a\\nb", "a_b.pdf");
    row("line separator", QString("a") + QChar(0x2028) + "b", "a_b.pdf");
    row("paragraph separator", QString("a") + QChar(0x2029) + "b", "a_b.pdf");
    row("a whole one", QString::fromUcs4(U"a\U0001F600"), QString::fromUcs4(U"a\U0001F600.pdf"));
    row("turned letters", QString("a") + QChar(0x202E) + "fdp", "afdp.pdf");
    row("two characters for one", QString("и") + QChar(0x306), QString(QChar(0x439)) + ".pdf");
    row("dots and blanks at the end", "Иванов. . ", "Иванов.pdf");
    row("blanks before", "  Иванов", "Иванов.pdf");
    row("leading dot", ".profile", "_.profile.pdf");
    row("leading hyphen", "-rf", "_-rf.pdf");
    row("suffix in the value", "Иванов.pdf", "Иванов.pdf");
    row("apostrophe", "О'Нил", "О'Нил.pdf");
    row("empty", "", "1.pdf");
    row("blanks alone", "   ", "1.pdf");
    row("dots alone", "..", "1.pdf");
    row("suffix alone", ".pdf", "1.pdf");
}

void tst_FileNamePattern::values()
{
    QFETCH(QString, surname);
    QFETCH(QString, name);
    QCOMPARE(nameOf("{#LNAME}", {{"LNAME", surname}}), name);
}

void tst_FileNamePattern::reservedNames_data()
{
    QTest::addColumn<QString>("surname");
    QTest::addColumn<bool>("isReserved");
    for (const char* name : {"CON", "nul", "nul.pdf", "Aux.tar", "PRN", "com1", "LPT9", "COM0",
                             "com\u00B9", "con .x", "CONIN$", "conout$"})
    {
        QTest::newRow(name) << name << true;
    }
    for (const char* name : {"CONS", "COM", "COM10", "xnul", "nul_", "COM1a"}) {
        QTest::newRow(name) << name << false;
    }
}

void tst_FileNamePattern::reservedNames()
{
    QFETCH(QString, surname);
    QFETCH(bool, isReserved);
    const QString stem = surname.endsWith(".pdf") ? surname.chopped(4) : surname;
    QCOMPARE(nameOf("{#LNAME}", {{"LNAME", surname}}), (isReserved ? "_" : "") + stem + ".pdf");
}

void tst_FileNamePattern::usualNames()
{
    QCOMPARE(nameOf("", {{"LNAME", "Петрова"}, {"FNAME", "Анна"}}), QString("1_Петрова_Анна.pdf"));
}

void tst_FileNamePattern::sameNames()
{
    FileNamePattern pattern("{#LNAME}.pdf");
    QStringList names;
    for (const char* surname : {"Иванов", "ИВАНОВ", "Петров", "Иванов", "иванов."}) {
        names << pattern.nameFor(document(m_app->addDocument({}, {{"LNAME", surname}}))).value();
    }
    QCOMPARE(names, (QStringList{"Иванов.pdf", "ИВАНОВ (2).pdf", "Петров.pdf", "Иванов (3).pdf",
                                 "иванов (4).pdf"}));
}

void tst_FileNamePattern::numbersMeetNames()
{
    FileNamePattern pattern("{#LNAME}.pdf");
    QStringList names;
    for (const char* surname : {"А", "А (2)", "А", "А", "А (2)"}) {
        names << pattern.nameFor(document(m_app->addDocument({}, {{"LNAME", surname}}))).value();
    }
    QCOMPARE(names, (QStringList{"А.pdf", "А (2).pdf", "А (3).pdf", "А (4).pdf", "А (2) (2).pdf"}));
}

void tst_FileNamePattern::longNames_data()
{
    QTest::addColumn<QString>("surname");
    QTest::addColumn<QString>("stem");
    // 255 bytes less 7 for a name beside it and 4 of the suffix: 244, 122 Cyrillic letters.
    QTest::newRow("longest") << QString(244, 'a') << QString(244, 'a');
    QTest::newRow("one more") << QString(245, 'a') << QString(244, 'a');
    QTest::newRow("Cyrillic") << QString(130, QChar(0x416)) << QString(122, QChar(0x416));
    QTest::newRow("Cyrillic from an odd byte")
        << 'a' + QString(130, QChar(0x416)) << 'a' + QString(121, QChar(0x416));
    // 4 bytes each, 61 of them 244.
    QTest::newRow("beyond 16 bits") << QString::fromUcs4(U"\U0001F600").repeated(70)
                                    << QString::fromUcs4(U"\U0001F600").repeated(61);
    // A letter of a byte and its mark of 2 stay together: 81 times 3 is 243.
    QTest::newRow("marks") << (QString("q") + QChar(0x301)).repeated(100)
                           << (QString("q") + QChar(0x301)).repeated(81);
    // A letter with more marks than fit: a byte and 121 marks are 243.
    QTest::newRow("nothing but marks")
        << 'q' + QString(300, QChar(0x301)) << 'q' + QString(121, QChar(0x301));
    QTest::newRow("a blank at the cut") << QString(243, 'a') + " b" << QString(243, 'a');
}

void tst_FileNamePattern::longNames()
{
    QFETCH(QString, surname);
    QFETCH(QString, stem);
    const QString name = nameOf("{#LNAME}.pdf", {{"LNAME", surname}});
    QCOMPARE(name, stem + ".pdf");
    QVERIFY(name.toUtf8().size() <= 248);
}

void tst_FileNamePattern::longNamesThatAreTheSame()
{
    FileNamePattern pattern("{#LNAME}.pdf");
    const QString letters(130, QChar(0x416));
    QStringList names;
    for (const char* end : {"a", "b", "c"}) {
        names << pattern.nameFor(document(m_app->addDocument({}, {{"LNAME", letters + end}})))
                     .value();
    }
    // 248 less 4 and the 4 of " (2)": 240, 120 letters.
    QCOMPARE(names, (QStringList{letters.left(122) + ".pdf", letters.left(120) + " (2).pdf",
                                 letters.left(120) + " (3).pdf"}));
}

void tst_FileNamePattern::anotherSuffix()
{
    FileNamePattern pattern("{#LNAME}.png", ".png");
    QCOMPARE(pattern.nameFor(document(m_app->addDocument())).value(), QString("Иванов.png"));
    QCOMPARE(pattern.nameFor(document(m_app->addDocument())).value(), QString("Иванов (2).png"));
}

void tst_FileNamePattern::fileOfTheLongestNameIsReplaced()
{
    const QString path = m_app->path(nameOf("{#LNAME}", {{"LNAME", QString(300, 'a')}}));
    for (const char* content : {"old", "new"}) {
        TargetFile file(path);
        QVERIFY(file.open());
        QCOMPARE(file.device().write(content), qint64(3));
        QVERIFY(file.commit());
    }
}

// A name with its tags in it would not tell whose document it is.
void tst_FileNamePattern::documentThatCannotBeRead()
{
    const PrintDocument unreadable = document(m_app->addDocument());
    m_app->exec("ALTER TABLE docs RENAME TO hidden");
    QVERIFY(!FileNamePattern("{#LNAME}").nameFor(unreadable).has_value());
}

// The file system agrees.
void tst_FileNamePattern::filesOfAllNames()
{
    FileNamePattern pattern("{#LNAME}");
    QVERIFY(QDir(m_app->path()).mkdir("out"));
    const QStringList surnames = {"../x", ".", "", QString(300, QChar(0x42F)), "a\\b", "a/b"};
    for (const QString& surname : surnames) {
        QFile file(m_app->path(
            "out/" +
            pattern.nameFor(document(m_app->addDocument({}, {{"LNAME", surname}}))).value()));
        QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(file.fileName()));
    }
    QCOMPARE(QDir(m_app->path("out")).entryList(QDir::Files).size(), surnames.size());
}

QTEST_MAIN(tst_FileNamePattern)
#include "tst_FileNamePattern.moc"
