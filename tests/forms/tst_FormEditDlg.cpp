#include <QtTest>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "forms/FormEditDlg.h"

/// The prompt for the two names of a form.
class tst_FormEditDlg : public QObject
{
    Q_OBJECT

private slots:
    void window();
    void settersFillTheEditors();
    void namesFollowOnlyOnAccept();
    void emptyNamesPass();
};

void tst_FormEditDlg::window()
{
    FormEditDlg dialog;
    dialog.show();
    QCOMPARE(dialog.windowTitle(), QString("Форма"));
    QCOMPARE(dialog.size(), QSize(575, 119));
    QCOMPARE(dialog.findChild<QPushButton*>("buttonAccept")->text(), QString("ОК"));
    QCOMPARE(dialog.findChild<QPushButton*>("buttonAccept")->property("btnRole1").toString(),
             QString("accept"));
    QCOMPARE(dialog.findChild<QPushButton*>("buttonReject")->text(), QString("Отмена"));
    QCOMPARE(dialog.findChild<QPushButton*>("buttonReject")->property("btnRole1").toString(),
             QString("reject"));
    QStringList captions;
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        captions << label->text();
    }
    QVERIFY(captions.contains("Тип документа"));
    QVERIFY(captions.contains("Полное название"));
}

void tst_FormEditDlg::settersFillTheEditors()
{
    FormEditDlg dialog;
    dialog.setFormName("Диплом");
    dialog.setFullName("Диплом о среднем образовании");
    QCOMPARE(dialog.findChild<QLineEdit*>("typeEdit")->text(), QString("Диплом"));
    QCOMPARE(dialog.findChild<QLineEdit*>("nameEdit")->text(),
             QString("Диплом о среднем образовании"));
}

void tst_FormEditDlg::namesFollowOnlyOnAccept()
{
    FormEditDlg dialog;
    dialog.setFormName("старое");
    dialog.show();
    auto* edit = dialog.findChild<QLineEdit*>("typeEdit");
    edit->selectAll();
    QTest::keyClicks(edit, "new");
    QCOMPARE(dialog.formName(), QString("старое"));
    QTest::mouseClick(dialog.findChild<QPushButton*>("buttonReject"), Qt::LeftButton);
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(dialog.formName(), QString("старое"));

    dialog.show();
    QTest::mouseClick(dialog.findChild<QPushButton*>("buttonAccept"), Qt::LeftButton);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.formName(), QString("new"));
}

void tst_FormEditDlg::emptyNamesPass()
{
    FormEditDlg dialog;
    dialog.setFormName("a");
    dialog.setFullName("b");
    dialog.show();
    dialog.findChild<QLineEdit*>("typeEdit")->clear();
    dialog.findChild<QLineEdit*>("nameEdit")->clear();
    QTest::mouseClick(dialog.findChild<QPushButton*>("buttonAccept"), Qt::LeftButton);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.formName(), QString());
    QCOMPARE(dialog.fullName(), QString());
}

QTEST_MAIN(tst_FormEditDlg)
#include "tst_FormEditDlg.moc"
