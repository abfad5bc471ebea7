#include <QtTest>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "forms/FormEditDlg.h"
#include "support/Widgets.h"

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
    compareDialogButtons(dialog);
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
    QCOMPARE(named<QLineEdit>(dialog, "typeEdit")->text(), QString("Диплом"));
    QCOMPARE(named<QLineEdit>(dialog, "nameEdit")->text(), QString("Диплом о среднем образовании"));
}

void tst_FormEditDlg::namesFollowOnlyOnAccept()
{
    FormEditDlg dialog;
    dialog.setFormName("старое");
    dialog.show();
    auto* edit = named<QLineEdit>(dialog, "typeEdit");
    edit->selectAll();
    QTest::keyClicks(edit, "new");
    QCOMPARE(dialog.formName(), QString("старое"));
    clickButton(dialog, "buttonReject");
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(dialog.formName(), QString("старое"));

    dialog.show();
    clickButton(dialog, "buttonAccept");
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.formName(), QString("new"));
}

void tst_FormEditDlg::emptyNamesPass()
{
    FormEditDlg dialog;
    dialog.setFormName("a");
    dialog.setFullName("b");
    dialog.show();
    named<QLineEdit>(dialog, "typeEdit")->clear();
    named<QLineEdit>(dialog, "nameEdit")->clear();
    clickButton(dialog, "buttonAccept");
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.formName(), QString());
    QCOMPARE(dialog.fullName(), QString());
}

QTEST_MAIN(tst_FormEditDlg)
#include "tst_FormEditDlg.moc"
