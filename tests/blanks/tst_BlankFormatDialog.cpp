#include <QtTest>

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFontComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include <memory>

#include "blanks/BlankFormatDialog.h"
#include "support/ModalDriver.h"
#include "support/TempApplication.h"
#include "support/Widgets.h"

/// The settings of a blank: widgets, ranges, start values and the choice of the background.
class tst_BlankFormatDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void window();
    void labels_data();
    void labels();
    void startValues();
    void ranges_data();
    void ranges();
    void gettersFollowTheWidgets();
    void settersFillTheWidgets();
    void nameChangesTheTitle();
    void unknownFormLeavesNothing();
    void unknownPaperFormatLeavesNothing();
    void orientation();
    void formatMovesNoNumber();
    void fontThatIsNotInstalledStays();
    void textLengths();

    void chosenBackgroundIsCut();
    void backgroundFromElsewhereLeavesATail();
    void shortBackgroundPathStaysWhole();
    void cancelledChoiceKeepsTheBackground();

private:
    template <class Widget>
    Widget* find(const char* name) const
    {
        return named<Widget>(m_dialog.get(), name);
    }
    void clickSelectBackground()
    {
        QTest::mouseClick(find<QPushButton>("buttonSelectBGImg"), Qt::LeftButton);
    }

    std::unique_ptr<TempApplication> m_app;
    std::unique_ptr<BlankFormatDialog> m_dialog;
};

void tst_BlankFormatDialog::init()
{
    m_app = std::make_unique<TempApplication>(TempApplication::Database::None);
    m_dialog = std::make_unique<BlankFormatDialog>();
}

void tst_BlankFormatDialog::cleanup()
{
    m_dialog.reset();
    m_app.reset();
}

void tst_BlankFormatDialog::window()
{
    QCOMPARE(m_dialog->windowTitle(), QString("Добавление бланка"));
    QCOMPARE(m_dialog->size(), QSize(714, 288));
    QVERIFY(!m_dialog->windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
    compareDialogButtons(*m_dialog);
    QCOMPARE(find<QPushButton>("buttonSelectBGImg")->text(), QString("..."));
    QCOMPARE(find<QLineEdit>("blankNameEdit")->placeholderText(), QString("Название бланка"));
    QCOMPARE(find<QLineEdit>("lineEditBG")->placeholderText(),
             QString("Выбор фоногово изображения"));
    QVERIFY(!find<QLineEdit>("lineEditBG")->isReadOnly());
    QCOMPARE(find<QComboBox>("comboBoxForm")->toolTip(),
             QString("Форма к которой относится бланк"));
    QCOMPARE(find<QFontComboBox>("fontComboBox")->toolTip(), QString("Шрифт по умолчанию"));
    QCOMPARE(find<QSpinBox>("spinBoxFontSize")->toolTip(), QString("Размер шрифта (sp)"));
    QCOMPARE(find<QRadioButton>("portraitButton")->text(), QString("Портрет"));
    QCOMPARE(find<QRadioButton>("landscapeButton")->text(), QString("Альбом"));
    QVERIFY(!find<QComboBox>("pagesCombo")->isEnabled());
}

void tst_BlankFormatDialog::labels_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("buddy");
    QTest::newRow("name") << "Название:" << QByteArray("blankNameEdit");
    QTest::newRow("form") << "Форма:" << QByteArray("comboBoxForm");
    QTest::newRow("width") << "Ширина бланка" << QByteArray("widthSpin");
    QTest::newRow("height") << "Высота бланка" << QByteArray("heigthSpin");
    QTest::newRow("background") << "Фон" << QByteArray("lineEditBG");
    QTest::newRow("font") << "Шрифт" << QByteArray("fontComboBox");
    QTest::newRow("format") << "Формат" << QByteArray("formatCombo");
    QTest::newRow("pages") << "Страницы" << QByteArray("pagesCombo");
    QTest::newRow("x") << "Смещение печати X" << QByteArray("spinBoxOffsetX");
    QTest::newRow("y") << "Смещение печати Y" << QByteArray("spinBoxOffsetY");
}

