#include <QtTest>

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <QSplitter>
#include <QStyleOptionComboBox>
#include <QStyleOptionSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTextCodec>
#include <QToolButton>

#include "app/AppStyle.h"

namespace {

const QColor accent("#7C99FF");
const QColor white("#FFFFFF");

/// Border of the editors on each side, pixels.
constexpr int border = 1;

/// The kinds of editors that the base style sheet dresses alike.
const QStringList editorKinds{"QLineEdit", "QPlainTextEdit", "QDateEdit", "QComboBox", "QSpinBox"};

QWidget* createEditor(const QString& kind, QWidget* parent)
{
    if (kind == "QLineEdit") {
        return new QLineEdit(parent);
    }
    if (kind == "QPlainTextEdit") {
        return new QPlainTextEdit(parent);
    }
    if (kind == "QDateEdit") {
        auto* edit = new QDateEdit(parent);
        edit->setCalendarPopup(true);
        return edit;
    }
    if (kind == "QComboBox") {
        return new QComboBox(parent);
    }
    return new QSpinBox(parent);
}

QImage imageOf(QWidget* widget)
{
    return widget->grab().toImage();
}

/// True for the accent, up to the rounding where two strokes of a picture overlap.
bool isAccent(const QColor& color)
{
    return qAbs(color.red() - accent.red()) <= 1 && qAbs(color.green() - accent.green()) <= 1 &&
           qAbs(color.blue() - accent.blue()) <= 1;
}

/// Colour in the middle of the left edge, where a border shows.
QColor leftEdge(QWidget* widget)
{
    const QImage image = imageOf(widget);
    return image.pixelColor(0, image.height() / 2);
}

/// Colour near the middle of the upper edge: inside a border, above any text.
QColor upperInside(QWidget* widget)
{
    const QImage image = imageOf(widget);
    return image.pixelColor(image.width() / 2, 3);
}

/// True if at least one pixel of the part has exactly this colour.
bool hasColor(const QImage& image, const QRect& part, const QColor& color)
{
    const QRect inside = part & image.rect();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            if (image.pixelColor(x, y) == color) {
                return true;
            }
        }
    }
    return false;
}

/// Columns from the first to the last that hold anything but white.
int inkWidth(const QImage& image, const QRect& part)
{
    int first = part.right() + 1;
    int last = part.left() - 1;
    for (int x = part.left(); x <= part.right(); ++x) {
        for (int y = part.top(); y <= part.bottom(); ++y) {
            if (image.pixelColor(x, y) != white) {
                first = qMin(first, x);
                last = x;
            }
        }
    }
    return qMax(0, last - first + 1);
}

/// True if the picture, painted over white, stands at this place of the image. Only the pixels
/// that the picture covers are compared.
bool showsPicture(const QImage& image, const QPoint& place, const QString& path)
{
    const QImage picture(path);
    QImage expected(picture.size(), QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter(&expected).drawImage(0, 0, picture);
    if (!image.rect().contains(QRect(place, picture.size()))) {
        return false;
    }
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const bool covered = picture.pixelColor(x, y).alpha() > 0;
            if (covered && image.pixelColor(place + QPoint(x, y)) != expected.pixelColor(x, y)) {
                return false;
            }
        }
    }
    return true;
}

} // namespace

/// The compiled-in pictures and the base style sheet, measured on real widgets.
class tst_Resources : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void pictures_data();
    void pictures();
    void iconsAreOfTheAccent_data();
    void iconsAreOfTheAccent();
    void pathWithoutLeadingSlash();

    void styleSheetIsUtf8();
    void styleSheetPicturesExist();

    void windowBackground();
    void labels();
    void indicators_data();
    void indicators();
    void arrows();
    void spinBoxButtons();
    void editors_data();
    void editors();
    void editorsInTables_data();
    void editorsInTables();
    void disabledEditors_data();
    void disabledEditors();
    void tabs();
    void coloredButtons_data();
    void coloredButtons();
    void whiteButtons_data();
    void whiteButtons();
    void unknownRole();

private:
    /// Shows the dialog with what the test has put into it.
    void show();

    QScopedPointer<QDialog> m_dialog;
};

