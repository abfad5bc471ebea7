#include <QtTest>

#include <QImage>

#include "preflight/ProofPicture.h"
#include "support/CheckedPage.h"
#include "support/PrintProgram.h"

namespace {

constexpr int dpi = 150;
constexpr double unit = 297.0 / 1122.0; // of the fixture's blank, millimetres

double toPixels(double millimetres, int resolution = dpi)
{
    return millimetres / 25.4 * resolution;
}

QImage draw(CheckedPage& page, int resolution = dpi, bool isBackgroundPrinted = false)
{
    return ProofPicture(page.pageCheck, resolution, isBackgroundPrinted).draw();
}

bool isDark(QRgb color)
{
    return qGray(color) < 90 && qAbs(qRed(color) - qBlue(color)) < 40;
}

/// Bounding box of what is black, pixels.
QRect blackOf(const QImage& image, const QRect& region)
{
    QRect box;
    for (int y = region.top(); y <= region.bottom(); ++y) {
        for (int x = region.left(); x <= region.right(); ++x) {
            if (image.valid(x, y) && isDark(image.pixel(x, y))) {
                box |= QRect(x, y, 1, 1);
            }
        }
    }
    return box;
}

bool isRed(QRgb color)
{
    return qRed(color) > 150 && qGreen(color) < 90 && qBlue(color) < 100;
}

bool isBlue(QRgb color)
{
    return qBlue(color) > 200 && qBlue(color) - qRed(color) > 40;
}

int countIn(const QImage& image, const QRectF& region, bool (*isColor)(QRgb))
{
    int count = 0;
    const QRect area = region.toAlignedRect() & image.rect();
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            count += isColor(image.pixel(x, y)) ? 1 : 0;
        }
    }
    return count;
}

/// The vertical line at x, given in millimetres, from top to bottom, with a little to its sides.
QRectF lineAt(double x, double top, double bottom)
{
    return {toPixels(x) - 1, toPixels(top), 3, toPixels(bottom - top)};
}

/// A text with so many tags that nothing replaces.
QString unknownTags(int count)
{
    QStringList tags;
    for (int i = 1; i <= count; ++i) {
        tags << QString("#T%1").arg(i);
    }
    return tags.join(' ');
}

} // namespace

/// The picture that shows what the check of a page found.
class tst_ProofPicture : public QObject
{
    Q_OBJECT

private slots:
    void sizeAndResolution_data();
    void sizeAndResolution();
    void inkWhereItPrints_data();
    void inkWhereItPrints();
    void framesHideNoInk();
    void framesAndMarks();
    void errorsColourTheFrame();
    void sheetAlone();
    void marksStandApart();
    void manyMarksStandApart_data();
    void manyMarksStandApart();
    void legendIsBounded();
    void edgeOfThePrintable();
    void backgroundStaysOrMoves();
    void restOfTheSheet();
    void sheetWithoutAPage();
    void program();
    void programOnSeveralDocuments();
};

void tst_ProofPicture::sizeAndResolution_data()
{
    QTest::addColumn<int>("resolution");
    QTest::addColumn<QVariantMap>("blank");
    QTest::addColumn<QSize>("size");
    QTest::newRow("custom at 150") << 150 << QVariantMap() << QSize(1754, 1240);
    QTest::newRow("custom at 36") << 36 << QVariantMap() << QSize(421, 298);
    QTest::newRow("A5 portrait at 300") << 300
                                        << QVariantMap{{"PAPER_FORMAT", 1},
                                                       {"PAPER_ORIENTATION", 1},
                                                       {"SIZE_WIDTH", 148},
                                                       {"SIZE_HEIGHT", 210}}
                                        << QSize(1748, 2480);
}