void tst_BlankFormatDialog::labels()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, buddy);
    const QList<QLabel*> all = m_dialog->findChildren<QLabel*>();
    QCOMPARE(all.size(), 10);
    for (const QLabel* label : all) {
        if (label->text() == text) {
            QCOMPARE(label->buddy()->objectName().toUtf8(), buddy);
            return;
        }
    }
    QFAIL("no such label");
}

void tst_BlankFormatDialog::startValues()
{
    QCOMPARE(m_dialog->name(), QString());
    QVERIFY(!m_dialog->form().isValid());
    QCOMPARE(m_dialog->paperFormat(), 42);
    QCOMPARE(m_dialog->orientation(), 0);
    QCOMPARE(m_dialog->pages(), 1);
    QCOMPARE(m_dialog->fontFamily(), QString("Times New Roman"));
    QCOMPARE(m_dialog->fontSize(), 11);
    QCOMPARE(m_dialog->background(), QString());
    QCOMPARE(m_dialog->pageWidth(), 297);
    QCOMPARE(m_dialog->pageHeight(), 210);
    QCOMPARE(m_dialog->offsetX(), 0);
    QCOMPARE(m_dialog->offsetY(), 0);

    const auto* formats = find<QComboBox>("formatCombo");
    QCOMPARE(formats->count(), 3);
    QCOMPARE(formats->itemText(0), QString("CustomMM"));
    QCOMPARE(formats->itemText(1), QString("A4"));
    QCOMPARE(formats->itemText(2), QString("A5"));
    QCOMPARE(formats->itemData(0).toInt(), 42);
    QCOMPARE(formats->itemData(1).toInt(), 0);
    QCOMPARE(formats->itemData(2).toInt(), 1);
    const auto* pages = find<QComboBox>("pagesCombo");
    QCOMPARE(pages->count(), 4);
    QCOMPARE(pages->itemText(0), QString("1"));
    QCOMPARE(pages->itemText(3), QString("4"));
}

void tst_BlankFormatDialog::ranges_data()
{
    QTest::addColumn<QByteArray>("spin");
    QTest::addColumn<int>("lowest");
    QTest::addColumn<int>("highest");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("width") << QByteArray("widthSpin") << 0 << 500 << " мм";
    QTest::newRow("height") << QByteArray("heigthSpin") << 0 << 500 << " мм";
    QTest::newRow("font size") << QByteArray("spinBoxFontSize") << 8 << 56 << "";
    QTest::newRow("x") << QByteArray("spinBoxOffsetX") << -999 << 999 << " мм";
    QTest::newRow("y") << QByteArray("spinBoxOffsetY") << -999 << 999 << " мм";
}

void tst_BlankFormatDialog::ranges()
{
    QFETCH(QByteArray, spin);
    QFETCH(int, lowest);
    QFETCH(int, highest);
    QFETCH(QString, suffix);
    const auto* box = find<QSpinBox>(spin.constData());
    QCOMPARE(box->minimum(), lowest);
    QCOMPARE(box->maximum(), highest);
    QCOMPARE(box->suffix(), suffix);
}

void tst_BlankFormatDialog::gettersFollowTheWidgets()
{
    m_dialog->setForms({"Диплом", "Аттестат"}, {7, 9});
    QTest::keyClicks(find<QLineEdit>("blankNameEdit"), "Blank");
    QTest::keyClick(find<QComboBox>("comboBoxForm"), Qt::Key_Down);
    find<QSpinBox>("widthSpin")->selectAll();
    QTest::keyClicks(find<QSpinBox>("widthSpin"), "148");
    find<QSpinBox>("heigthSpin")->selectAll();
    QTest::keyClicks(find<QSpinBox>("heigthSpin"), "105");
    QTest::keyClicks(find<QLineEdit>("lineEditBG"), "blanks/a.png");
    QTest::keyClick(find<QSpinBox>("spinBoxFontSize"), Qt::Key_Up);
    QTest::keyClick(find<QComboBox>("formatCombo"), Qt::Key_End);
    QTest::mouseClick(find<QRadioButton>("portraitButton"), Qt::LeftButton, Qt::NoModifier,
                      QPoint(8, 8));
    QTest::keyClick(find<QSpinBox>("spinBoxOffsetX"), Qt::Key_Up);
    QTest::keyClick(find<QSpinBox>("spinBoxOffsetY"), Qt::Key_Down);

    QCOMPARE(m_dialog->name(), QString("Blank"));
    QCOMPARE(m_dialog->form(), QVariant(9));
    QCOMPARE(m_dialog->pageWidth(), 148);
    QCOMPARE(m_dialog->pageHeight(), 105);
    QCOMPARE(m_dialog->background(), QString("blanks/a.png"));
    QCOMPARE(m_dialog->fontSize(), 12);
    QCOMPARE(m_dialog->paperFormat(), 1);
    QCOMPARE(m_dialog->orientation(), 1);
    QCOMPARE(m_dialog->offsetX(), 1);
    QCOMPARE(m_dialog->offsetY(), -1);
}

