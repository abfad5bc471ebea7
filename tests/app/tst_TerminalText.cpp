#include <QtTest>

#include <QJsonDocument>
#include <QJsonObject>

#include "app/TerminalText.h"

/// Texts of others on a terminal: nothing of them is a command.
class tst_TerminalText : public QObject
{
    Q_OBJECT

private slots:
    void oneLine_data();
    void oneLine();
    void json();
};

void tst_TerminalText::oneLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("plain") << "Иванов “№ 5” 🙂"
                           << "Иванов “№ 5” 🙂";
    QTest::newRow("escape") << "a\x1b[2Jb"
                            << "a [2Jb";
    QTest::newRow("line ends") << "a\r\nb\vc\td"
                               << "a  b c d";
    QTest::newRow("separators") << QString("a") + QChar(0x2028) + QChar(0x2029) << "a  ";
    QTest::newRow("zero and delete") << QString("a") + QChar(0) + QChar(0x7f) << "a  ";
    QTest::newRow("direction") << QString("a") + QChar(0x202E) + "12" + QChar(0x2066) << "a 12 ";
    QTest::newRow("sequence in one character") << QString(QChar(0x9b)) + "2J"
                                               << " 2J";
}

void tst_TerminalText::oneLine()
{
    QFETCH(QString, text);
    QFETCH(QString, line);
    QCOMPARE(onOneLine(text), line);
}

void tst_TerminalText::json()
{
    QString all;
    for (ushort code = 0; code < 0x100; ++code) {
        all += QChar(code);
    }
    all += QChar(0x202E);
    const QJsonObject object = {{"all", all}, {"ещё", "🙂"}};
    const QString shown = jsonForTerminal(QJsonDocument(object).toJson());
    for (const QChar c : shown) {
        QVERIFY(c == '\n' || c.category() != QChar::Other_Control);
        QVERIFY(c != QChar(0x202E));
    }
    QCOMPARE(QJsonDocument::fromJson(shown.toUtf8()).object(), object);
}

QTEST_MAIN(tst_TerminalText)
#include "tst_TerminalText.moc"
