#include <QtTest>

#include <QCalendarWidget>
#include <QDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTextCharFormat>
#include <QTextDocument>
#include <QToolButton>

#include "app/AppHelpers.h"
#include "app/AppStyle.h"
#include "support/ModalDriver.h"
#include "support/TempApplication.h"

/// The helpers and the style that all windows share.
class tst_AppHelpers : public QObject
{
    Q_OBJECT

private slots:
    void version();
    void filePath();
    void plainMessages();
    void question_data();
    void question();
    void questionClosed();
    void questionByKey_data();
    void questionByKey();
    void defaultOfAQuestionIsSeen();
    void styleIsReadFromTheResource();
    void missingStyleLeavesTheTextAlone();
    void windowJoinsBaseAndOwnStyle();
    void styleReachesWidgetsThatWerePolishedBefore();
    void calendar();
};

void tst_AppHelpers::version()
{
    QCOMPARE(appVersion, QString("1.1.0.9"));
    QCOMPARE(appBuildLabel, QString("64 bit"));
}

void tst_AppHelpers::filePath()
{
    QCOMPARE(appFilePath("blanks/a.png"), QCoreApplication::applicationDirPath() + "/blanks/a.png");
    const TempApplication app(TempApplication::Database::None);
    QCOMPARE(appFilePath("docs.db"), app.path() + "/docs.db");
}

void tst_AppHelpers::plainMessages()
{
    QCOMPARE(plainMessage("Ошибка: 5 < 6 & 7\n<b>"), QString("Ошибка: 5 < 6 & 7\n<b>"));
    const QString text = "near \"<img src='/dev/zero'>\": syntax  error\nstop";
    QVERIFY(Qt::mightBeRichText(text));
    QTextDocument shown;
    shown.setHtml(plainMessage(text));
    QCOMPARE(shown.toPlainText().replace(QChar::Nbsp, ' '), text);
}

void tst_AppHelpers::question_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("answer");

    QTest::newRow("yes") << "Да" << true;
    QTest::newRow("no") << "Нет" << false;
}

void tst_AppHelpers::question()
{
    QFETCH(QString, button);
    QWidget parent;
    ModalDriver driver;
    driver.expect<QMessageBox>([&](QMessageBox* box) {
        QCOMPARE(box->windowTitle(), QString("Zelvora"));
        QCOMPARE(box->text(), QString("Удалить список?"));
        QCOMPARE(box->icon(), QMessageBox::NoIcon);
        QCOMPARE(box->parentWidget(), &parent);
        const auto buttons = box->buttons();
        QCOMPARE(buttons.size(), 2);
        for (QAbstractButton* candidate : buttons) {
            const bool yes = candidate->text() == "Да";
            QCOMPARE(box->buttonRole(candidate),
                     yes ? QMessageBox::AcceptRole : QMessageBox::RejectRole);
            if (candidate->text() == button) {
                QTest::mouseClick(candidate, Qt::LeftButton);
            }
        }
    });
    QTEST(askYesNo("Удалить список?", &parent), "answer");
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_AppHelpers::questionClosed()
{
    ModalDriver driver;
    driver.expect<QMessageBox>([](QMessageBox* box) { QTest::keyClick(box, Qt::Key_Escape); });
    QVERIFY(!askYesNo("Удалить форму?", nullptr));
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_AppHelpers::questionByKey_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
    QTest::newRow("Space") << Qt::Key_Space;
    QTest::newRow("Escape") << Qt::Key_Escape;
}

void tst_AppHelpers::questionByKey()
{
    QFETCH(Qt::Key, key);
    QWidget parent;
    ModalDriver driver;
    driver.expect<QMessageBox>([key](QMessageBox* box) {
        const auto* no = qobject_cast<QPushButton*>(box->focusWidget());
        QVERIFY(no);
        QCOMPARE(no->text(), QString("Нет"));
        QVERIFY(no->isDefault());
        QTest::keyClick(box->focusWidget(), key);
    });
    QVERIFY(!askYesNo("Удалить форму?", &parent));
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_AppHelpers::defaultOfAQuestionIsSeen()
{
    QVERIFY(loadBaseStyle());
    QWidget parent;
    applyBaseStyle(&parent);
    ModalDriver driver;
    driver.expect<QMessageBox>([](QMessageBox* box) {
        const auto buttons = box->buttons();
        for (QAbstractButton* button : buttons) {
            const QColor ground = button->grab().toImage().pixelColor(8, button->height() / 2);
            QCOMPARE(ground, QColor(button->text() == "Нет" ? "#7C99FF" : "#FFFFFF"));
        }
        box->reject();
    });
    QVERIFY(!askYesNo("Удалить форму?", &parent));
    QVERIFY2(driver.finished(), driver.failures());
}

void tst_AppHelpers::styleIsReadFromTheResource()
{
    baseStyleSheet.clear();
    QVERIFY(loadBaseStyle());
    QFile file(":/res/baseStyle.css");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(baseStyleSheet, QString::fromUtf8(file.readAll()));
    QVERIFY(!baseStyleSheet.isEmpty());
}

void tst_AppHelpers::missingStyleLeavesTheTextAlone()
{
    baseStyleSheet.clear();
    Q_CLEANUP_RESOURCE(zelvora);
    const bool loaded = loadBaseStyle();
    Q_INIT_RESOURCE(zelvora);
    QVERIFY(!loaded);
    QVERIFY(baseStyleSheet.isEmpty());
}

void tst_AppHelpers::windowJoinsBaseAndOwnStyle()
{
    baseStyleSheet = "QLabel { color: red; }";
    QDialog window;
    window.setStyleSheet("QLabel { background: blue; }");
    applyBaseStyle(&window);
    QCOMPARE(window.styleSheet(),
             QString("QLabel { color: red; }\r\nQLabel { background: blue; }"));
    baseStyleSheet.clear();
}

void tst_AppHelpers::styleReachesWidgetsThatWerePolishedBefore()
{
    baseStyleSheet = "QLabel { color: #123456; }";
    QDialog window;
    window.setStyleSheet("QDialog { background: white; }");
    QLabel label(&window);
    label.ensurePolished();
    applyBaseStyle(&window);
    QCOMPARE(label.palette().color(QPalette::WindowText), QColor("#123456"));
    baseStyleSheet.clear();
}

void tst_AppHelpers::calendar()
{
    QCalendarWidget calendar;
    applyCalendarStyle(&calendar);
    QCOMPARE(calendar.headerTextFormat().foreground().color(), QColor(Qt::white));
    QCOMPARE(calendar.headerTextFormat().background().color(), QColor(Qt::lightGray));
    QCOMPARE(calendar.minimumSize(), QSize(400, 300));
    QCOMPARE(calendar.maximumSize(), QSize(400, 300));
    QVERIFY(calendar.styleSheet().contains("background: #B8C7FF"));
    for (const char* name : {"qt_calendar_prevmonth", "qt_calendar_nextmonth"}) {
        const auto* button = calendar.findChild<QToolButton*>(name);
        QVERIFY(button);
        QCOMPARE(button->iconSize(), QSize(32, 32));
    }
}

QTEST_MAIN(tst_AppHelpers)
#include "tst_AppHelpers.moc"