void tst_BlankFormatDialog::settersFillTheWidgets()
{
    m_dialog->setForms({"Диплом", "Аттестат"}, {7, 9});
    m_dialog->setName("Диплом");
    m_dialog->setForm(9);
    m_dialog->setPaperFormat(0);
    m_dialog->setOrientation(1);
    m_dialog->setPages(3);
    m_dialog->setFontFamily("Liberation Serif");
    m_dialog->setFontSize(20);
    m_dialog->setBackground("blanks/d.png");
    m_dialog->setPageSize(210, 297);
    m_dialog->setOffsets(-5, 7);
    QCOMPARE(find<QLineEdit>("blankNameEdit")->text(), QString("Диплом"));
    QCOMPARE(find<QComboBox>("comboBoxForm")->currentText(), QString("Аттестат"));
    QCOMPARE(find<QComboBox>("formatCombo")->currentText(), QString("A4"));
    QVERIFY(find<QRadioButton>("portraitButton")->isChecked());
    QCOMPARE(find<QComboBox>("pagesCombo")->currentText(), QString("3"));
    QCOMPARE(find<QFontComboBox>("fontComboBox")->currentText(), QString("Liberation Serif"));
    QCOMPARE(find<QSpinBox>("spinBoxFontSize")->value(), 20);
    QCOMPARE(find<QLineEdit>("lineEditBG")->text(), QString("blanks/d.png"));
    QCOMPARE(find<QSpinBox>("widthSpin")->value(), 210);
    QCOMPARE(find<QSpinBox>("heigthSpin")->value(), 297);
    QCOMPARE(find<QSpinBox>("spinBoxOffsetX")->value(), -5);
    QCOMPARE(find<QSpinBox>("spinBoxOffsetY")->value(), 7);
    QCOMPARE(m_dialog->pages(), 3);
}

void tst_BlankFormatDialog::nameChangesTheTitle()
{
    m_dialog->setName("Диплом");
    QCOMPARE(m_dialog->windowTitle(), QString("Редактирование бланка: Диплом"));
    m_dialog->setName("");
    QCOMPARE(m_dialog->windowTitle(), QString("Редактирование бланка: "));
}

void tst_BlankFormatDialog::unknownFormLeavesNothing()
{
    m_dialog->setForms({"Диплом"}, {7});
    m_dialog->setForm(8);
    QCOMPARE(find<QComboBox>("comboBoxForm")->currentIndex(), -1);
    QVERIFY(!m_dialog->form().isValid());
}

void tst_BlankFormatDialog::unknownPaperFormatLeavesNothing()
{
    m_dialog->setPaperFormat(5);
    QCOMPARE(find<QComboBox>("formatCombo")->currentIndex(), -1);
    QCOMPARE(m_dialog->paperFormat(), 0);
}

void tst_BlankFormatDialog::orientation()
{
    m_dialog->setOrientation(1);
    QCOMPARE(m_dialog->orientation(), 1);
    m_dialog->setOrientation(5);
    QCOMPARE(m_dialog->orientation(), 1);
    m_dialog->setOrientation(0);
    QCOMPARE(m_dialog->orientation(), 0);
    m_dialog->setOrientation(-1);
    QCOMPARE(m_dialog->orientation(), 0);
}

