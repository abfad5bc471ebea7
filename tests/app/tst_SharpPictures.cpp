#include <QtTest>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <memory>

#include "app/AppStyle.h"
#include "app/SharpIcon.h"
#include "documents/MainWindow.h"
#include "support/TempApplication.h"
#include "support/Widgets.h"

namespace {

constexpr int ratio = 2; // pixels a unit, as main() has it

/// True if the large picture of a name stands somewhere in the image, pixel by pixel, where it
/// covers the white.
bool showsLargePicture(const QImage& image, const QString& name)
{
    const QImage picture(name + "@2x.png");
    QImage expected(picture.size(), QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter(&expected).drawImage(QRect(QPoint(), expected.size()), picture);

    const QImage shown = image.convertToFormat(QImage::Format_RGB32);
    const auto standsAt = [&](int left, int top) {
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const bool covered = qAlpha(picture.pixel(x, y)) > 0;
                if (covered && shown.pixel(left + x, top + y) != expected.pixel(x, y)) {
                    return false;
                }
            }
        }
        return true;
    };
    for (int top = 0; top + picture.height() <= shown.height(); ++top) {
        for (int left = 0; left + picture.width() <= shown.width(); ++left) {
            if (standsAt(left, top)) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

/// Pictures on a screen with two pixels a unit, where Qt by itself would stretch the small ones.
class tst_SharpPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void noAttribute();
    void pictures();
    void toolBars();
    void buttons();
    void disabledButtonIsSharpToo();
    void boxesAndArrows();
    void logo();
};

void tst_SharpPictures::initTestCase()
{
    QVERIFY(loadBaseStyle());
    QCOMPARE(qApp->devicePixelRatio(), double(ratio));
}

void tst_SharpPictures::noAttribute()
{
    QVERIFY(!QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps));
}

void tst_SharpPictures::pictures()
{
    for (const char* path : {":/splash.png", ":/logo.png", ":/separator.png"}) {
        const QPixmap sharp = sharpPixmap(path);
        QCOMPARE(sharp.devicePixelRatio(), double(ratio));
        QCOMPARE(sharp.size(), QPixmap(path).size() * ratio);
    }
    QVERIFY(sharpPixmap(":/none.png").isNull());
}

void tst_SharpPictures::toolBars()
{
    TempApplication app;
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QVector<QPair<QString, QString>> bars = {{"toolBar", ":/res/edit1"},
                                                   {"toolBarTop", ":/res/forms1"}};
    for (const auto& [name, picture] : bars) {
        auto* bar = named<QToolBar>(window, name);
        const int place = name == "toolBar" ? 2 : 0;
        QWidget* button = bar->widgetForAction(bar->actions().at(place));
        QVERIFY2(showsLargePicture(button->grab().toImage(), picture), qPrintable(picture));
    }
}

void tst_SharpPictures::buttons()
{
    QDialog dialog;
    auto* push = new QPushButton(&dialog);
    auto* tool = new QToolButton(&dialog);
    auto* layout = new QVBoxLayout(&dialog);
    for (QAbstractButton* button : QVector<QAbstractButton*>{push, tool}) {
        button->setIcon(QIcon(":/res/trash.png"));
        button->setIconSize(QSize(40, 40));
        button->setProperty("btnRole1", "whiteButton");
        layout->addWidget(button);
    }
    applyBaseStyle(&dialog);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY(showsLargePicture(push->grab().toImage(), ":/res/trash"));
    QVERIFY(showsLargePicture(tool->grab().toImage(), ":/res/trash"));
}

void tst_SharpPictures::disabledButtonIsSharpToo()
{
    QDialog dialog;
    auto* button = new QPushButton(&dialog);
    button->setIcon(QIcon(":/res/trash.png"));
    button->setIconSize(QSize(40, 40));
    button->setEnabled(false);
    applyBaseStyle(&dialog);
    button->resize(60, 60);
    dialog.show();
    const QImage shown = button->grab().toImage();
    // Stretched pictures have four equal pixels in each square of two by two.
    int mixedSquares = 0;
    for (int y = 20; y < shown.height() - 21; y += ratio) {
        for (int x = 20; x < shown.width() - 21; x += ratio) {
            mixedSquares += shown.pixel(x, y) != shown.pixel(x + 1, y + 1) ? 1 : 0;
        }
    }
    QVERIFY2(mixedSquares > 20, QByteArray::number(mixedSquares));
}

void tst_SharpPictures::boxesAndArrows()
{
    QDialog dialog;
    auto* check = new QCheckBox("Дубликат", &dialog);
    auto* radio = new QRadioButton("Портрет", &dialog);
    auto* combo = new QComboBox(&dialog);
    auto* spin = new QSpinBox(&dialog);
    auto* layout = new QVBoxLayout(&dialog);
    for (QWidget* widget : QVector<QWidget*>{check, radio, combo, spin}) {
        layout->addWidget(widget);
    }
    check->setChecked(true);
    applyBaseStyle(&dialog);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    dialog.setFocus();
    const QImage shown = dialog.grab().toImage();
    for (const char* name : {"checkBoxCh", "radioButton", "arrow_down", "arrow_up"}) {
        QVERIFY2(showsLargePicture(shown, QString(":/res/") + name), name);
    }
}

void tst_SharpPictures::logo()
{
    TempApplication app;
    MainWindow window;
    window.show();
    auto* label = named<QLabel>(window, "logo");
    QCOMPARE(label->sizeHint(), QPixmap(":/logo.png").size());
    QVERIFY(showsLargePicture(label->grab().toImage(), ":/logo"));
    QVERIFY(showsLargePicture(named<QLabel>(window, "separator")->grab().toImage(), ":/separator"));
}

int main(int argc, char** argv)
{
    qputenv("QT_SCALE_FACTOR", QByteArray::number(ratio));
    QApplication application(argc, argv);
    tst_SharpPictures test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_SharpPictures.moc"
