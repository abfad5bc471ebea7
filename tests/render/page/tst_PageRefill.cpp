#include <QtTest>

#include <QGraphicsScene>
#include <QHeaderView>
#include <QPainter>
#include <QRandomGenerator>
#include <QSqlQuery>
#include <QTableWidget>

#include "app/AppHelpers.h"
#include "preflight/PageImage.h"
#include "render/page/FrameLabel.h"
#include "render/page/PageBuilder.h"
#include "render/page/QrPixmapItem.h"
#include "store/DataBase.h"
#include "support/PrintFixture.h"
#include "support/PrintProgram.h"

namespace {

/// Everything of a page that can be seen, as text, an item a line, so that a difference says what
/// and where it is.
QStringList description(const PageBuilder& builder)
{
    const auto box = [](const QRectF& rect) {
        return QString("%1,%2 %3x%4 ")
            .arg(rect.x(), 0, 'g', 12)
            .arg(rect.y(), 0, 'g', 12)
            .arg(rect.width(), 0, 'g', 12)
            .arg(rect.height(), 0, 'g', 12);
    };
    QStringList lines;
    for (const PageItem& item : builder.items()) {
        QString line = QString::number(item.number) + ": " + item.expandedText + " | " +
                       box(item.place()) + box(item.graphicsItem()->sceneBoundingRect());
        if (item.symbol) {
            line += QString::number(item.symbol->pixmap().width());
        } else {
            line += box(item.frame.container->geometry()) + box(item.frame.content->geometry()) +
                    box(item.frame.content->widget()->rect()) + box(item.frame.strokeInk());
        }
        if (item.frame.stroke) {
            line += box(item.frame.stroke->geometry());
        }
        if (item.frame.label) {
            line += item.frame.label->text() + (item.frame.label->isWhole() ? "" : " not whole");
        }
        if (const QTableWidget* table = item.frame.table) {
            line += box(QRectF(table->viewport()->geometry()));
            for (int column = 0; column < table->columnCount(); ++column) {
                line += QString("c%1+%2 ")
                            .arg(table->columnViewportPosition(column))
                            .arg(table->columnWidth(column));
            }
            for (int row = 0; row < table->rowCount(); ++row) {
                line += QString("r%1+%2 ")
                            .arg(table->rowViewportPosition(row))
                            .arg(table->rowHeight(row));
                for (int column = 0; column < table->columnCount(); ++column) {
                    line += table->item(row, column)->text() + '|' +
                            table->item(row, column)->font().key() + ' ';
                }
            }
        }
        lines << line;
    }
    return lines;
}

/// The page as a printer gets it, two dots a scene unit.
QImage inkOf(const PageBuilder& builder)
{
    PageImage image((builder.page()->sceneRect().size() * 2).toSize(), QImage::Format_Grayscale8);
    image.fill(Qt::white);
    QPainter painter(&image);
    builder.page()->render(&painter);
    painter.end();
    return image.copy();
}

bool hasInk(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        const uchar* line = image.constScanLine(y);
        if (std::any_of(line, line + image.width(), [](uchar shade) { return shade < 128; })) {
            return true;
        }
    }
    return false;
}

class Randomness
{
public:
    explicit Randomness(quint32 seed)
        : m_generator(seed)
    {
    }

    int number(int from, int to) { return m_generator.bounded(from, to + 1); }
    bool chance(int percent) { return number(1, 100) <= percent; }

    template <class List>
    auto oneOf(const List& list)
    {
        return list[number(0, list.size() - 1)];
    }

    QString words(int count)
    {
        static const QStringList all = {"Константинопольский",
                                        "и",
                                        "от",
                                        "<b>жирно</b>",
                                        "&",
                                        "А&amp;Б",
                                        "0012345",
                                        "Ёжик;",
                                        "в",
                                        "«кавычки»",
                                        "№",
                                        "<i>курсив</i>",
                                        "программирование",
                                        "Русский ",
                                        "fi",
                                        "\tязык\u00a0дня",
                                        "x",
                                        "漢字"};
        QStringList words;
        for (int i = 0; i < count; ++i) {
            words << oneOf(all);
        }
        return words.join(' ');
    }

