#include <QtTest>

#include <QGraphicsScene>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleFactory>

#include "preflight/PageImage.h"
#include "render/page/PageBuilder.h"
#include "support/PrintFixture.h"

namespace {

/// A desktop's style that leaves other distances free than the toolkit's own.
class WideStyle : public QProxyStyle
{
public:
    WideStyle()
        : QProxyStyle("Windows")
    {
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override
    {
        switch (metric) {
        case PM_LayoutLeftMargin:
        case PM_LayoutTopMargin:
        case PM_LayoutRightMargin:
        case PM_LayoutBottomMargin:
        case PM_FocusFrameHMargin:
        case PM_FocusFrameVMargin:
        case PM_HeaderMargin:
        case PM_DefaultFrameWidth:
            return 17;
        case PM_HeaderDefaultSectionSizeHorizontal:
        case PM_HeaderDefaultSectionSizeVertical:
            return 61;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }
};

/// A page with a text, a table with columns of the default width and strokes.
QImage printedPage()
{
    PrintFixture app;
    const QVariant document = app.addDocument(
        {{"#TABLE", tableEntry({{"Алгебра", "пять", "зачёт"}, {"География", "четыре", ""}})}});
    const QVariant blank =
        app.addBlank({blankItem(0, "Диплом №1", QRectF(20, 20, 300, 80)),
                      blankItem(0, "Росчерк", QRectF(400, 20, 300, 200), {{"f_cut", 1}}),
                      blankItem(2, "#TABLE", QRectF(20, 300, 500, 200), {{"f_cut", 1}})});
    QGraphicsScene page;
    PageBuilder builder;
    if (!builder.build(&page, document, blank, nullptr)) {
        return QImage();
    }
    PageImage image((page.sceneRect().size() * 2).toSize(), QImage::Format_Grayscale8);
    image.fill(Qt::white);
    QPainter painter(&image);
    page.render(&painter);
    painter.end();
    return image.copy();
}

} // namespace

/// Pages under the styles of desktops: the same ink in the same places.
class tst_PageStyle : public QObject
{
    Q_OBJECT

private slots:
    void anyStyleOfTheDesktop();
};

void tst_PageStyle::anyStyleOfTheDesktop()
{
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    const QImage expected = printedPage();
    QVERIFY(!expected.isNull());
    QApplication::setStyle(new WideStyle);
    QCOMPARE(printedPage(), expected);
}

QTEST_MAIN(tst_PageStyle)
#include "tst_PageStyle.moc"
