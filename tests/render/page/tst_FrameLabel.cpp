#include <QtTest>

#include <QGraphicsLinearLayout>
#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QPainter>
#include <QStyle>

#include "render/page/FrameLabel.h"
#include "render/vector/PaintForwarder.h"

namespace {

const QSizeF notTold(-1, -1);

/// A frame like those of a page with a label in it; returns the label's place in the frame and the
/// frame's own size.
QPair<QRectF, QSizeF> place(QLabel* label, const QString& text, const QFont& font, int percent,
                            const QSizeF& size)
{
    QGraphicsScene scene;
    auto* frame = new QGraphicsProxyWidget;
    auto* layout = new QGraphicsLinearLayout(Qt::Vertical);
    layout->setSpacing(1.0);
    frame->setLayout(layout);
    auto* proxy = new QGraphicsProxyWidget;
    proxy->setWidget(label);
    layout->addItem(proxy);
    label->setFont(font);
    label->setText(QString("<p style=\"line-height: %1%;\">%2</p>")
                       .arg(percent)
                       .arg(QString(text).replace('\n', "<br>")));
    label->setWordWrap(true);
    frame->setGeometry(QRectF(QPointF(20, 30), size));
    scene.addItem(frame);
    return {proxy->geometry(), frame->size()};
}

} // namespace

/// The label that spares its size hints against the toolkit's own: same place, same frame.
class tst_FrameLabel : public QObject
{
    Q_OBJECT

private slots:
    void samePlaceAsALabel_data();
    void samePlaceAsALabel();
    void pageIsPaintedAsTheToolkitDoes_data();
    void pageIsPaintedAsTheToolkitDoes();
    void hintsAreSparedInALargeFrame();
    void hintsAreTheToolkitsInASmallFrame();
};

void tst_FrameLabel::samePlaceAsALabel_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QFont>("font");
    const QFont serif("Liberation Serif", 12);
    const QFont large("DejaVu Sans", 22);
    QTest::newRow("empty") << "" << serif;
    QTest::newRow("short") << "Иванов" << serif;
    QTest::newRow("words") << "Иванов Иван Иванович" << serif;
    QTest::newRow("large") << "Иванов Иван" << large;
    QTest::newRow("long word") << "Рентгеноэлектрокардиографический" << serif;
    QTest::newRow("lines") << "первая\nвторая строка\n\nчетвёртая" << serif;
    QTest::newRow("blanks") << "  два   слова  " << serif;
    QTest::newRow("markup") << "<b>Жирный</b> <font size=\"7\">большой</font>" << serif;
    QTest::newRow("entity") << "А&nbsp;Б &amp; В" << serif;
    QTest::newRow("other scripts") << "漢字 テスト שלום 🙂" << serif;
    QTest::newRow("no-break space, tab") << "А\u00a0Б\tВ" << serif;
}

void tst_FrameLabel::samePlaceAsALabel()
{
    QFETCH(QString, text);
    QFETCH(QFont, font);
    int spared = 0;
    for (const int percent : {50, 100, 150}) {
        for (const double width : {5.0, 60.0, 117.3, 160.0, 250.0, 700.0}) {
            for (const double height : {5.0, 24.5, 40.0, 45.0, 64.0, 200.0}) {
                const QSizeF size(width, height);
                const auto expected =
                    place(new PageWidget<QLabel>(text), text, font, percent, size);
                auto* label = new FrameLabel;
                label->setFont(font);
                const int margin = QApplication::style()->pixelMetric(QStyle::PM_LayoutLeftMargin);
                label->setAvailableSize(size - QSizeF(2 * margin, 2 * margin), text,
                                        percent / 100.0);
                spared += label->minimumSizeHint() == QSize(0, 0) ? 1 : 0;
                const auto found = place(label, text, font, percent, size);
                QVERIFY2(found == expected,
                         qPrintable(QString("%1% in %2 x %3").arg(percent).arg(width).arg(height)));
            }
        }
    }
    QVERIFY(spared > 0 || text.contains('<') || text.contains('&'));
}

void tst_FrameLabel::pageIsPaintedAsTheToolkitDoes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QSize>("size");
    QTest::newRow("one line") << "Иванов Иван" << QSize(300, 61);
    QTest::newRow("lines") << "первая<br>вторая строка<br>третья" << QSize(220, 150);
    QTest::newRow("markup") << "<b>Жирный</b> <font color=\"#707070\">серый</font>"
                            << QSize(300, 60);
    QTest::newRow("cut off") << QString("слово ").repeated(40) << QSize(120, 50);
    QTest::newRow("long word") << "Рентгеноэлектрокардиографический" << QSize(90, 45);
}

void tst_FrameLabel::pageIsPaintedAsTheToolkitDoes()
{
    QFETCH(QString, text);
    QFETCH(QSize, size);
    constexpr int scale = 4;
    for (const int horizontal : {Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter}) {
        for (const int vertical : {Qt::AlignTop, Qt::AlignBottom, Qt::AlignVCenter}) {
            for (const int percent : {70, 100, 115}) {
                FrameLabel label;
                label.setFont(QFont("Liberation Serif", 13));
                label.setWordWrap(true);
                label.setStyleSheet("background: transparent; border: 0;");
                label.setAlignment(Qt::Alignment(horizontal | vertical));
                label.setText(
                    QString("<p style=\"line-height: %1%;\">%2</p>").arg(percent).arg(text));
                label.resize(size);
                const auto painted = [&](bool byToolkit) {
                    QImage image(size * scale, QImage::Format_RGB32);
                    image.fill(Qt::white);
                    QPainter painter(&image);
                    painter.scale(scale, scale);
                    if (byToolkit) {
                        PaintForwarder forwarder(&painter, size, label.logicalDpiX());
                        label.render(&forwarder, QPoint(), QRegion(), QWidget::RenderFlags());
                    } else {
                        label.paintOnPage(painter, QRect(QPoint(0, 0), size));
                    }
                    return image;
                };
                const QImage expected = painted(true);
                QImage nothing(expected.size(), expected.format());
                nothing.fill(Qt::white);
                QVERIFY(expected != nothing);
                QVERIFY2(
                    painted(false) == expected,
                    qPrintable(QString("%1 %2 %3%").arg(horizontal).arg(vertical).arg(percent)));
            }
        }
    }
}

void tst_FrameLabel::hintsAreSparedInALargeFrame()
{
    FrameLabel label;
    label.setFont(QFont("Liberation Serif", 12));
    label.setAvailableSize(QSizeF(300.5, 60), "Иванов", 1.0);
    QCOMPARE(label.minimumSizeHint(), QSize(0, 0));
    QCOMPARE(label.sizeHint(), QSizeF(300.5, 60).toSize());
}

void tst_FrameLabel::hintsAreTheToolkitsInASmallFrame()
{
    const QFont font("Liberation Serif", 12);
    PageWidget<QLabel> plain("Иванов Иван");
    plain.setFont(font);
    for (const QSizeF& room : {notTold, QSizeF(30, 60), QSizeF(300, 10)}) {
        FrameLabel label;
        label.setText("Иванов Иван");
        label.setFont(font);
        if (room != notTold) {
            label.setAvailableSize(room, "Иванов Иван", 1.0);
        }
        QCOMPARE(label.minimumSizeHint(), plain.minimumSizeHint());
        QCOMPARE(label.sizeHint(), plain.sizeHint());
    }
}

QTEST_MAIN(tst_FrameLabel)
#include "tst_FrameLabel.moc"