    QString text()
    {
        switch (number(0, 6)) {
        case 0:
            return QString();
        case 1:
            return words(60);
        case 2:
            return words(2) + '\n' + words(3);
        case 3:
            return QString("Длинноеслово").repeated(8);
        case 4:
            return "  " + words(1) + "   ";
        default:
            return words(number(1, 5));
        }
    }

private:
    QRandomGenerator m_generator;
};

QJsonObject randomTable(Randomness& random)
{
    const int columns = random.chance(10) ? 0 : random.chance(80) ? 3 : 2;
    QVector<QStringList> rows;
    for (int rest = random.oneOf(QVector<int>{0, 1, 2, 7, 30}); rest > 0; --rest) {
        QStringList row;
        for (int column = 0; column < 3; ++column) {
            row << (random.chance(40) ? random.text() : random.words(1));
        }
        rows << row;
    }
    QJsonObject entry = tableEntry(rows);
    QJsonArray columnList;
    for (int i = 0; i < columns; ++i) {
        columnList.append(QJsonObject{{"name", "Столбец"}});
    }
    entry["columns"] = columnList;
    return entry;
}

QJsonArray randomItems(Randomness& random)
{
    static const QStringList values = {"#LNAME #FNAME #MNAME", "#A",    "#A, #B и #LNAME^.",
                                       "#ISSUE_DATE",          "#T",    "#T2",
                                       "постоянный текст",     "#NONE", "#A\\n#B"};
    QJsonArray items;
    for (int i = 0; i < 12; ++i) {
        const QRectF frame(random.number(-20, 900) + (random.chance(20) ? 0.37 : 0),
                           random.number(-20, 700),
                           random.oneOf(QVector<double>{5, 60, 200.5, 500}),
                           random.oneOf(QVector<double>{5, 30.25, 60, 200}));
        const int kind = random.oneOf(QVector<int>{0, 0, 0, 1, 2, 2});
        QJsonObject more = {{"font_size", random.oneOf(QVector<int>{0, 8, 12, 19})},
                            {"font", random.oneOf(QStringList{"", "DejaVu Sans"})},
                            {"h_align", random.number(0, 2)},
                            {"v_align", random.number(0, 2)},
                            {"line_spacing", random.oneOf(QStringList{"1", "1,5", "0,3"})},
                            {"f_cut", random.chance(40) ? 1 : 0},
                            {"row_from", random.oneOf(QVector<int>{1, 1, 3})},
                            {"row_to", random.oneOf(QVector<int>{2, 5, 40})},
                            {"columns_width", QJsonArray{random.number(3, 150), 60}}};
        const QString value =
            kind == 2 ? random.oneOf(QStringList{"#T", "#T2"}) : random.oneOf(values);
        items.append(blankItem(kind, value, frame, more));
    }
    return items;
}

QVariant addRandomDocument(PrintFixture& app, Randomness& random)
{
    QJsonObject content = {{"#A", valueEntry(0, random.text())},
                           {"#B", valueEntry(5, random.text())}};
    if (random.chance(85)) {
        content["#T"] = randomTable(random);
    }
    if (random.chance(85)) {
        content["#T2"] = randomTable(random);
    }
    return app.addDocument(content, {{"LNAME", random.text().left(40)}});
}

} // namespace

/// A page that was laid out for another document and got this one's texts and rows against a page
/// laid out afresh: what is on it, where, and with which ink.
class tst_PageRefill : public QObject
{
    Q_OBJECT

private slots:
    void sampleBlanks();
    void randomBlanks_data();
    void randomBlanks();
    void widgetsStay();
    void changedBlankIsLaidOutAnew();
    void changedDocumentIsReadAgain();
    void printedPageIsPutBack();
    void textsOfAnySizeAndMarkup();
    void unreadableDocument();

private:
    static void compare(PageBuilder& refilled, const QVariant& document, const QVariant& blank);
};

void tst_PageRefill::compare(PageBuilder& refilled, const QVariant& document, const QVariant& blank)
{
    QVERIFY(refilled.refill(document, blank, nullptr));
    QGraphicsScene page;
    PageBuilder fresh;
    QVERIFY(fresh.build(&page, document, blank, nullptr));
    const QStringList expected = description(fresh);
    const QStringList found = description(refilled);
    QCOMPARE(found.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        QCOMPARE(found[i], expected[i]);
    }
    QCOMPARE(refilled.page()->sceneRect(), page.sceneRect());
    QCOMPARE(refilled.background() != nullptr, fresh.background() != nullptr);
    const QImage ink = inkOf(fresh);
    QVERIFY(hasInk(ink));
    QVERIFY2(inkOf(refilled) == ink, qPrintable(document.toString() + " on " + blank.toString()));
    // What was painted has laid out anything that waited for it.
    QCOMPARE(description(refilled), description(fresh));
}

