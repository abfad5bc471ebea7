#include <QtTest>

#include <QPainter>
#include <QRandomGenerator>
#include <QTextBlock>
#include <QTextLayout>

#include "render/page/PageText.h"

namespace {

QString paragraph(const QString& text, int percent = 100)
{
    return QString("<p style=\"line-height: %1%;\">").arg(percent) +
           QString(text).replace('\n', "<br>") + "</p>";
}

PageText::Form form(double width = 200, const QString& family = "Liberation Serif")
{
    QTextOption option(Qt::AlignHCenter);
    option.setWrapMode(QTextOption::WordWrap);
    return {QFont(family, 12), option, width};
}

/// The lines of a laid out document, with what stands on them and where.
QStringList linesOf(const QTextDocument& document)
{
    document.size(); // lays out what waits for it
    QStringList lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextLayout& layout = *block.layout();
        for (int i = 0; i < layout.lineCount(); ++i) {
            const QTextLine line = layout.lineAt(i);
            lines << QString("%1 at %2,%3 in %4,%5 %6x%7")
                         .arg(block.text().mid(line.textStart(), line.textLength()))
                         .arg(line.x())
                         .arg(line.y())
                         .arg(layout.position().x())
                         .arg(layout.position().y())
                         .arg(line.naturalTextWidth())
                         .arg(line.height());
        }
    }
    return lines;
}

QImage pictureOf(const QTextDocument& document)
{
    QImage picture(600, 400, QImage::Format_Grayscale8);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    // The operation that draws does not change the document, but is not marked so.
    const_cast<QTextDocument&>(document).drawContents(&painter);
    return picture;
}

void compare(PageText& text, const QString& markup, const PageText::Form& form)
{
    PageText fresh;
    const QTextDocument& expected = fresh.layOut(markup, false, form);
    const QTextDocument& found = text.layOut(markup, false, form);
    QCOMPARE(found.toHtml(), expected.toHtml());
    QCOMPARE(linesOf(found), linesOf(expected));
    QCOMPARE(found.size(), expected.size());
    QVERIFY2(pictureOf(found) == pictureOf(expected), qPrintable(markup));
    // Once more, from the glyphs that were kept.
    QVERIFY2(pictureOf(found) == pictureOf(expected), qPrintable(markup));
    for (const double spacing : {0.5, 1.0, 1.5}) {
        QCOMPARE(text.unbrokenSize(spacing), fresh.unbrokenSize(spacing));
    }
}

QString randomText(QRandomGenerator& random)
{
    static const QStringList pieces = {"Константинопольский",
                                       "и",
                                       "fi",
                                       " ",
                                       " ",
                                       " ",
                                       " ",
                                       "\n",
                                       "\t",
                                       "\u00a0",
                                       "&amp;",
                                       "&",
                                       ">",
                                       "№ 12",
                                       "<b>ж</b>",
                                       "漢字",
                                       "שלום",
                                       "\u2028",
                                       "\u0301",
                                       "🙂",
                                       "x"};
    QString text;
    for (int i = random.bounded(12); i > 0; --i) {
        text += pieces[random.bounded(random.bounded(2) == 0 ? 6 : pieces.size())];
    }
    return text;
}

} // namespace

/// A text that took the place of another one against the same text read as markup.
class tst_PageText : public QObject
{
    Q_OBJECT

private slots:
    void plainTextsFollowEachOther();
    void anyTextsFollowEachOther_data();
    void anyTextsFollowEachOther();
    void formChanges();
    void manyTexts();
    void brokenLinesHaveNoSize();
};

void tst_PageText::plainTextsFollowEachOther()
{
    PageText text;
    const QTextDocument* first = nullptr;
    for (const char* words :
         {"Иванов Иван", "Константинопольский Александр Вячеславович", "Ян", "от 1 июня\n2021 года",
          "Решение комиссии от 01.05.2021, квалификация присвоена", "«А» > Б"})
    {
        compare(text, paragraph(words), form());
        const QTextDocument* document = &text.layOut(paragraph(words), false, form());
        QVERIFY(!first || document == first);
        first = document;
    }
}

void tst_PageText::anyTextsFollowEachOther_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 20; ++seed) {
        QTest::addRow("%u", seed) << seed;
    }
}

void tst_PageText::anyTextsFollowEachOther()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    PageText text;
    int percent = 100;
    for (int i = 0; i < 60; ++i) {
        percent = random.bounded(5) == 0 ? random.bounded(50, 200) : percent;
        compare(text, paragraph(randomText(random), percent), form());
    }
}

void tst_PageText::formChanges()
{
    PageText text;
    const QString markup = paragraph("Решение комиссии от 01.05.2021");
    compare(text, markup, form());
    compare(text, paragraph("Ян"), form());
    compare(text, paragraph("Ян"), form(90));
    compare(text, markup, form(90));
    compare(text, markup, form(90, "DejaVu Sans"));
    PageText::Form left = form(90, "DejaVu Sans");
    left.option.setAlignment(Qt::AlignLeft);
    compare(text, markup, left);
    compare(text, markup.toUpper(), left);
}

/// More than a document keeps of those that were in it.
void tst_PageText::manyTexts()
{
    PageText text;
    for (int i = 0; i < 1000; ++i) {
        text.layOut(paragraph(QString("Решение комиссии № %1").arg(i)), false, form());
    }
    compare(text, paragraph("Ян"), form());
}

void tst_PageText::brokenLinesHaveNoSize()
{
    PageText text;
    QVERIFY(!text.isLaidOut());
    text.layOut(paragraph("две\nстроки"), false, form());
    QVERIFY(text.isLaidOut());
    const std::optional<QSizeF> size = text.unbrokenSize(1.0);
    QVERIFY(size && size->width() > 0 && size->width() < 200);
    QCOMPARE(text.unbrokenSize(2.0)->height(), 2 * size->height());
    QCOMPARE(text.unbrokenSize(0.5)->height(), size->height());
    text.layOut(paragraph("две\nстроки"), false, form(20));
    QVERIFY(text.unbrokenSize(1.0)->width() > 20); // no word is broken
    text.layOut(paragraph("много слов на нескольких строках"), false, form(100));
    QVERIFY(!text.unbrokenSize(1.0));
}

QTEST_MAIN(tst_PageText)
#include "tst_PageText.moc"