void tst_ProofPicture::sizeAndResolution()
{
    QFETCH(int, resolution);
    QFETCH(QVariantMap, blank);
    QFETCH(QSize, size);
    CheckedPage proof;
    proof.check({blankItem(0, "#LNAME", QRectF(100, 100, 200, 40))}, blank);
    const QImage clean = draw(proof, resolution);
    QCOMPARE(clean.size(), size);
    QVERIFY(clean.save(proof.path("clean.png")));
    // As PNG keeps it, in whole dots a metre.
    const int dotsPerMetre = qRound(resolution / 0.0254);
    QCOMPARE(QImage(proof.path("clean.png")).dotsPerMeterX(), dotsPerMetre);
    QCOMPARE(QImage(proof.path("clean.png")).dotsPerMeterY(), dotsPerMetre);

    proof.check({blankItem(0, "#CITY", QRectF(100, 100, 200, 40))}, blank);
    const QImage marked = draw(proof, resolution);
    QCOMPARE(marked.width(), size.width());
    QVERIFY(marked.height() > size.height() + 20); // the legend
    QVERIFY(!blackOf(marked, QRect(0, size.height() + 2, size.width(), 1000)).isNull());
}

void tst_ProofPicture::inkWhereItPrints_data()
{
    QTest::addColumn<QVariantMap>("blank");
    QTest::newRow("plain") << QVariantMap();
    QTest::newRow("moved") << QVariantMap{{"OFFSET_X", 6}, {"OFFSET_Y", -9}};
    QTest::newRow("scaled") << QVariantMap{{"PAPER_FORMAT", 1}};
    QTest::newRow("cut by the edge") << QVariantMap{{"OFFSET_X", 40}};
}

void tst_ProofPicture::inkWhereItPrints()
{
    QFETCH(QVariantMap, blank);
    CheckedPage proof;
    proof.check({blankItem(0, "НАПЕЧАТАНО", QRectF(100, 100, 200, 40)),
                 blankItem(1, "#BLANK_NO", QRectF(500, 400, 98, 98))},
                blank);
    const QRectF ink = proof.print().ink();
    const QImage image = draw(proof);
    const QSize sheet = ProofPicture(proof.pageCheck, dpi, false).sheetSize();
    const QRect black = blackOf(image, QRect(QPoint(0, 0), sheet));
    constexpr double near = 2.5; // pixels
    QVERIFY(qAbs(black.left() - toPixels(ink.left())) < near);
    QVERIFY(qAbs(black.top() - toPixels(ink.top())) < near);
    QVERIFY(qAbs(black.right() + 1 - toPixels(ink.right())) < near);
    QVERIFY(qAbs(black.bottom() + 1 - toPixels(ink.bottom())) < near);
}

void tst_ProofPicture::framesHideNoInk()
{
    // The frame of the second item runs through the symbol of the first.
    CheckedPage proof;
    proof.check({blankItem(1, "#BLANK_NO", QRectF(100, 100, 98, 98))});
    const QImage alone = draw(proof);
    proof.check({blankItem(1, "#BLANK_NO", QRectF(100, 100, 98, 98)),
                 blankItem(0, "", QRectF(130, 50, 300, 300))});
    const QImage crossed = draw(proof);
    const QRectF symbol(toPixels(100 * unit), toPixels(100 * unit), toPixels(73 * unit),
                        toPixels(73 * unit));
    QVERIFY(countIn(crossed, symbol, isBlue) > countIn(alone, symbol, isBlue));
    QVERIFY(countIn(crossed, symbol, isDark) >= countIn(alone, symbol, isDark));
}

void tst_ProofPicture::framesAndMarks()
{
    CheckedPage proof;
    proof.check({blankItem(0, "#LNAME", QRectF(100, 100, 200, 40)),
                 blankItem(0, "#CITY", QRectF(400, 300, 200, 40))});
    QCOMPARE(proof.pageCheck.findings().size(), 1);
    const QImage image = draw(proof);
    const double height = toPixels(40 * unit);
    QVERIFY(countIn(image, lineAt(100 * unit, 100 * unit, 140 * unit), isBlue) > 0.9 * height);
    QVERIFY(countIn(image, lineAt(400 * unit, 300 * unit, 340 * unit), isRed) > 0.9 * height);
    // The mark stands to the left of its frame, as high as the frame's middle.
    const QRectF beside(toPixels(400 * unit - 7), toPixels(320 * unit - 3), toPixels(6.5),
                        toPixels(6));
    QVERIFY(countIn(image, beside, isRed) > 200);
    QCOMPARE(countIn(image, QRectF(0, 0, image.width(), toPixels(250 * unit)), isRed), 0);
}