void tst_PageRefill::sampleBlanks()
{
    TempApplication app(TempApplication::Database::None);
    QCOMPARE(makeSample(app.path()).exitCode, 0);
    QVERIFY(dataBase.open());
    QSqlQuery blanks;
    QVERIFY(blanks.exec("SELECT ID, FORM_ID FROM blanks"));
    int pages = 0;
    while (blanks.next()) {
        const QVariant blank = blanks.value(0);
        QSqlQuery documents;
        documents.prepare("SELECT ID FROM docs WHERE DOC_TYPE = ? AND TEMPLATE = 0 ORDER BY "
                          "length(CONTENT) DESC, ID LIMIT 5");
        documents.addBindValue(blanks.value(1));
        QVERIFY(documents.exec() && documents.next());
        QGraphicsScene page;
        PageBuilder builder;
        QVERIFY(builder.build(&page, documents.value(0), blank, nullptr));
        while (documents.next()) {
            compare(builder, documents.value(0), blank);
            ++pages;
        }
    }
    QCOMPARE(pages, 5 * 4);
}

void tst_PageRefill::randomBlanks_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 1; seed <= 12; ++seed) {
        QTest::addRow("%d", seed) << seed;
    }
}

void tst_PageRefill::randomBlanks()
{
    QFETCH(int, seed);
    Randomness random(seed);
    PrintFixture app;
    const QVariant blank = app.addBlank(randomItems(random));
    QGraphicsScene page;
    PageBuilder builder;
    QVERIFY(builder.build(&page, addRandomDocument(app, random), blank, nullptr));
    for (int i = 0; i < 6; ++i) {
        compare(builder, addRandomDocument(app, random), blank);
    }
}

void tst_PageRefill::widgetsStay()
{
    PrintFixture app;
    const QVariant blank = app.addBlank({blankItem(0, "#LNAME", QRectF(50, 50, 300, 60)),
                                         blankItem(2, "#T", QRectF(50, 200, 300, 200)),
                                         blankItem(1, "#LNAME", QRectF(500, 50, 98, 98))});
    const QVariant first = app.addDocument({{"#T", tableEntry({{"а", "б"}, {"в", "г"}})}});
    const QVariant second =
        app.addDocument({{"#T", tableEntry({{"д", "е"}})}}, {{"LNAME", "Петров"}});
    QGraphicsScene page;
    PageBuilder builder;
    QVERIFY(builder.build(&page, first, blank, nullptr));
    const QPointer<FrameLabel> label = builder.items()[0].frame.label;
    const QPointer<QTableWidget> table = builder.items()[1].frame.table;
    QVERIFY(builder.refill(second, blank, nullptr));
    QVERIFY(label && label == builder.items()[0].frame.label);
    QVERIFY(label->text().contains(">Петров<"));
    QVERIFY(table && table == builder.items()[1].frame.table);
    QCOMPARE(table->rowCount(), 1);
    QCOMPARE(table->item(0, 1)->text(), QString("е"));
}

void tst_PageRefill::changedDocumentIsReadAgain()
{
    PrintFixture app;
    const QVariant document = app.addDocument({}, {{"LNAME", "Иванов"}});
    const QVariant blank = app.addBlank({blankItem(0, "#LNAME", QRectF(50, 50, 300, 60))});
    QGraphicsScene page;
    PageBuilder builder;
    QVERIFY(builder.build(&page, document, blank, nullptr));
    QCOMPARE(builder.items()[0].expandedText, QString("Иванов"));
    app.exec("UPDATE docs SET LNAME = 'Петров' WHERE ID = ?", {document});
    compare(builder, document, blank);
    QCOMPARE(builder.items()[0].expandedText, QString("Петров"));
}

