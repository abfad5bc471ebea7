#include <QtTest>

#include <QFileInfo>
#include <QGraphicsScene>
#include <QPainter>
#include <QPrinter>
#include <QStyle>

#include <algorithm>
#include <memory>

#include "render/PrinPreviewDialog.h"
#include "render/vector/VectorProxyWidget.h"
#include "support/PdfMeasure.h"
#include "support/PrintFixture.h"

namespace {

constexpr int dpi = 600;

/// Everything that a frame can hold, on a page of 160 by 110 mm (604 by 415 units).
QJsonArray allKindsOfItems()
{
    const QString longText = "Очень длинный текст, который в свою рамку не помещается никак";
    return {
        blankItem(0, "Текст «по центру»", QRectF(10, 5, 180, 45)),
        blankItem(0, "Слева сверху", QRectF(10.3, 55.6, 180.4, 45.2),
                  {{"h_align", 0}, {"v_align", 0}}),
        blankItem(0, "Справа снизу", QRectF(10, 105, 180, 60), {{"h_align", 1}, {"v_align", 1}}),
        blankItem(0, longText, QRectF(10, 170, 120, 50), {{"v_align", 0}}),
        blankItem(0, longText, QRectF(140, 170, 120, 55), {{"v_align", 1}}),
        blankItem(0, longText, QRectF(10, 240, 160, 150), {{"line_spacing", "1,5"}}),
        blankItem(0, "<b>Жирный</b> <i>курсив</i> <u>черта</u> <s>зачёркнут</s>",
                  QRectF(200, 5, 200, 60), {{"font", "Liberation Sans"}}),
        blankItem(0, "Росчерк", QRectF(200, 70, 160, 90), {{"f_cut", 1}}),
        blankItem(0, "<font color=\"#404040\" size=\"7\">Я</font>", QRectF(400, 5, 90, 80)),
        blankItem(2, "#T", QRectF(270, 165, 150, 95), {{"columns_width", QJsonArray{80}}}),
        blankItem(2, "#T", QRectF(430, 100, 170, 300),
                  {{"columns_width", QJsonArray{90}}, {"f_cut", 1}, {"row_to", 3}}),
        blankItem(2, "#T", QRectF(190, 290, 230, 110), {{"row_from", 3}, {"font_size", 9}})};
}

QJsonObject table()
{
    return {{"#T", tableEntry({{"Алгебра и начала анализа", "5"},
                               {"Физика", "4"},
                               {"Химия", "3"},
                               {"История России", "5"},
                               {"Физическая культура и спорт", "5"}})}};
}

void setUp(QPrinter& printer, const QString& file)
{
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(file);
    printer.setResolution(dpi);
}

/// Puts each widget of the page into a proxy of the toolkit's own class, at the same place.
void usePlainProxies(QGraphicsScene* scene)
{
    const QList<QGraphicsItem*> items = scene->items(Qt::AscendingOrder);
    for (QGraphicsItem* item : items) {
        auto* proxy = dynamic_cast<VectorProxyWidget*>(item);
        if (!proxy || !proxy->widget()) {
            continue;
        }
        const QRectF place = proxy->sceneBoundingRect();
        QWidget* widget = proxy->widget();
        proxy->setWidget(nullptr);
        scene->addWidget(widget)->setGeometry(place);
    }
}

/// Inks a dot and its neighbours up to `radius` dots away, also diagonally.
void inkAround(QImage* picture, const QPoint& dot, int radius)
{
    const QPoint reach(radius, radius);
    const QRect square = QRect(dot - reach, dot + reach) & picture->rect();
    for (int y = square.top(); y <= square.bottom(); ++y) {
        std::fill_n(picture->scanLine(y) + square.left(), square.width(), uchar(0));
    }
}

/// Where a picture has ink, grown by `radius` dots to all sides.
QImage grown(const QImage& ink, int radius)
{
    QImage result(ink.size(), ink.format());
    result.fill(255);
    for (int y = 0; y < ink.height(); ++y) {
        for (int x = 0; x < ink.width(); ++x) {
            if (ink.constScanLine(y)[x] < 128) {
                inkAround(&result, QPoint(x, y), radius);
            }
        }
    }
    return result;
}

/// Dots of `ink` that have no ink of `other` within a tenth of a millimetre.
int strayDots(const QImage& ink, const QImage& other)
{
    const int radius = int(0.1 / 25.4 * dpi);
    const QImage room = grown(other, radius);
    int stray = 0;
    for (int y = 0; y < ink.height(); ++y) {
        for (int x = 0; x < ink.width(); ++x) {
            stray += ink.constScanLine(y)[x] < 128 && room.constScanLine(y)[x] >= 128 ? 1 : 0;
        }
    }
    return stray;
}

/// A page with items of all kinds, built.
struct PageOfAllKinds
{
    PageOfAllKinds()
    {
        const QVariant document = app.addDocument(table());
        const QVariant blank =
            app.addBlank(allKindsOfItems(), {{"SIZE_WIDTH", 160}, {"SIZE_HEIGHT", 110}});
        dialog = std::make_unique<PrinPreviewDialog>(document);
        QVERIFY(dialog->buildScene(dialog->pageScene(), document, blank));
    }

    PrintFixture app;
    std::unique_ptr<PrinPreviewDialog> dialog;
};

int inkDots(const QImage& image)
{
    int dots = 0;
    for (int y = 0; y < image.height(); ++y) {
        dots += int(std::count_if(image.constScanLine(y), image.constScanLine(y) + image.width(),
                                  [](uchar shade) { return shade < 128; }));
    }
    return dots;
}

} // namespace