// Whatever else was found there.
void tst_ProofPicture::errorsColourTheFrame()
{
    CheckedPage proof;
    proof.check({blankItem(0, "#MNAME #CITY", QRectF(100, 100, 200, 40))}, {}, {}, {{"MNAME", ""}});
    QCOMPARE(proof.pageCheck.findings().size(), 2);
    QCOMPARE(proof.pageCheck.findings()[0].severity, Finding::Severity::Error);
    QCOMPARE(proof.pageCheck.findings()[1].severity, Finding::Severity::Warning);
    QVERIFY(countIn(draw(proof), lineAt(100 * unit, 100 * unit, 140 * unit), isRed) >
            0.9 * toPixels(40 * unit));
}

void tst_ProofPicture::sheetAlone()
{
    CheckedPage page;
    // The text does not fit: a finding, which would have a mark and a legend.
    page.check({blankItem(0, "Очень длинный текст для такой рамки", QRectF(300, 300, 60, 30))});
    QVERIFY(!page.pageCheck.findings().isEmpty());
    ProofPicture picture(page.pageCheck, dpi, false);
    const QImage alone = picture.drawSheetAlone();
    QCOMPARE(alone.size(), picture.sheetSize());
    QCOMPARE(countIn(alone, alone.rect(), isRed) + countIn(alone, alone.rect(), isBlue), 0);
    QVERIFY(!blackOf(alone, alone.rect()).isEmpty());
}

void tst_ProofPicture::marksStandApart()
{
    // Three marks of one frame and one of a frame in the corner: all are on the sheet, and as
    // large.
    const auto redOf = [](const QJsonArray& items) {
        CheckedPage proof;
        proof.check(items);
        const QImage image = draw(proof);
        const QSize sheet = ProofPicture(proof.pageCheck, dpi, false).sheetSize();
        return countIn(image, QRectF(QPointF(0, 0), sheet), isRed);
    };
    const QRectF frame(100, 100, 200, 40);
    const int one = redOf({blankItem(0, "#A", frame)});
    const int corner = redOf({blankItem(0, "#A", QRectF(0, 0, 200, 40))});
    const int three = redOf({blankItem(0, "#A #B #C", frame)});
    const int ofFrame = redOf({blankItem(0, "#A", frame)}) - (three - one) / 2;
    QVERIFY(three > one);
    QVERIFY(ofFrame > 0);
    QVERIFY(qAbs(corner - one) < one / 4);
}

void tst_ProofPicture::manyMarksStandApart_data()
{
    QTest::addColumn<QRectF>("frame");
    QTest::newRow("corner at the top") << QRectF(0, 0, 200, 40);
    QTest::newRow("corner at the bottom") << QRectF(1000, 750, 122, 43);
}

// More than have room beside their frame, and with numbers of three digits.
void tst_ProofPicture::manyMarksStandApart()
{
    QFETCH(QRectF, frame);
    const auto redOf = [&frame](int findings) {
        CheckedPage proof;
        proof.check({blankItem(0, unknownTags(findings), frame)}, {{"FONT_SIZE", 1}});
        const QImage image = draw(proof);
        const QSize sheet = ProofPicture(proof.pageCheck, dpi, false).sheetSize();
        return countIn(image, QRectF(QPointF(0, 0), sheet), isRed);
    };
    const int frameAlone = 2 * redOf(1) - redOf(2);
    const double ofMark = redOf(2) - redOf(1);
    QVERIFY(frameAlone > 0 && ofMark > 0);
    constexpr int many = 120;
    const double marks = (redOf(many) - frameAlone) / ofMark;
    QVERIFY2(qAbs(marks - many) < many * 0.2, qPrintable(QString::number(marks)));
}

void tst_ProofPicture::legendIsBounded()
{
    const auto heightFor = [](int findings) {
        CheckedPage proof;
        proof.check({blankItem(0, unknownTags(findings), QRectF(100, 100, 900, 600))},
                    {{"FONT_SIZE", 1}});
        if (proof.pageCheck.findings().size() != findings) {
            QTest::qFail("other findings", __FILE__, __LINE__);
        }
        return draw(proof, 40).height();
    };
    const int line = heightFor(59) - heightFor(58);
    QCOMPARE(heightFor(60) - heightFor(59), line);
    QVERIFY(heightFor(61) > heightFor(60)); // says how many more there are
    QCOMPARE(heightFor(90), heightFor(61));
}

