#include "DeskDirectory.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <xlsxdocument.h>

#include "documents/DocumentFixture.h"
#include "store/UpdateFixture.h"
#include "support/PrintFixture.h"
#include "support/TempApplication.h"

namespace {

void addDocuments(TempApplication& app)
{
    const QString content = jsonText({{"#NO", valueEntry(2, 5)}, {"#TEXT", valueEntry(5, "Т")}});
    for (const char* name : {"Первый", "Второй"}) {
        app.exec("INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME, BIRTH_DATE, "
                 "DOC_TYPE, DOC_GROUP, ISSUE_DATE, EDIT_DATE, DUPLICATE, TEMPLATE, "
                 "TEMPLATE_NAME, CONTENT) VALUES ('А', '1', 'Имя', ?, '', '2001-03-09', 1, '9', "
                 "'2021-06-25', '2021-06-25', 0, 0, '', ?)",
                 {name, content});
    }
    app.exec("INSERT INTO docs (LNAME, DOC_TYPE, DOC_GROUP, ISSUE_DATE, DUPLICATE, TEMPLATE, "
             "TEMPLATE_NAME, CONTENT) VALUES ('', 1, '9', '2021-06-25', 0, 1, 'Шаблон', ?)",
             {content});
}

void addLayouts(TempApplication& app)
{
    app.exec("INSERT INTO blanks (NAME, FORM_ID, PAPER_FORMAT, PAPER_ORIENTATION, PAGES, FONT, "
             "FONT_SIZE, BACKGROUND_IMG, SIZE_WIDTH, SIZE_HEIGHT, OFFSET_X, OFFSET_Y, CONTENT) "
             "VALUES ('Бланк', 1, 0, 1, 1, 'Liberation Serif', 12, '', 210, 297, 0, 0, ?)",
             {jsonText({{"fields", QJsonArray{blankItem(0, "#TEXT", QRectF(50, 50, 300, 60))}}})});
    const QJsonArray items = {QJsonObject{{"col", "A"}, {"tag", "#DUPLICATE"}},
                              QJsonObject{{"col", "B"}, {"tag", "#LNAME"}}};
    app.exec("INSERT INTO export (NAME, FIELDS, TYPE, TEMPLATE, FROM_ROW, TO_ROW, DATE_FORMAT) "
             "VALUES ('Обмен', ?, 0, '', 2, 99, 'dd.MM.yyyy')",
             {jsonText({{"items", items}})});
}

void writeImport(const QString& path)
{
    QXlsx::Document workbook;
    workbook.write("A2", "Оригинал");
    workbook.write("B2", "Третий");
    workbook.write("A3", "Дубликат");
    workbook.write("B3", "Четвёртый");
    if (!workbook.saveAs(path)) {
        qFatal("no workbook to import");
    }
}

} // namespace

Files deskFiles()
{
    TempApplication app;
    addForm(app, "Работа", {formField("#NO", "Номер", 2), formField("#TEXT", "Текст", 5)});
    addList(app, {"один", "два"});
    app.exec("INSERT INTO zvsys (DB_VERSION) VALUES ('1.0.0.0')");
    addDocuments(app);
    addLayouts(app);
    writeImport(app.path("in.xlsx"));

    Files files = {{"docs.db", filesIn(app.path())["docs.db"]},
                   {"in.xlsx", filesIn(app.path())["in.xlsx"]},
                   {"data/orgData.json", "{\"region\": \"Тверская область\"}"}};
    app.exec("UPDATE docs SET LNAME = 'Прежний'");
    files["docs_backup.db"] = filesIn(app.path())["docs.db"];
    app.exec("UPDATE docs SET LNAME = 'Архивный'");
    files["storage/archive.zlv"] = filesIn(app.path())["docs.db"];
    return files;
}

QByteArray deskUpdate()
{
    return packPackage(
        headerFor("1.2.0.0"),
        {sqlPart("1.2.0.0", "UPDATE forms SET FORM_FULLNAME = 'Обновлённая'"),
         sqlPart("1.2.0.0", "UPDATE docs SET CONTENT = CONTENT || '" + QString(20000, ' ') + "'"),
         sqlPart("1.2.0.0", "INSERT INTO lists (LIST_NAME, LIST_ITEMS) VALUES ('Из пакета', "
                            "'{\"items\": []}')")});
}
