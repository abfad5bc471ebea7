#include <QtTest>

#include "support/PdfMeasure.h"
#include "support/PrintProgram.h"

namespace {

constexpr int sampleDocuments[] = {1, 71, 125, 136};

/// Settings of fonts that are the system's but for the hinting, which is this one for all fonts.
QByteArray fontSettings(const QByteArray& hintStyle)
{
    QByteArray settings = "<?xml version=\"1.0\"?>\n"
                          "<!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">\n"
                          "<fontconfig><include>/etc/fonts/fonts.conf</include>\n";
    for (const char* target : {"pattern", "font"}) {
        settings += QByteArray("<match target=\"") + target +
                    "\"><edit name=\"hinting\" mode=\"assign\"><bool>" +
                    (hintStyle == "hintnone" ? "false" : "true") +
                    "</bool></edit><edit name=\"hintstyle\" mode=\"assign\"><const>" + hintStyle +
                    "</const></edit></match>\n";
    }
    return settings + "</fontconfig>\n";
}

} // namespace

/// Pages printed under each of the desktop's settings of hinting: the same ink in the same places.
class tst_PageOnAnyDesktop : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void hinting_data();
    void hinting();

private:
    /// The sample printed under a hint style, all of it on one file.
    QString print(const QByteArray& hintStyle);

    TempApplication m_app{TempApplication::Database::None};
    QString m_default;
};

void tst_PageOnAnyDesktop::initTestCase()
{
    if (!QFile::exists("/etc/fonts/fonts.conf")) {
        QSKIP("fontconfig's settings are not where Linux has them");
    }
    QCOMPARE(makeSample(m_app.path("sample")).exitCode, 0);
    m_default = print("hintslight");
    const PdfMeasure pdf(m_default);
    QCOMPARE(pdf.pageCount(), int(std::size(sampleDocuments)));
    QVERIFY(!pdf.ink().isNull());
}

void tst_PageOnAnyDesktop::hinting_data()
{
    QTest::addColumn<QByteArray>("hintStyle");
    QTest::newRow("none") << QByteArray("hintnone");
    QTest::newRow("full") << QByteArray("hintfull");
}

void tst_PageOnAnyDesktop::hinting()
{
    QFETCH(QByteArray, hintStyle);
    const PdfMeasure pdf(print(hintStyle));
    const PdfMeasure expected(m_default);
    for (int page = 1; page <= int(std::size(sampleDocuments)); ++page) {
        QVERIFY2(!expected.image(page).isNull(), QByteArray::number(page));
        QVERIFY2(pdf.image(page) == expected.image(page), QByteArray::number(page));
    }
}

QString tst_PageOnAnyDesktop::print(const QByteArray& hintStyle)
{
    const QString settings = m_app.path(hintStyle + ".conf");
    QFile file(settings);
    QString pdf = m_app.path(hintStyle + ".pdf");
    QStringList ids;
    for (const int id : sampleDocuments) {
        ids << QString::number(id);
    }
    QProcessEnvironment environment = noDisplay("C.UTF-8");
    environment.insert("FONTCONFIG_FILE", settings);
    if (!file.open(QIODevice::WriteOnly) || file.write(fontSettings(hintStyle)) <= 0) {
        QTest::qFail("the settings could not be written", __FILE__, __LINE__);
    }
    file.close();
    const ProcessResult result = runPrint(
        {"--dir", m_app.path("sample"), "--id", ids.join(','), "--output", pdf}, environment);
    if (result.exitCode != 0) {
        QTest::qFail(result.err, __FILE__, __LINE__);
    }
    return pdf;
}

QTEST_MAIN(tst_PageOnAnyDesktop)
#include "tst_PageOnAnyDesktop.moc"