void tst_PageRefill::changedBlankIsLaidOutAnew()
{
    PrintFixture app;
    const QVariant document = app.addDocument();
    const QVariant blank = app.addBlank({blankItem(0, "Один", QRectF(50, 50, 300, 60))});
    const QVariant other = app.addBlank({blankItem(0, "Другой", QRectF(90, 50, 300, 60))});
    QGraphicsScene page;
    PageBuilder builder;
    QVERIFY(builder.build(&page, document, blank, nullptr));
    compare(builder, document, other);
    compare(builder, document, blank);
    app.exec("UPDATE blanks SET FONT_SIZE = 30 WHERE ID = ?", {blank});
    compare(builder, document, blank);
    QCOMPARE(builder.items()[0].frame.label->font().pointSize(), 30);
    // A background that was put there in the meantime belongs to the page.
    app.exec("UPDATE blanks SET BACKGROUND_IMG = 'back.png' WHERE ID = ?", {blank});
    compare(builder, document, blank);
    QVERIFY(!builder.background());
    QImage picture(100, 100, QImage::Format_RGB32);
    picture.fill(Qt::black);
    QVERIFY(picture.save(app.path("back.png")));
    compare(builder, document, blank);
    QVERIFY(builder.background());
}

void tst_PageRefill::printedPageIsPutBack()
{
    PrintFixture app;
    const QVariant document = app.addDocument();
    const QVariant blank = app.addBlank({blankItem(0, "#LNAME", QRectF(50.5, 50, 300, 60)),
                                         blankItem(1, "#LNAME", QRectF(500, 50.1, 98, 98))});
    QGraphicsScene page;
    PageBuilder builder;
    QVERIFY(builder.build(&page, document, blank, nullptr));
    for (const PageItem& item : builder.items()) {
        item.graphicsItem()->moveBy(-7.559, 11);
    }
    builder.restore();
    QCOMPARE(builder.items()[0].graphicsItem()->pos(), QPointF(50.5, 50));
    QCOMPARE(builder.items()[1].graphicsItem()->pos(), QPointF(500, 50.1));
    builder.items()[0].graphicsItem()->moveBy(5, 5);
    compare(builder, app.addDocument({}, {{"LNAME", "Петров"}}), blank);
}

void tst_PageRefill::textsOfAnySizeAndMarkup()
{
    constexpr int mostCharacters = 1 << 15; // of a text that is shown whole
    PrintFixture app;
    QImage picture(20, 20, QImage::Format_RGB32);
    picture.fill(Qt::black);
    QVERIFY(picture.save(app.path("mark.png")));
    const QString mark = "<img src=\"mark.png\"> и слово";
    const QString tooLong = QString("слово ").repeated(6000);
    const QVariant blank = app.addBlank({blankItem(0, "№ #A", QRectF(50, 50, 300, 60)),
                                         blankItem(2, "#T", QRectF(50, 200, 300, 200))});
    const auto document = [&app](const QString& text) {
        return app.addDocument({{"#A", valueEntry(0, text)}, {"#T", tableEntry({{text, "x"}})}});
    };
    QGraphicsScene page;
    PageBuilder builder;
    QVERIFY(builder.build(&page, document("Первый"), blank, nullptr));
    for (const QString& text : {mark, QString("Второй"), tooLong, mark + '.',
                                QString("<b>").repeated(3000) + "Третий", QString("Четвёртый")})
    {
        compare(builder, document(text), blank);
        QCOMPARE(builder.items()[0].frame.label->isWhole(), text.size() < 5000);
        QCOMPARE(builder.items()[1].frame.table->item(0, 0)->text(), text.left(mostCharacters));
    }
}

void tst_PageRefill::unreadableDocument()
{
    PrintFixture app;
    const QVariant document = app.addDocument();
    const QVariant blank = app.addBlank({blankItem(0, "#LNAME", QRectF(50, 50, 300, 60))});
    QGraphicsScene page;
    PageBuilder builder;
    QVERIFY(builder.build(&page, document, blank, nullptr));
    QString error;
    QVERIFY(!builder.refill(4711, blank, &error));
    QVERIFY2(error.startsWith("SQL Error (docs): "), qPrintable(error));
    QVERIFY(page.items().isEmpty());
    QVERIFY(builder.items().isEmpty());
    compare(builder, document, blank);
}

QTEST_MAIN(tst_PageRefill)
#include "tst_PageRefill.moc"