void tst_ProofPicture::edgeOfThePrintable()
{
    CheckedPage proof;
    const QJsonArray items = {blankItem(0, "#LNAME", QRectF(400, 300, 200, 40))};
    const auto greyAt = [](const QImage& image, double x, double top, double bottom) {
        const auto isGrey = [](QRgb color) { return qGray(color) < 200; };
        return countIn(image, lineAt(x, top, bottom), isGrey);
    };
    proof.check(items);
    const QImage plain = draw(proof);
    QCOMPARE(greyAt(plain, 20, 20, 180), 0);
    proof.pageCheck.setMargins(QMarginsF(20, 10, 20, 10));
    proof.check(items);
    const QImage image = draw(proof);
    // A dashed line from the upper to the lower margin, and nothing beyond.
    const double length = toPixels(160);
    QVERIFY(greyAt(image, 20, 20, 180) > length / 3);
    QVERIFY(greyAt(image, 297 - 20, 20, 180) > length / 3);
    QCOMPARE(greyAt(image, 20, 0.5, 9), 0);
    QCOMPARE(greyAt(image, 15, 20, 180), 0);
}

void tst_ProofPicture::backgroundStaysOrMoves()
{
    CheckedPage proof;
    QImage scan(1122, 793, QImage::Format_RGB32);
    scan.fill(Qt::white);
    for (int y = 300; y < 400; ++y) {
        for (int x = 500; x < 600; ++x) {
            scan.setPixel(x, y, qRgb(0, 160, 0));
        }
    }
    QVERIFY(scan.save(proof.path("scan.png")));
    proof.check({}, {{"BACKGROUND_IMG", "scan.png"}, {"OFFSET_X", 10}});
    const QRgb green = qRgb(0, 160, 0);
    const auto colorAt = [](const QImage& image, double x) {
        return image.pixel(qRound(toPixels(x)), qRound(toPixels(350 * unit)));
    };
    const double left = 500 * unit;
    const QImage paper = draw(proof, dpi, false);
    QCOMPARE(colorAt(paper, left + 1), green);
    QCOMPARE(colorAt(paper, left - 1), qRgb(255, 255, 255));
    const QImage printed = draw(proof, dpi, true);
    QCOMPARE(colorAt(printed, left - 9), green); // 37 units are 9.79 mm
    QCOMPARE(colorAt(printed, left - 11), qRgb(255, 255, 255));
    QVERIFY(colorAt(printed, left + 100 * unit - 1) != green);
}

void tst_ProofPicture::restOfTheSheet()
{
    // An upright page on a sheet that lies: what is right of the page never gets ink.
    CheckedPage proof;
    proof.check({blankItem(0, "ДЛИННОЕСЛОВО", QRectF(720, 100, 60, 40))},
                {{"PAPER_FORMAT", 0}, {"SIZE_WIDTH", 210}, {"SIZE_HEIGHT", 297}});
    const QImage image = draw(proof);
    const int edge = qRound(toPixels(793 * 210.0 / 1122));
    QCOMPARE(image.pixel(edge + 40, 900), qRgb(0xEC, 0xEE, 0xF1));
    QCOMPARE(image.pixel(edge - 40, 900), qRgb(255, 255, 255));
    QVERIFY(blackOf(image, QRect(edge + 2, 0, 400, 1200)).isNull());
}

// The paper is known, the page has no width: nothing but the sheet and the finding is drawn.
void tst_ProofPicture::sheetWithoutAPage()
{
    CheckedPage proof;
    proof.check({blankItem(0, "#LNAME", QRectF(100, 100, 200, 40))},
                {{"PAPER_FORMAT", 0}, {"SIZE_WIDTH", 0}});
    QCOMPARE(proof.pageCheck.findings().size(), 1);
    const QImage image = draw(proof);
    const QSize sheet = ProofPicture(proof.pageCheck, dpi, false).sheetSize();
    QCOMPARE(sheet, QSize(1754, 1240)); // A4, lying
    QVERIFY(blackOf(image, QRect(QPoint(0, 0), sheet)).isNull());
    QVERIFY(!blackOf(image, QRect(0, sheet.height() + 2, sheet.width(), 1000)).isNull());
}

