#pragma once

#include <QJsonObject>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>

class QComboBox;
class QTableWidget;
class QWidget;
class ZelvoraTableButton;

// The values that a form adds to a document, `docs`.`CONTENT`: one JSON object of entries by tag,
// how it comes into being from a form, and its table in the document dialogs.

/// The strings of a value list, `lists`.`LIST_ITEMS`, in their order. Anything that is no such list
/// gives none.
QStringList listItemStrings(const QVariant& listItems);

/// Fills a combo with the known document types: their names, with the form id as data.
void fillDocTypes(QComboBox* combo);

/// A new entry of a content for a field of a form: today in a date, no value yet in a list and in a
/// table, an empty one in the others.
QJsonObject contentEntry(const QJsonObject& field);

/// Makes a fresh content from the fields of a form, with today in the date fields and every other
/// value empty. Returns false, leaves `content` alone and logs why if the form can't be read.
bool buildContent(const QVariant& formId, QJsonObject* content);

/// Prepares the table of a document dialog: caption and value, both headers hidden.
void setUpContentTable(QTableWidget* table);

/// Ties a value button of a content table to the slots of the window that shows the table.
struct ValueButtonSlots
{
    std::function<void(QPushButton*)> connectText;  ///< button of a text field
    std::function<void(QPushButton*)> connectTable; ///< button of a table field
};

/// The slots of `receiver` as those of the value buttons.
template <class Receiver>
ValueButtonSlots valueButtonSlots(Receiver* receiver, void (Receiver::*textSlot)(),
                                  void (Receiver::*tableSlot)())
{
    const auto connectTo = [receiver](void (Receiver::*slot)()) {
        return [receiver, slot](QPushButton* button) {
            QObject::connect(button, &QPushButton::clicked, receiver, slot);
        };
    };
    return {connectTo(textSlot), connectTo(tableSlot)};
}

/// Clears the table and builds one row per entry: the caption, which carries the tag, and the
/// editor of the value. The items of lists are read from the database now.
void loadContentTable(QTableWidget* table, const QJsonObject& content,
                      const ValueButtonSlots& buttonSlots);

/// Writes what the editors hold back into the entries of `content`. Entries without a row stay as
/// they are, a row never adds an entry, and an entry whose list could not be read keeps its value.
void saveContentTable(QJsonObject* content, const QTableWidget* table);

/// Lets the user edit, or with `readOnly` just read, the text that a ZelvoraTextButton holds in its
/// property `text`. The editor is a child of `parent`. Without a button nothing happens.
void runTextEditor(QObject* button, QWidget* parent, bool readOnly = false);

/// Lets the user edit the table of the button, or with `readOnly` just read it, and then the
/// button keeps its value. The editor is a child of `parent`. Without a button nothing happens.
void runTableEditor(ZelvoraTableButton* button, QWidget* parent, bool readOnly = false);
