#include "DocumentFixture.h"

#include <QJsonDocument>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include "forms/FormDefinitions.h"

namespace {

QJsonObject joined(QJsonObject object, const QJsonObject& more)
{
    for (auto it = more.begin(); it != more.end(); ++it) {
        object[it.key()] = it.value();
    }
    return object;
}

QString textOf(const QJsonObject& object)
{
    return QJsonDocument(object).toJson();
}

} // namespace

QJsonObject formField(const QString& tag, const QString& name, int type, const QJsonObject& more)
{
    return joined({{"tag", tag}, {"name", name}, {"type", type}}, more);
}

QJsonObject tableColumn(const QString& name, const QString& typeId, const QJsonObject& more)
{
    return joined({{"name", name}, {"typeID", typeId}}, more);
}

QJsonArray oneRow(const QJsonArray& cells)
{
    QJsonArray rows;
    rows.append(cells);
    return rows;
}

int addForm(TempApplication& app, const QString& name, const QJsonArray& fields)
{
    const int id = app.exec("INSERT INTO forms (FORM_NAME, FORM_FULLNAME, FIELDS) VALUES (?, ?, ?)",
                            {name, name, textOf({{"fields", fields}})})
                       .toInt();
    docTypeNames[id] = name;
    return id;
}

int addList(TempApplication& app, const QStringList& items)
{
    const QString text = textOf({{"items", QJsonArray::fromStringList(items)}});
    return app.exec("INSERT INTO lists (LIST_NAME, LIST_ITEMS) VALUES ('list', ?)", {text}).toInt();
}

int rowOfTag(const QTableWidget* table, const QString& tag)
{
    for (int row = 0; row < table->rowCount(); ++row) {
        if (table->item(row, 0)->data(Qt::UserRole).toString() == tag) {
            return row;
        }
    }
    return -1;
}

void typeIntoCell(QTableWidget* table, int row, int column, const QString& text)
{
    const QTableWidgetItem* item = table->item(row, column);
    table->scrollToItem(item);
    const QPoint point = table->visualItemRect(item).center();
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, point);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, point);
    auto* editor = table->viewport()->findChild<QLineEdit*>("", Qt::FindDirectChildrenOnly);
    QVERIFY(editor);
    typeInto(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(item->text(), text); // the editor commits from the event loop
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

void clickButton(const QWidget* window, const QString& name)
{
    QTest::mouseClick(named<QPushButton>(window, name), Qt::LeftButton);
}
