#include "support/Widgets.h"

#include <QApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QToolTip>
#include <QtTest>

namespace {

QPoint cellCentre(QTableWidget* table, int row, int column)
{
    const QTableWidgetItem* item = table->item(row, column);
    table->scrollToItem(item);
    return table->visualItemRect(item).center();
}

void doubleClickCell(QTableWidget* table, int row, int column)
{
    const QPoint point = cellCentre(table, row, column);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, point);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, point);
}

QWidget* keyboardWidget()
{
    QWidget* popup = QApplication::activePopupWidget();
    return popup ? popup : QApplication::focusWidget();
}

} // namespace

void clickButton(const QWidget* window, const QString& name)
{
    QTest::mouseClick(named<QPushButton>(window, name), Qt::LeftButton);
}

void clickButton(const QWidget& window, const QString& name)
{
    clickButton(&window, name);
}

void doubleClickButton(const QWidget& window, const QString& name)
{
    auto* button = named<QPushButton>(window, name);
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::mouseDClick(button, Qt::LeftButton);
    QTest::mouseRelease(button, Qt::LeftButton);
}

void wheelOver(QWidget* widget)
{
    const QPointF centre = widget->rect().center();
    QWheelEvent event(centre, widget->mapToGlobal(centre.toPoint()), QPoint(), QPoint(0, 120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

void pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(keyboardWidget(), key, modifiers);
}

void typeKeys(const QString& text)
{
    for (const QChar letter : text) {
        typeLetters(keyboardWidget(), letter); // the first one may open a pop-up
    }
}

void clickRow(QTableWidget* table, int row, Qt::KeyboardModifiers modifiers)
{
    QTest::mouseClick(table->viewport(), Qt::LeftButton, modifiers, cellCentre(table, row, 0));
}

void doubleClickRow(QTableWidget* table, int row)
{
    doubleClickCell(table, row, 0);
}

void compareDialogButtons(const QWidget& dialog)
{
    const auto* accept = named<QPushButton>(dialog, "buttonAccept");
    const auto* reject = named<QPushButton>(dialog, "buttonReject");
    QCOMPARE(accept->text(), QString("ОК"));
    QCOMPARE(accept->property("btnRole1").toString(), QString("accept"));
    QCOMPARE(reject->text(), QString("Отмена"));
    QCOMPARE(reject->property("btnRole1").toString(), QString("reject"));
}

void moveClosedText(QTableWidget* table)
{
    clickRow(table, 0);
    pressKey(Qt::Key_C, Qt::ControlModifier);
    pressKey(Qt::Key_Delete);
    clickRow(table, 1);
    pressKey(Qt::Key_V, Qt::ControlModifier);
}

QStringList columnTexts(const QTableWidget* table, int column)
{
    QStringList texts;
    for (int row = 0; row < table->rowCount(); ++row) {
        texts << table->item(row, column)->text();
    }
    return texts;
}

QString toolTipAt(QWidget* widget, const QPoint& position)
{
    QToolTip::hideText();
    if (!QTest::qWaitFor([] { return !QToolTip::isVisible(); })) {
        qFatal("an earlier tool tip does not go");
    }
    QHelpEvent rest(QEvent::ToolTip, position, widget->mapToGlobal(position));
    QApplication::sendEvent(widget, &rest);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
}

bool tabTo(QWidget* target)
{
    constexpr int most = 100; // stops of a window
    for (int i = 0; i < most && !target->hasFocus(); ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    return target->hasFocus();
}

void typeIntoCell(QTableWidget* table, int row, int column, const QString& text)
{
    doubleClickCell(table, row, column);
    auto* editor = table->viewport()->findChild<QLineEdit*>("", Qt::FindDirectChildrenOnly);
    QVERIFY(editor);
    typeInto(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    // The editor commits from the event loop, and what follows may make the item anew.
    QTRY_COMPARE(table->item(row, column)->text(), text);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void typeLetters(QWidget* editor, const QString& text)
{
    for (const QChar letter : text) {
        if (letter.unicode() < 0x80) {
            QTest::keyClick(editor, letter.toLatin1());
        } else {
            QTest::sendKeyEvent(QTest::Click, editor, Qt::Key_unknown, QString(letter),
                                Qt::NoModifier);
        }
    }
}

void typeInto(QWidget* editor, const QString& text)
{
    auto* line = qobject_cast<QLineEdit*>(editor);
    if (!line) {
        line = editor->findChild<QLineEdit*>();
    }
    line->setFocus();
    line->selectAll();
    QTest::keyClick(line, Qt::Key_Delete);
    typeLetters(line, text);
}