void tst_BlankFormatDialog::formatMovesNoNumber()
{
    m_dialog->setPageSize(148, 99);
    QTest::keyClick(find<QComboBox>("formatCombo"), Qt::Key_Down);
    QCOMPARE(m_dialog->paperFormat(), 0);
    QCOMPARE(m_dialog->pageWidth(), 148);
    QCOMPARE(m_dialog->pageHeight(), 99);
}

void tst_BlankFormatDialog::fontThatIsNotInstalledStays()
{
    m_dialog->setFontFamily("Nonesuch Serif");
    QCOMPARE(m_dialog->fontFamily(), QString("Nonesuch Serif"));
    m_dialog->show();
    find<QFontComboBox>("fontComboBox")->setFocus();
    find<QLineEdit>("blankNameEdit")->setFocus();
    QTest::mouseClick(find<QPushButton>("buttonAccept"), Qt::LeftButton);
    QCOMPARE(m_dialog->fontFamily(), QString("Nonesuch Serif"));
}

void tst_BlankFormatDialog::textLengths()
{
    QCOMPARE(find<QLineEdit>("blankNameEdit")->maxLength(), 150);
    QCOMPARE(find<QLineEdit>("lineEditBG")->maxLength(), 600);
}

void tst_BlankFormatDialog::chosenBackgroundIsCut()
{
    QVERIFY(QDir(m_app->path()).mkdir("blanks"));
    QVERIFY(QImage(2, 2, QImage::Format_RGB32).save(m_app->path("blanks/scan.png")));
    ModalDriver driver;
    driver.expect<QFileDialog>([this](QFileDialog* chooser) {
        QCOMPARE(chooser->windowTitle(), QString("Фоновое изображение"));
        QCOMPARE(chooser->directory().path(), m_app->path("blanks"));
        QCOMPARE(chooser->nameFilters(), QStringList{"Image Files (*.png *.jpg *.bmp)"});
        QCOMPARE(chooser->parent(), static_cast<QObject*>(m_dialog.get()));
        chooser->findChild<QLineEdit*>("fileNameEdit")->setText(m_app->path("blanks/scan.png"));
        static_cast<QDialog*>(chooser)->accept();
    });
    clickSelectBackground();
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_dialog->background(), QString("blanks/scan.png"));
}

void tst_BlankFormatDialog::backgroundFromElsewhereLeavesATail()
{
    QTemporaryDir elsewhere(m_app->path() + "-a-long-way-off-XXXXXX");
    const QString file = elsewhere.filePath("scan.png");
    QVERIFY(QImage(2, 2, QImage::Format_RGB32).save(file));
    ModalDriver driver;
    driver.expectFileDialog(file);
    clickSelectBackground();
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_dialog->background(), file.mid(m_app->path().length() + 1));
    QVERIFY(m_dialog->background().startsWith("a-long-way-off-"));
}

void tst_BlankFormatDialog::shortBackgroundPathStaysWhole()
{
    // One character less than the application directory and its separator.
    const QString root = m_app->path().section('/', 0, -2);
    QString name(m_app->path().section('/', -1).length() - 4, 'x');
    const QString file = root + "/" + name + ".png";
    QCOMPARE(file.length(), m_app->path().length());
    QVERIFY(QImage(2, 2, QImage::Format_RGB32).save(file));
    ModalDriver driver;
    driver.expectFileDialog(file);
    clickSelectBackground();
    QFile::remove(file);
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_dialog->background(), file);
}

void tst_BlankFormatDialog::cancelledChoiceKeepsTheBackground()
{
    m_dialog->setBackground("blanks/old.png");
    ModalDriver driver;
    driver.expectFileDialogCancelled();
    clickSelectBackground();
    QVERIFY2(driver.finished(), driver.failures());
    QCOMPARE(m_dialog->background(), QString("blanks/old.png"));
}

QTEST_MAIN(tst_BlankFormatDialog)
#include "tst_BlankFormatDialog.moc"
