#include <QtTest>

#include <QCoreApplication>

#include "translations/Translation.h"

namespace {

const Translation english{QLocale(QLocale::English, QLocale::UnitedKingdom)};
const Translation russian{QLocale(QLocale::Russian, QLocale::Russia)};

} // namespace

/// The texts in the language of a locale.
class tst_Translation : public QObject
{
    Q_OBJECT

private slots:
    void languageIsTheLocales();
    void otherLanguagesGetEnglish();
    void unknownTextStaysAsItIs();
    void numberIsPutIn();
    void installedForAllTheProgram();
};

void tst_Translation::languageIsTheLocales()
{
    QCOMPARE(english.translate("FindingWords", "on the left"), "on the left");
    QCOMPARE(russian.translate("FindingWords", "on the left"), "слева");
    QCOMPARE(russian.locale().language(), QLocale::Russian);
}

void tst_Translation::otherLanguagesGetEnglish()
{
    const Translation german{QLocale(QLocale::German, QLocale::Germany)};
    QCOMPARE(german.translate("FindingWords", "on the left"), "on the left");
}

void tst_Translation::unknownTextStaysAsItIs()
{
    QCOMPARE(russian.translate("FindingWords", "“never said” %1"), "“never said” %1");
    QCOMPARE(russian.translate("No such context", "on the left"), "on the left");
    QCOMPARE(russian.translate("No such context", "%n times", nullptr, 3), "3 times");
}

void tst_Translation::numberIsPutIn()
{
    QCOMPARE(russian.translate("FindingWords", "and %n more", nullptr, 21), "и ещё замечаний: 21");
    QCOMPARE(english.translate("FindingWords", "and %n more", nullptr, 0), "and 0 more");
}

void tst_Translation::installedForAllTheProgram()
{
    const auto translated = [] { return QCoreApplication::translate("ProgressLine", "%1 of %2"); };
    QCOMPARE(translated(), "%1 of %2");
    russian.install();
    QCOMPARE(translated(), "%1 из %2");
}

QTEST_GUILESS_MAIN(tst_Translation)
#include "tst_Translation.moc"