void tst_Resources::initTestCase()
{
    QVERIFY(loadBaseStyle());
}

void tst_Resources::init()
{
    m_dialog.reset(new QDialog);
    m_dialog->resize(400, 300);
    m_dialog->setStyleSheet(baseStyleSheet);
}

void tst_Resources::cleanup()
{
    m_dialog.reset();
}

void tst_Resources::show()
{
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.data()));
    m_dialog->setFocus(); // a list to choose from looks otherwise while it has the keyboard
}

void tst_Resources::pictures_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QSize>("size");

    const QSize toolbarIcon(40, 40);
    for (const char* name :
         {"blankedit", "blanks", "edit1", "export", "forms1", "forms2", "load", "minus", "plus",
          "printer", "qr", "save", "table", "text-box", "trash"})
    {
        QTest::newRow(name) << QString(":/res/%1").arg(name) << toolbarIcon;
    }
    const QSize indicator(20, 20);
    for (const char* name : {"checkBox", "checkBoxCh", "radioButton", "radioButtonCh"}) {
        QTest::newRow(name) << QString(":/res/%1").arg(name) << indicator;
    }
    QTest::newRow("arrow_down") << ":/res/arrow_down" << QSize(22, 13);
    QTest::newRow("arrow_up") << ":/res/arrow_up" << QSize(22, 10);
    QTest::newRow("calendar_next") << ":/res/calendar_next" << QSize(32, 32);
    QTest::newRow("calendar_prev") << ":/res/calendar_prev" << QSize(32, 32);
    QTest::newRow("zelvora") << ":/res/zelvora" << QSize(128, 128);
    QTest::newRow("logo") << ":/logo" << QSize(172, 48);
    QTest::newRow("separator") << ":/separator" << QSize(13, 48);
    QTest::newRow("splash") << ":/splash" << QSize(600, 340);
}

void tst_Resources::pictures()
{
    QFETCH(QString, path);
    QFETCH(QSize, size);

    const QPixmap picture(path + ".png");
    QVERIFY(!picture.isNull());
    QCOMPARE(picture.size(), size);

    const QPixmap twice(path + "@2x.png");
    QVERIFY(!twice.isNull());
    QCOMPARE(twice.size(), 2 * size);
    QCOMPARE(twice.devicePixelRatio(), 2.0);
}

void tst_Resources::iconsAreOfTheAccent_data()
{
    QTest::addColumn<QString>("path");
    for (const char* name :
         {"arrow_down", "arrow_up", "blankedit", "blanks", "edit1", "export", "forms1", "forms2",
          "load", "minus", "plus", "printer", "qr", "save", "table", "text-box", "trash"})
    {
        QTest::newRow(name) << QString(":/res/%1.png").arg(name);
    }
}

void tst_Resources::iconsAreOfTheAccent()
{
    QFETCH(QString, path);
    const QImage image(path);
    QVERIFY(image.hasAlphaChannel());
    int covered = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() == 255) {
                QVERIFY(isAccent(image.pixelColor(x, y)));
                ++covered;
            }
        }
    }
    QVERIFY(covered > 0);
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
}

void tst_Resources::pathWithoutLeadingSlash()
{
    QVERIFY(!QIcon(":res/plus.png").pixmap(40, 40).isNull());
    QCOMPARE(QPixmap(":res/plus.png").toImage(), QPixmap(":/res/plus.png").toImage());
}

void tst_Resources::styleSheetIsUtf8()
{
    QFile file(":/res/baseStyle.css");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(!bytes.isEmpty());

    QTextCodec::ConverterState state;
    const QString text =
        QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    QCOMPARE(state.invalidChars, 0);
    QCOMPARE(state.remainingChars, 0);
    QCOMPARE(baseStyleSheet, text);
}

void tst_Resources::styleSheetPicturesExist()
{
    const QRegularExpression url("url\\(([^)]*)\\)");
    auto match = url.globalMatch(baseStyleSheet);
    QVERIFY(match.hasNext());
    while (match.hasNext()) {
        const QString path = match.next().captured(1);
        QVERIFY2(!QPixmap(path).isNull(), qPrintable(path));
    }
}