/// The road of a proxied widget to paper: text and lines instead of the toolkit's picture, with
/// the same ink in the same places.
class tst_VectorProxyWidget : public QObject
{
    Q_OBJECT

private slots:
    void sameInkAsTheToolkitsPath();
    void clipsAsTheToolkitDoes();
    void screenIsPaintedByTheBase();
    void hiddenWidgetIsNotPrinted();
};

void tst_VectorProxyWidget::sameInkAsTheToolkitsPath()
{
    const PageOfAllKinds page;
    PrinPreviewDialog& dialog = *page.dialog;
    QPrinter vectorPrinter(QPrinter::HighResolution);
    setUp(vectorPrinter, page.app.path("vector.pdf"));
    QVERIFY(dialog.printTo(vectorPrinter));

    usePlainProxies(dialog.pageScene());
    QPrinter pixelPrinter(QPrinter::HighResolution);
    setUp(pixelPrinter, page.app.path("pixel.pdf"));
    QVERIFY(dialog.printTo(pixelPrinter));

    const PdfMeasure vector(page.app.path("vector.pdf"), dpi);
    const PdfMeasure pixel(page.app.path("pixel.pdf"), dpi);
    QVERIFY(vector.text().contains("История России"));
    QVERIFY(vector.text().contains("Жирный курсив черта зачёркнут"));
    QVERIFY(pixel.words().isEmpty()); // the toolkit's path: pictures alone
    QVERIFY(QFileInfo(page.app.path("vector.pdf")).size() < 100000);

    const QImage vectorInk = vector.image();
    const QImage pixelInk = pixel.image();
    QCOMPARE(vectorInk.size(), pixelInk.size());
    QVERIFY(inkDots(pixelInk) > 50000);
    const int rounding = 5; // dots that two painters may see differently
    QVERIFY(strayDots(vectorInk, pixelInk) <= rounding);
    QVERIFY(strayDots(pixelInk, vectorInk) <= rounding);
}

void tst_VectorProxyWidget::clipsAsTheToolkitDoes()
{
    PrintFixture app;
    const QString longText = QString("слово ").repeated(40);
    const QVariant doc = app.addDocument(table());
    const QVariant blank =
        app.addBlank({blankItem(0, longText, QRectF(50, 50, 150, 90)),
                      blankItem(2, "#T", QRectF(50, 250, 200, 90), {{"font_size", 20}})},
                     {{"SIZE_WIDTH", 160}, {"SIZE_HEIGHT", 110}});
    PrinPreviewDialog dialog(doc);
    QVERIFY(dialog.buildScene(dialog.pageScene(), doc, blank));
    QPrinter printer(QPrinter::HighResolution);
    setUp(printer, app.path("page.pdf"));
    QVERIFY(dialog.printTo(printer));

    // Nothing leaves the frame less its margins, though much more text is there; what is there
    // reaches the lower edge, cut through its letters.
    const PdfMeasure pdf(app.path("page.pdf"), dpi);
    const int margin = QApplication::style()->pixelMetric(QStyle::PM_LayoutLeftMargin);
    const double unit = 160.0 / 604;
    const QRectF label = pdf.ink(QRectF(0, 0, 160, 60));
    QVERIFY(label.left() >= (50 + margin) * unit - 0.1);
    QVERIFY(label.top() >= (50 + margin) * unit - 0.1);
    QVERIFY(label.right() <= (200 - margin) * unit + 0.1);
    QVERIFY(label.bottom() <= (140 - margin) * unit + 0.1);
    QVERIFY(label.bottom() >= (140 - margin) * unit - 2);
    const QRectF rows = pdf.ink(QRectF(0, 60, 160, 50));
    QVERIFY(rows.top() >= (250 + margin) * unit - 0.1);
    QVERIFY(rows.bottom() <= (340 - margin) * unit + 0.1);
    QVERIFY(rows.bottom() >= (340 - margin) * unit - 5);
}

void tst_VectorProxyWidget::screenIsPaintedByTheBase()
{
    const PageOfAllKinds page;
    PrinPreviewDialog& dialog = *page.dialog;
    const auto screen = [&dialog] {
        QImage image(604, 415, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        dialog.pageScene()->render(&painter);
        return image;
    };
    const QImage ours = screen();
    usePlainProxies(dialog.pageScene());
    QCOMPARE(ours, screen());
    QVERIFY(inkDots(ours.convertToFormat(QImage::Format_Grayscale8)) > 1000);
}

void tst_VectorProxyWidget::hiddenWidgetIsNotPrinted()
{
    PrintFixture app;
    const QVariant doc = app.addDocument();
    const QVariant blank = app.addBlank({blankItem(0, "Текст", QRectF(50, 50, 150, 90))});
    PrinPreviewDialog dialog(doc);
    QVERIFY(dialog.buildScene(dialog.pageScene(), doc, blank));
    for (QGraphicsItem* item : dialog.pageScene()->items()) {
        auto* proxy = dynamic_cast<VectorProxyWidget*>(item);
        if (proxy && proxy->widget()) {
            proxy->widget()->hide();
        }
    }
    QPrinter printer(QPrinter::HighResolution);
    setUp(printer, app.path("page.pdf"));
    QVERIFY(dialog.printTo(printer));
    QVERIFY(PdfMeasure(app.path("page.pdf")).ink().isNull());
}

QTEST_MAIN(tst_VectorProxyWidget)
#include "tst_VectorProxyWidget.moc"
