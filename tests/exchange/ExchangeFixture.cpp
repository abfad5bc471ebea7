#include "ExchangeFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QPushButton>
#include <QTableWidget>

#include "app/AppStyle.h"
#include "forms/FormDefinitions.h"
#include "support/Process.h"

ExchangeFixture::ExchangeFixture()
{
    docTypeNames.clear();
    loadBaseStyle();
}

ExchangeFixture::~ExchangeFixture()
{
    docTypeNames.clear();
}

int ExchangeFixture::addTemplate(const QString& name, const Mapping& mapping,
                                 const QString& workbook, int fromRow, int toRow,
                                 const QString& dateFormat)
{
    QJsonArray items;
    for (const auto& item : mapping) {
        items.append(QJsonObject{{"col", item.first}, {"tag", item.second}});
    }
    const QByteArray fields = QJsonDocument(QJsonObject{{"items", items}}).toJson();
    return app
        .exec("INSERT INTO export (NAME, FIELDS, TYPE, TEMPLATE, FROM_ROW, TO_ROW, DATE_FORMAT) "
              "VALUES (?, ?, 0, ?, ?, ?, ?)",
              {name, fields, workbook, fromRow, toRow, dateFormat})
        .toInt();
}

int ExchangeFixture::addForm(const QString& name, const QVector<QJsonObject>& fields)
{
    QJsonArray array;
    for (const QJsonObject& field : fields) {
        array.append(field);
    }
    const QByteArray text = QJsonDocument(QJsonObject{{"fields", array}}).toJson();
    return app
        .exec("INSERT INTO forms (FORM_NAME, FORM_FULLNAME, FIELDS) VALUES (?, ?, ?)",
              {name, name, text})
        .toInt();
}

ExportDlg& ExchangeFixture::open()
{
    m_dialog = std::make_unique<ExportDlg>();
    m_dialog->show();
    QApplication::setActiveWindow(m_dialog.get());
    if (!QTest::qWaitForWindowActive(m_dialog.get())) {
        qFatal("the dialog does not become active");
    }
    return *m_dialog;
}

void ExchangeFixture::click(const char* button)
{
    QTest::mouseClick(child<QPushButton>(button), Qt::LeftButton);
}

void ExchangeFixture::selectTemplate(int row)
{
    auto* table = child<QTableWidget>("templatesWidget");
    const QRect cell = table->visualItemRect(table->item(row, 0));
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
}

QByteArray runScript(const QString& name, const QStringList& arguments)
{
    const QString script = QString(ZELVORA_EXCHANGE_SCRIPTS "/") + name;
    const ProcessResult result = runProcess(ZELVORA_PYTHON, QStringList{script} + arguments);
    if (result.exitCode != 0) {
        qFatal("%s: %s", qPrintable(name), result.err.constData());
    }
    return result.out;
}