void tst_Resources::windowBackground()
{
    QMainWindow mainWindow;
    QSplitter splitter;
    for (QWidget* window : QList<QWidget*>{m_dialog.data(), &mainWindow, &splitter}) {
        window->setStyleSheet(baseStyleSheet);
        window->resize(200, 100);
        window->show();
        QCOMPARE(imageOf(window).pixelColor(100, 50), white);
    }
}

void tst_Resources::labels()
{
    auto* label = new QLabel("ФИО", m_dialog.data());
    auto* button = new QRadioButton("Портрет", m_dialog.data());
    show();
    for (QWidget* widget : QList<QWidget*>{label, button}) {
        QCOMPARE(widget->font().family(), QString("Roboto"));
        QCOMPARE(widget->font().pixelSize(), 12);
        QCOMPARE(widget->font().weight(), int(QFont::Normal));
        QCOMPARE(widget->font().style(), QFont::StyleNormal);
        QCOMPARE(widget->palette().color(QPalette::WindowText), QColor("#404040"));
    }
}

void tst_Resources::indicators_data()
{
    QTest::addColumn<bool>("radio");
    QTest::addColumn<bool>("checked");
    QTest::addColumn<QString>("path");
    QTest::newRow("radio button") << true << false << ":/res/radioButton.png";
    QTest::newRow("radio button, checked") << true << true << ":/res/radioButtonCh.png";
    QTest::newRow("check box") << false << false << ":/res/checkBox.png";
    QTest::newRow("check box, checked") << false << true << ":/res/checkBoxCh.png";
}

void tst_Resources::indicators()
{
    QFETCH(bool, radio);
    QFETCH(bool, checked);
    QFETCH(QString, path);

    QAbstractButton* button = nullptr;
    if (radio) {
        button = new QRadioButton("Альбом", m_dialog.data());
    } else {
        button = new QCheckBox("Альбом", m_dialog.data());
    }
    button->move(20, 20);
    button->setChecked(checked);
    show();

    QStyleOptionButton option;
    option.initFrom(button);
    const QRect place = button->style()->subElementRect(
        radio ? QStyle::SE_RadioButtonIndicator : QStyle::SE_CheckBoxIndicator, &option, button);
    QCOMPARE(place.size(), QSize(20, 20));
    const QImage shown = imageOf(m_dialog.data());
    QVERIFY(showsPicture(shown, button->pos() + place.topLeft(), path));

    button->setEnabled(false);
    QVERIFY(!showsPicture(imageOf(m_dialog.data()), button->pos() + place.topLeft(), path));
}

void tst_Resources::arrows()
{
    auto* combo = new QComboBox(m_dialog.data());
    combo->setGeometry(20, 20, 200, 30);
    auto* date = new QDateEdit(m_dialog.data());
    date->setCalendarPopup(true);
    date->setGeometry(20, 80, 200, 30);
    show();

    for (QWidget* widget : QList<QWidget*>{combo, date}) {
        QStyleOptionComboBox option;
        option.initFrom(widget);
        const QRect button = widget->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                             QStyle::SC_ComboBoxArrow, widget);
        QCOMPARE(button.size(), QSize(28, 28));
        QVERIFY(button.right() >= widget->width() - 2);

        const QRect arrow = QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, QSize(22, 13),
                                                button.translated(widget->pos()));
        QVERIFY(showsPicture(imageOf(m_dialog.data()), arrow.topLeft(), ":/res/arrow_down.png"));
    }
}

