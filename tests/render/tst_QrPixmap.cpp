#include <QtTest>

#include <QImage>
#include <QPixmap>
#include <QTemporaryDir>

#include "render/QrEncoder.h"
#include "render/QrPixmap.h"
#include "support/Process.h"

/// The picture of a text's symbol.
class tst_QrPixmap : public QObject
{
    Q_OBJECT

private slots:
    void shortTextGivesVersion12();
    void hasTheSymbolInsideAQuietZone();
    void growsWithTheText();
    void refusedTextGivesAWhiteSquare_data();
    void refusedTextGivesAWhiteSquare();
    void endsAtAZeroCharacter();
    void isReadByAScanner();

private:
    static QPixmap pixmapOf(const QString& text);
};

/// Starts from a pixmap that shows something else, which must be replaced.
QPixmap tst_QrPixmap::pixmapOf(const QString& text)
{
    QPixmap pixmap(20, 30);
    pixmap.fill(Qt::red);
    makeQrPixmap(text, pixmap);
    return pixmap;
}

void tst_QrPixmap::shortTextGivesVersion12()
{
    QCOMPARE(pixmapOf("123").size(), QSize(73, 73));
    QCOMPARE(pixmapOf("A").size(), QSize(73, 73));
    QCOMPARE(pixmapOf("Иванов Иван Иванович").size(), QSize(73, 73));
}

void tst_QrPixmap::hasTheSymbolInsideAQuietZone()
{
    const QByteArray text = "123";
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): a plain work area
    QrEncoder encoder;
    QVERIFY(encoder.encodeData(1, 12, true, -1, text.constData(), 0));

    const QImage image = pixmapOf("123").toImage();
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            const bool inside = x >= 4 && y >= 4 && x < 69 && y < 69;
            const bool dark = inside && encoder.modules[x - 4][y - 4] == 1;
            QCOMPARE(image.pixelColor(x, y), QColor(dark ? Qt::black : Qt::white));
        }
    }
}

void tst_QrPixmap::growsWithTheText()
{
    // Level M takes 287 bytes in version 12, and 2331 in version 40.
    QCOMPARE(pixmapOf(QString(287, 'a')).width(), 73);
    QCOMPARE(pixmapOf(QString(288, 'a')).width(), 77);
    QCOMPARE(pixmapOf(QString(2331, 'a')).width(), 185);
}

void tst_QrPixmap::refusedTextGivesAWhiteSquare_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("null") << QString();
    QTest::newRow("empty") << QString("");
    QTest::newRow("zero character first") << QString(1, QChar(0)) + "abc";
    QTest::newRow("too long") << QString(2332, 'a');
}

void tst_QrPixmap::refusedTextGivesAWhiteSquare()
{
    QFETCH(QString, text);

    const QPixmap pixmap = pixmapOf(text);
    QCOMPARE(pixmap.size(), QSize(8, 8));
    const QImage image = pixmap.toImage();
    for (int x = 0; x < 8; ++x) {
        for (int y = 0; y < 8; ++y) {
            QCOMPARE(image.pixelColor(x, y), QColor(Qt::white));
        }
    }
}

void tst_QrPixmap::endsAtAZeroCharacter()
{
    const QString text = QString("12345") + QChar(0) + "678";
    QCOMPARE(pixmapOf(text).toImage(), pixmapOf("12345").toImage());
    QVERIFY(pixmapOf(text).toImage() != pixmapOf("12345678").toImage());
}

void tst_QrPixmap::isReadByAScanner()
{
    QTemporaryDir directory;
    const QStringList texts{"123", "Диплом № 107704 0012345, Иванов Пётр Ильич",
                            "https://example.org/check?number=42"};
    QStringList arguments{"--raw", "-q", "-S*.disable", "-Sqrcode.enable", "-S*.binary"};
    for (const QString& text : texts) {
        const QString file = directory.filePath(QString("%1.png").arg(arguments.size()));
        const QPixmap pixmap = pixmapOf(text);
        QVERIFY(pixmap.scaled(pixmap.size() * 4).save(file));
        arguments.append(file);
    }
    const QByteArray read = runProcess("zbarimg", arguments).out;
    QCOMPARE(QString::fromUtf8(read), texts.join('\n') + '\n');
}

QTEST_MAIN(tst_QrPixmap)
#include "tst_QrPixmap.moc"