void tst_ProofPicture::program()
{
    PrintDirectory directory;
    const QString file = directory.path("proof.png");
    const ProcessResult result = directory.print(
        {"--proof", "--id", "1", "--blank", "Альбом", "--resolution", "100", "--output", file});
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, file.toUtf8() + '\n');
    const QImage image(file);
    QCOMPARE(image.size(), QSize(1169, 827));
    QCOMPARE(image.dotsPerMeterX(), 3937);

    const ProcessResult unwritable =
        directory.print({"--proof", "--id", "1", "--output", directory.path("no/such/proof.png")});
    QCOMPARE(unwritable.exitCode, 2);
    QVERIFY(unwritable.err.contains("can't write"));
    directory.exec("UPDATE blanks SET PAPER_FORMAT = 42, SIZE_WIDTH = 0, SIZE_HEIGHT = 0 WHERE "
                   "NAME = 'Книга'");
    const ProcessResult noPage = directory.print(
        {"--proof", "--id", "1", "--blank", "Книга", "--output", directory.path("none.png")});
    QCOMPARE(noPage.exitCode, 2);
    QVERIFY2(noPage.err.contains("the page has no size"), noPage.err.constData());
    const ProcessResult noPrinter =
        directory.print({"--proof", "--id", "1", "--printer", "Нет такого", "--output",
                         directory.path("none.png")});
    QCOMPARE(noPrinter.exitCode, 2);
    QVERIFY(noPrinter.err.contains("there is no printer"));
    QVERIFY(!QFile::exists(directory.path("none.png")));
    const ProcessResult noFolder =
        directory.print({"--proof", "--all", "--output", directory.path("back.png/below")});
    QCOMPARE(noFolder.exitCode, 2);
    QCOMPARE(QString::fromUtf8(noFolder.err),
             "zelvora-print: can't make the folder " + directory.path("back.png/below") + '\n');
    const ProcessResult several = directory.print({"--proof", "--all", "--output", file});
    QCOMPARE(several.exitCode, 2);
    QVERIFY(several.err.contains("folder"));
}

void tst_ProofPicture::programOnSeveralDocuments()
{
    PrintDirectory directory;
    directory.exec("UPDATE docs SET LNAME = '<b>' WHERE ID = 2");
    const ProcessResult result =
        directory.print({"--proof", "--id", "1-3", "--blank", "Альбом", "--resolution", "40",
                         "--output", directory.path("proofs")});
    QCOMPARE(result.exitCode, 1); // there is a finding
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out.count('\n'), 3);
    const QStringList files = directory.filesIn("proofs");
    QCOMPARE(files.size(), 3);
    QVERIFY(files.contains("1_Иванов_Иван.png") && files.contains("3_Иваненко_Иван.png"));
    const ProcessResult lacking =
        directory.print({"--proof", "--id", "1,77", "--resolution", "40", "--blank", "Альбом",
                         "--output", directory.path("proofs")});
    QCOMPARE(lacking.exitCode, 1);
    QVERIFY(lacking.err.contains("77"));
    // One document has no such blank, and the name of another's picture is a folder's.
    QVERIFY(QFile::remove(directory.path("proofs/1_Иванов_Иван.png")));
    QVERIFY(QDir(directory.path("proofs")).mkdir("1_Иванов_Иван.png"));
    const ProcessResult partly =
        directory.print({"--proof", "--id", "1,3,4", "--resolution", "40", "--blank", "Альбом",
                         "--output", directory.path("proofs")});
    QCOMPARE(partly.exitCode, 1);
    QCOMPARE(partly.out, directory.path("proofs/3_Иваненко_Иван.png").toUtf8() + '\n');
    QCOMPARE(QString::fromUtf8(partly.err),
             "zelvora-print: can't write the file " + directory.path("proofs/1_Иванов_Иван.png") +
                 "\nzelvora-print: document 4: it has no blank Альбом\n");
}

QTEST_MAIN(tst_ProofPicture)
#include "tst_ProofPicture.moc"