void tst_Resources::spinBoxButtons()
{
    auto* spin = new QSpinBox(m_dialog.data());
    spin->setRange(0, 10);
    spin->setValue(5);
    spin->setGeometry(20, 20, 120, 30);
    show();

    QStyleOptionSpinBox option;
    option.initFrom(spin);
    option.subControls = QStyle::SC_All;
    const auto partRect = [&](QStyle::SubControl part) {
        return spin->style()->subControlRect(QStyle::CC_SpinBox, &option, part, spin);
    };
    const QRect up = partRect(QStyle::SC_SpinBoxUp);
    const QRect down = partRect(QStyle::SC_SpinBoxDown);
    QCOMPARE(up.size(), QSize(22, 10));
    QCOMPARE(down.size(), QSize(22, 13));
    QVERIFY(!up.intersects(down));

    const QImage shown = imageOf(spin);
    QVERIFY(showsPicture(shown, up.topLeft(), ":/res/arrow_up.png"));
    QVERIFY(showsPicture(shown, down.topLeft(), ":/res/arrow_down.png"));

    QTest::mouseClick(spin, Qt::LeftButton, {}, up.center());
    QCOMPARE(spin->value(), 6);
    QTest::mouseClick(spin, Qt::LeftButton, {}, down.center());
    QTest::mouseClick(spin, Qt::LeftButton, {}, down.center());
    QCOMPARE(spin->value(), 4);
}

void tst_Resources::editors_data()
{
    QTest::addColumn<QString>("kind");
    for (const QString& kind : editorKinds) {
        QTest::newRow(qPrintable(kind)) << kind;
    }
}

void tst_Resources::editors()
{
    QFETCH(QString, kind);
    QWidget* editor = createEditor(kind, m_dialog.data());
    editor->move(20, 20);
    show();

    QCOMPARE(editor->minimumHeight(), 28 + 2 * border);
    QCOMPARE(editor->font().family(), QString("Roboto"));
    QCOMPARE(editor->font().pixelSize(), 14);
    QCOMPARE(editor->palette().color(QPalette::Text), QColor("#404040"));
    QCOMPARE(leftEdge(editor), accent);

    // The round corner leaves the window's background visible at the very corner.
    const QImage shown = imageOf(m_dialog.data());
    QVERIFY(shown.pixelColor(20, 20).lightness() > 240);
    QVERIFY(hasColor(shown, QRect(23, 20, 10, 1), accent));
}

void tst_Resources::editorsInTables_data()
{
    editors_data();
}

void tst_Resources::editorsInTables()
{
    QFETCH(QString, kind);
    QWidget* editor = createEditor(kind, m_dialog.data());
    editor->setProperty("inTable", true);
    show();
    if (kind == "QPlainTextEdit") {
        QCOMPARE(leftEdge(editor), accent);
        return;
    }
    QCOMPARE(leftEdge(editor), white);
    QCOMPARE(editor->minimumHeight(), 28);
}

void tst_Resources::disabledEditors_data()
{
    editors_data();
}

void tst_Resources::disabledEditors()
{
    QFETCH(QString, kind);
    QWidget* editor = createEditor(kind, m_dialog.data());
    editor->setEnabled(false);
    show();
    QCOMPARE(upperInside(editor), QColor("#E5E5E5"));
    QCOMPARE(editor->palette().color(QPalette::Disabled, QPalette::Text), QColor("#878787"));
}

void tst_Resources::tabs()
{
    auto* tabs = new QTabWidget(m_dialog.data());
    tabs->addTab(new QWidget, "Формы");
    tabs->addTab(new QWidget, "Списки");
    tabs->setGeometry(20, 20, 300, 200);
    show();

    const QTabBar* bar = tabs->tabBar();
    QCOMPARE(bar->tabRect(0).height(), 35);
    const QImage shown = imageOf(m_dialog.data());
    const QPoint barPos = bar->mapTo(m_dialog.data(), QPoint(0, 0));
    const QRect first = bar->tabRect(0).translated(barPos);
    const QRect second = bar->tabRect(1).translated(barPos);
    QCOMPARE(shown.pixelColor(first.topLeft() + QPoint(6, 6)), accent);
    QVERIFY(hasColor(shown, first.adjusted(6, 6, -18, -6), white));
    QCOMPARE(shown.pixelColor(second.topLeft() + QPoint(6, 6)), white);
    QVERIFY(hasColor(shown, second.adjusted(6, 6, -18, -6), accent));

    // The caption's ink is as wide as Roboto of 14 pixels makes it.
    QFont font("Roboto");
    font.setPixelSize(14);
    const int expectedInk = QFontMetrics(font).tightBoundingRect(bar->tabText(1)).width();
    const int ink = inkWidth(shown, second.adjusted(6, 6, -18, -6));
    QVERIFY2(qAbs(ink - expectedInk) <= 1, qPrintable(QString("%1 %2").arg(ink).arg(expectedInk)));

    // The right margin of 12 and the round corners show the window.
    const int middle = first.center().y();
    QCOMPARE(shown.pixelColor(first.right() - 12, middle), accent);
    QCOMPARE(shown.pixelColor(first.right() - 11, middle), white);
    QVERIFY(shown.pixelColor(first.topLeft()).lightness() > 240);
    QCOMPARE(shown.pixelColor(first.bottomLeft()), accent);

    const QRect paneTop(tabs->geometry().right() - 20, first.bottom(), 10, 3);
    QVERIFY(hasColor(shown, paneTop, accent));
}

