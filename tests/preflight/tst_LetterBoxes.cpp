#include <QtTest>

#include <QPainterPath>

#include "preflight/LetterBoxes.h"

/// The box of a text put together of its letters' against the outlines of the whole text.
class tst_LetterBoxes : public QObject
{
    Q_OBJECT

private slots:
    void holdsTheInk_data();
    void holdsTheInk();
    void tallAndLowLetters();
    void charactersThatJoin();
    void blanksLeaveNoInk();
    void manyFonts();
};

void tst_LetterBoxes::holdsTheInk_data()
{
    QTest::addColumn<QFont>("font");
    QFont italic("Liberation Serif", 21);
    italic.setItalic(true);
    QFont bold("DejaVu Sans", 9);
    bold.setBold(true);
    QTest::newRow("serif") << QFont("Liberation Serif", 12);
    QTest::newRow("italic") << italic;
    QTest::newRow("bold") << bold;
    QTest::newRow("not installed") << QFont("Нет такого", 30);
}

void tst_LetterBoxes::holdsTheInk()
{
    QFETCH(QFont, font);
    font.setHintingPreference(QFont::PreferNoHinting);
    constexpr double rounding = 0.02; // of coordinates in a font
    for (const char* text : {"Константинопольский", "jQ, (Ёё) Йй", "AVAToWa", "Щука №12 «Ь»", "x",
                             " по краям ", "1–5 — да", "ДЦЩцщ_ygjp|/"})
    {
        QPainterPath path;
        path.addText(QPointF(0, 0), font, text);
        const auto box =
            LetterBoxes::shared().around(text, font, QFontMetricsF(font).horizontalAdvance(text));
        QVERIFY(box);
        QVERIFY2(
            box->adjusted(-rounding, -rounding, rounding, rounding).contains(path.boundingRect()),
            text);
        // No higher than the ink, or a text that fills its frame would never be known to fit.
        QVERIFY2(box->top() > path.boundingRect().top() - rounding, text);
        QVERIFY2(box->bottom() < path.boundingRect().bottom() + rounding, text);
    }
}

void tst_LetterBoxes::tallAndLowLetters()
{
    const QFont font("Liberation Serif", 40);
    const auto low = LetterBoxes::shared().around("он", font, 50);
    const auto tall = LetterBoxes::shared().around("Йр", font, 50);
    QVERIFY(low && tall);
    QVERIFY(tall->top() < low->top() - 5);
    QVERIFY(tall->bottom() > low->bottom() + 5);
}

void tst_LetterBoxes::charactersThatJoin()
{
    const QFont font("Liberation Serif", 12);
    for (const char* text : {"fi", "и\u0301", "漢字", "שלום", "🙂"}) {
        QVERIFY2(!LetterBoxes::shared().around(text, font, 30), text);
    }
}

void tst_LetterBoxes::blanksLeaveNoInk()
{
    const auto box = LetterBoxes::shared().around("   ", QFont("Liberation Serif", 12), 9);
    QVERIFY(box);
    QVERIFY(box->isNull());
}

// More than are remembered: one that was forgotten is measured again.
void tst_LetterBoxes::manyFonts()
{
    constexpr int most = 60; // points
    QVector<QRectF> boxes;
    for (int round = 0; round < 2; ++round) {
        for (int size = 10; size <= most; ++size) {
            const auto box = LetterBoxes::shared().around("Йр", QFont("Liberation Serif", size), 0);
            QVERIFY(box);
            if (round == 0) {
                QVERIFY(boxes.isEmpty() || box->height() > boxes.last().height());
                boxes << *box;
            } else {
                QCOMPARE(*box, boxes[size - 10]);
            }
        }
    }
}

QTEST_MAIN(tst_LetterBoxes)
#include "tst_LetterBoxes.moc"
