#include <QtTest>

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialog>
#include <QScreen>
#include <QTextDocument>
#include <QToolTip>

#include <memory>

#include "app/AppStyle.h"
#include "app/widgets/LongItems.h"

/// Combos with names that are longer than the window has space for.
class tst_LongItems : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void widthDoesNotFollowTheItems();
    void popUpIsAsWideAsItsItems();
    void popUpStaysOnTheScreen();
    void itemsHaveTheirTextAsToolTip();
    void cutTextHasAToolTip();
    void wholeTextKeepsTheCombosToolTip();
    void markupIsText();

private:
    void hover() const;

    std::unique_ptr<QDialog> m_dialog;
    QComboBox* m_combo = nullptr;
};

void tst_LongItems::initTestCase()
{
    QVERIFY(loadBaseStyle());
}

void tst_LongItems::init()
{
    m_dialog = std::make_unique<QDialog>();
    m_combo = new QComboBox(m_dialog.get());
    m_combo->addItem("Первый");
    LongItems::install(m_combo);
    applyBaseStyle(m_dialog.get());
    m_combo->setGeometry(10, 10, 150, 30);
    m_dialog->resize(300, 100);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
}

void tst_LongItems::cleanup()
{
    QToolTip::hideText();
    m_dialog.reset();
}

/// What the mouse makes when it rests over the combo.
void tst_LongItems::hover() const
{
    const QPoint place = m_combo->rect().center();
    QHelpEvent event(QEvent::ToolTip, place, m_combo->mapToGlobal(place));
    QApplication::sendEvent(m_combo, &event);
}

void tst_LongItems::widthDoesNotFollowTheItems()
{
    const QSize before = m_combo->minimumSizeHint();
    m_combo->addItem(QString(150, 'W'));
    QCOMPARE(m_combo->minimumSizeHint(), before);
    QCOMPARE(m_combo->sizeHint(), before);
    QVERIFY(before.width() <= 160);
}

void tst_LongItems::popUpIsAsWideAsItsItems()
{
    const QString name = "Удостоверение о повышении квалификации";
    m_combo->addItem(name);
    m_combo->setStyleSheet("QComboBox { combobox-popup: 0; }"); // a list as wide as its combo
    m_combo->showPopup();
    const QWidget* popUp = m_combo->view()->window();
    const int needed = m_combo->view()->fontMetrics().horizontalAdvance(name);
    QVERIFY(needed > m_combo->width());
    QVERIFY2(m_combo->view()->viewport()->width() >= needed,
             qPrintable(QString("%1 %2").arg(popUp->width()).arg(needed)));
    m_combo->hidePopup();
}

void tst_LongItems::popUpStaysOnTheScreen()
{
    m_combo->addItem(QString(400, 'W'));
    m_combo->showPopup();
    const QRect screen = m_combo->screen()->availableGeometry();
    const QRect popUp = m_combo->view()->window()->geometry();
    QVERIFY(popUp.left() >= screen.left() && popUp.right() <= screen.right());
    m_combo->hidePopup();
}

void tst_LongItems::itemsHaveTheirTextAsToolTip()
{
    m_combo->addItem("Второй", 2);
    m_combo->addItems({"Третий", "Четвёртый"});
    for (int i = 0; i < m_combo->count(); ++i) {
        QCOMPARE(m_combo->itemData(i, Qt::ToolTipRole).toString(), m_combo->itemText(i));
    }
    QCOMPARE(m_combo->itemData(1).toInt(), 2);
}

void tst_LongItems::cutTextHasAToolTip()
{
    m_combo->setToolTip("Форма");
    m_combo->addItem("Удостоверение о повышении квалификации");
    m_combo->setCurrentIndex(1);
    hover();
    QCOMPARE(QToolTip::text(), m_combo->currentText());
}

void tst_LongItems::wholeTextKeepsTheCombosToolTip()
{
    m_combo->setToolTip("Форма");
    hover();
    QCOMPARE(QToolTip::text(), QString("Форма"));
}

void tst_LongItems::markupIsText()
{
    const QString name = "Диплом <img src='/dev/zero'> " + QString(60, 'W');
    m_combo->addItem(name);
    m_combo->setCurrentIndex(1);
    hover();
    for (const QString& tip : {QToolTip::text(), m_combo->itemData(1, Qt::ToolTipRole).toString()})
    {
        QTextDocument shown;
        shown.setHtml(tip);
        QCOMPARE(shown.toPlainText().replace(QChar::Nbsp, ' '), name);
    }
}

QTEST_MAIN(tst_LongItems)
#include "tst_LongItems.moc"