void tst_Resources::coloredButtons_data()
{
    QTest::addColumn<QString>("role");
    QTest::addColumn<QColor>("background");
    QTest::addColumn<QColor>("pressed");
    for (const char* role : {"accept", "buttonTypeA"}) {
        QTest::newRow(role) << QString(role) << accent << QColor("#637AFF");
    }
    for (const char* role : {"cancel", "clear", "reject"}) {
        QTest::newRow(role) << QString(role) << QColor("#F46060") << QColor("#E04141");
    }
}

void tst_Resources::coloredButtons()
{
    QFETCH(QString, role);
    QFETCH(QColor, background);
    QFETCH(QColor, pressed);

    auto* push = new QPushButton("ОК", m_dialog.data());
    auto* tool = new QToolButton(m_dialog.data());
    push->move(20, 20);
    tool->setText("ОК");
    tool->move(20, 100);
    for (QAbstractButton* button : QList<QAbstractButton*>{push, tool}) {
        button->setProperty("btnRole1", role);
    }
    show();

    for (QAbstractButton* button : QList<QAbstractButton*>{push, tool}) {
        // 100 by 25 with 10 of padding at the sides, 5 above and below.
        QCOMPARE(button->minimumSize(), QSize(120, 35));
        QCOMPARE(button->font().family(), QString("Roboto"));
        QCOMPARE(button->font().pixelSize(), 12);
        QCOMPARE(button->palette().color(QPalette::ButtonText), white);
        QCOMPARE(upperInside(button), background);
        QCOMPARE(leftEdge(button), background);
        QCOMPARE(imageOf(m_dialog.data()).pixelColor(button->pos()), white);

        button->setDown(true);
        QCOMPARE(upperInside(button), pressed);
        button->setDown(false);
        button->setEnabled(false);
        QCOMPARE(upperInside(button), QColor("#E5E5E5"));
    }
}

void tst_Resources::whiteButtons_data()
{
    QTest::addColumn<bool>("tool");
    QTest::newRow("push button") << false;
    QTest::newRow("tool button") << true;
}

void tst_Resources::whiteButtons()
{
    QFETCH(bool, tool);
    QAbstractButton* button = nullptr;
    if (tool) {
        button = new QToolButton(m_dialog.data());
    } else {
        button = new QPushButton(m_dialog.data());
    }
    button->setIcon(QIcon(":/res/plus.png"));
    button->setProperty("btnRole1", "whiteButton");
    show();

    QCOMPARE(leftEdge(button), accent);
    QCOMPARE(upperInside(button), white);
    QVERIFY(hasColor(imageOf(button), button->rect().adjusted(3, 3, -3, -3), white));
    button->setDown(true);
    QCOMPARE(upperInside(button), QColor("#EEEEEE"));
    QCOMPARE(leftEdge(button), accent);
}

void tst_Resources::unknownRole()
{
    auto* button = new QPushButton("...", m_dialog.data());
    button->setProperty("btnRole1", "other");
    button->setFixedWidth(35);
    show();
    QCOMPARE(button->width(), 35);
    QVERIFY(upperInside(button) != accent);
}

QTEST_MAIN(tst_Resources)
#include "tst_Resources.moc"
