#include <QtTest>

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QProxyStyle>
#include <QPushButton>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWindow>

#include <memory>

#include "app/AppStyle.h"
#include "support/ModalDriver.h"

namespace {

/// A desktop that puts icons on the buttons of dialogs.
class IconLovingStyle : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override
    {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons
                   ? 1
                   : QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

/// Checks a standard dialog that is shown over a window of the application.
void checkButtons(QWidget* dialog)
{
    const auto buttons = dialog->findChildren<QPushButton*>();
    QVERIFY(!buttons.isEmpty());
    for (const QPushButton* button : buttons) {
        QVERIFY2(button->icon().isNull(), qPrintable(button->text()));
        QVERIFY(!button->text().contains("Cancel"));
    }
    QVERIFY(!dialog->windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    QVERIFY(!dialog->windowHandle()->flags().testFlag(Qt::WindowContextHelpButtonHint));
}

QString cancelCaption(const QDialog* dialog)
{
    const auto boxes = dialog->findChildren<QDialogButtonBox*>();
    for (const QDialogButtonBox* box : boxes) {
        if (const QPushButton* button = box->button(QDialogButtonBox::Cancel)) {
            return button->text();
        }
    }
    return QString();
}

QPalette darkPalette()
{
    QPalette palette(QColor("#353535"), QColor("#2D2D2D"));
    for (const QPalette::ColorRole role :
         {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
        palette.setColor(role, Qt::white);
    }
    return palette;
}

/// Pixels of text on the white of a window.
int darkPixels(const QImage& image)
{
    int dark = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            dark += qGray(image.pixel(x, y)) < 130 ? 1 : 0;
        }
    }
    return dark;
}

} // namespace

/// The dialogs of the toolkit over the application's windows.
class tst_WindowStyle : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_window.reset(); }

    void noStyleOfTheApplication();
    void messageBoxes();
    void fileDialog();
    void printDialog();
    void groupsOnADarkDesktop();
    void toolTipFont();

private:
    std::unique_ptr<QMainWindow> m_window;
};

void tst_WindowStyle::initTestCase()
{
    QVERIFY(loadBaseStyle());
    QApplication::setStyle(new IconLovingStyle);
}

void tst_WindowStyle::init()
{
    m_window = std::make_unique<QMainWindow>();
    m_window->setCentralWidget(new QPushButton("Кнопка"));
    applyBaseStyle(m_window.get());
    m_window->resize(300, 200);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void tst_WindowStyle::noStyleOfTheApplication()
{
    QVERIFY(dynamic_cast<IconLovingStyle*>(QApplication::style()));
    QVERIFY(qApp->styleSheet().isEmpty());
}

void tst_WindowStyle::messageBoxes()
{
    ModalDriver driver;
    const auto check = [](QMessageBox* box) {
        checkButtons(box);
        QTest::keyClick(box, Qt::Key_Escape);
    };
    driver.expect<QMessageBox>(check);
    QMessageBox::about(m_window.get(), "Ошибка", "Ошибка сохранения бланка: SQL Error");
    driver.expect<QMessageBox>(check);
    QMessageBox::information(m_window.get(), "Экспорт данных", "Документ", QMessageBox::Ok);
    driver.expect<QMessageBox>(check);
    QMessageBox::critical(m_window.get(), "Ошибка", "Не верно указан файл", QMessageBox::Ok);
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_WindowStyle::fileDialog()
{
    ModalDriver driver;
    driver.expect<QFileDialog>([](QFileDialog* dialog) {
        checkButtons(dialog);
        QCOMPARE(cancelCaption(dialog), QString("Отмена"));
        dialog->reject();
    });
    QFileDialog::getOpenFileName(m_window.get(), "Укажите файл архива");
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_WindowStyle::printDialog()
{
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, m_window.get());
    dialog.show();
    checkButtons(&dialog);
    QCOMPARE(cancelCaption(&dialog), QString("Отмена"));
}

void tst_WindowStyle::groupsOnADarkDesktop()
{
    const QPalette desktop = QApplication::palette();
    QApplication::setPalette(darkPalette());
    int dark = 0;
    {
        QDialog dialog;
        auto* group = new QGroupBox("Диапазон печати", &dialog);
        group->setGeometry(10, 10, 200, 80);
        applyBaseStyle(&dialog);
        dialog.resize(220, 100);
        dialog.show();
        dark = darkPixels(group->grab().toImage());
    }
    QApplication::setPalette(desktop);
    // The strokes of fifteen letters; white ones, or a dark group, would give none or most of all.
    QVERIFY2(dark > 100 && dark < 1500, QByteArray::number(dark));
}

void tst_WindowStyle::toolTipFont()
{
    m_window->centralWidget()->setToolTip("Подсказка");
    QToolTip::showText(m_window->mapToGlobal(QPoint(5, 5)), "Подсказка", m_window->centralWidget());
    const QWidget* tip = nullptr;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        if (window->inherits("QTipLabel")) {
            tip = window;
        }
    }
    QVERIFY(tip);
    QCOMPARE(tip->font().family(), QString("Roboto"));
    QCOMPARE(tip->font().pixelSize(), 12);
    QToolTip::hideText();
}

QTEST_MAIN(tst_WindowStyle)
#include "tst_WindowStyle.moc"
