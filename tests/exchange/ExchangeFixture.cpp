#include "ExchangeFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QPushButton>
#include <QTableWidget>

#include "app/AppStyle.h"
#include "forms/FormDefinitions.h"

namespace {

/// workbooks.py as a running process: starting it takes longer than most of its commands.
class WorkbookScript
{
public:
    WorkbookScript()
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(ZELVORA_PYTHON, {ZELVORA_EXCHANGE_SCRIPTS "/workbooks.py"});
    }

    ~WorkbookScript()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }

    QJsonValue run(const QJsonArray& command)
    {
        m_process.write(QJsonDocument(command).toJson(QJsonDocument::Compact) + "\n");
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(60000)) {
                qFatal("workbooks.py: %s", qPrintable(m_process.errorString()));
            }
        }
        // Wrapped, since only arrays and objects parse.
        return QJsonDocument::fromJson("[" + m_process.readLine() + "]").array().first();
    }

private:
    QProcess m_process;
};

} // namespace

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

int ExchangeFixture::addDocument(const QVariantMap& columns)
{
    QVariantMap all = {{"BLANK_SER", ""},     {"BLANK_NO", ""},  {"FNAME", ""},
                       {"LNAME", ""},         {"MNAME", ""},     {"BIRTH_DATE", ""},
                       {"DOC_TYPE", 1},       {"DOC_GROUP", ""}, {"ISSUE_DATE", ""},
                       {"EDIT_DATE", ""},     {"DUPLICATE", 0},  {"TEMPLATE", 0},
                       {"TEMPLATE_NAME", ""}, {"CONTENT", "{}"}};
    for (auto column = columns.cbegin(); column != columns.cend(); ++column) {
        all[column.key()] = column.value();
    }
    const QString places = QStringList(QVector<QString>(all.size(), "?").toList()).join(", ");
    return app
        .exec("INSERT INTO docs (" + all.keys().join(", ") + ") VALUES (" + places + ")",
              all.values())
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
    clickButton(m_dialog.get(), button);
}

void ExchangeFixture::selectTemplate(int row)
{
    clickRow(child<QTableWidget>("templatesWidget"), row);
}

QJsonValue workbooks(const QJsonArray& command)
{
    static WorkbookScript script;
    return script.run(command);
}

void writeWorkbook(const QString& file, const QJsonObject& description)
{
    workbooks({"cells", file, description});
}

void writeCells(const QString& file, const QJsonObject& cells)
{
    writeWorkbook(file, {{"sheets", QJsonArray{QJsonObject{{"name", "Лист1"}, {"cells", cells}}}}});
}

QJsonObject readWorkbook(const QString& file)
{
    return workbooks({"read", file}).toObject();
}

QJsonObject readCells(const QString& file, const QString& sheet)
{
    return readWorkbook(file)["content"].toObject()[sheet].toObject()["cells"].toObject();
}
