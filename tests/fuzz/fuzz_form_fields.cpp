// Bytes taken as the field definitions of a form: the content that a new document gets, its table
// in the document dialogs, and the windows that show and edit the fields.

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTableWidget>

#include <memory>

#include "documents/DocumentContent.h"
#include "forms/FieldEditDlg.h"
#include "forms/FormDefinitions.h"
#include "forms/FormsDlg.h"
#include "fuzz/FuzzSupport.h"

namespace {

constexpr int formId = 1;
constexpr int editedFields = 3; // a window of its own for each: not for all of them

/// The form that every input is stored in, and the windows that show it.
struct Fixture
{
    Fixture()
    {
        openFreshDatabase();
        insertFormAndList();
        forms = std::make_unique<FormsDlg>();
        fields = forms->findChild<QTableWidget*>("fieldsWidget");
        auto* rows = forms->findChild<QTableWidget*>("formsWidget");
        require(fields && rows && rows->rowCount() == 1, "the window shows the form");
        rows->setCurrentCell(0, 0);
        contentTable.setColumnCount(2);
        setUpContentTable(&contentTable);
    }

    std::unique_ptr<FormsDlg> forms;
    QTableWidget* fields = nullptr;
    QTableWidget contentTable;
};

void ignoreButton(QPushButton*) {}

void checkFieldsWidget(Fixture& fixture, const QJsonArray& fields)
{
    fixture.forms->selChange();
    require(fixture.fields->rowCount() == fields.size(), "each field has a row");
    require(readFormFields(formId).object["fields"].toArray() == fields,
            "showing the fields leaves them alone");
}

void checkContent(Fixture& fixture, const QJsonObject& content)
{
    loadContentTable(&fixture.contentTable, content, {ignoreButton, ignoreButton});
    require(fixture.contentTable.rowCount() == content.size(), "each entry has a row");
    QJsonObject saved = content;
    saveContentTable(&saved, &fixture.contentTable);
    require(saved.keys() == content.keys(), "saving neither adds nor drops an entry");
    for (auto it = content.begin(); it != content.end(); ++it) {
        const QJsonObject before = it.value().toObject();
        const QJsonObject after = saved[it.key()].toObject();
        for (const char* key : {"name", "type", "columns"}) {
            require(after[key] == before[key], "saving changes nothing but the value");
        }
    }
}

/// The toolkit's own lookup misses keys that hold zero characters.
QJsonValue valueOf(const QJsonObject& object, const QString& key)
{
    const QStringList keys = object.keys();
    const int place = keys.indexOf(key);
    return place < 0 ? QJsonValue(QJsonValue::Undefined) : (object.begin() + place).value();
}

/// A field that is only looked at keeps what the dialog has no editor for.
void checkEditor(const QJsonObject& field)
{
    FieldEditDlg dialog;
    dialog.setField(field);
    require(dialog.field() == field, "an opened field is unchanged");
    dialog.onDone();
    const QStringList edited = {"type", "name", "tag", "list", "format", "content"};
    const QJsonObject after = dialog.field();
    for (auto it = field.begin(); it != field.end(); ++it) {
        require(edited.contains(it.key()) || valueOf(after, it.key()) == it.value(),
                "an unknown key survives the editor");
    }
}

} // namespace

void tryInput(const QByteArray& input)
{
    static auto* fixture = new Fixture;
    runSql("UPDATE forms SET FIELDS = ? WHERE ID = 1", {input});
    const QJsonDocument document = QJsonDocument::fromJson(input);
    const QJsonArray fields = document.object()["fields"].toArray();
    checkFieldsWidget(*fixture, fields);

    const QJsonObject untouched{{"#KEPT", "kept"}};
    QJsonObject content = untouched;
    const bool isBuilt = buildContent(formId, &content);
    require(isBuilt == document.isObject(), "a form that is an object can be built from");
    if (!isBuilt) {
        require(content == untouched, "a form that cannot be read changes no content");
        return;
    }
    checkContent(*fixture, content);
    for (int i = 0; i < fields.size() && i < editedFields; ++i) {
        checkEditor(fields[i].toObject());
    }

    require(writeFormFields(formId, document.object()), "the fields can be stored");
    require(readFormFields(formId).object == throughJsonText(document.object()),
            "stored fields are read back");
}
