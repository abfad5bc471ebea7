#pragma once

#include <QHash>
#include <QMap>
#include <QString>
#include <QTableWidget>
#include <QVariant>
#include <QVector>

#include "render/page/BlankList.h"

/// The blanks of the chosen documents' forms: which of them are printed, how often, and whether
/// with their backgrounds. A form without a blank has a row that says so.
class BlanksTable : public QTableWidget
{
    Q_OBJECT

public:
    /// A form with documents that were chosen.
    struct Form
    {
        qint64 id;
        QString name;
        int documents;
    };

    /// What the user has set for a blank.
    struct Choice
    {
        QVariant id;
        QString name; ///< "Бланк N" for an unnamed one
        bool isPrinted = false;
        int copies = 1;
        bool withBackground = false;
    };

    explicit BlanksTable(QWidget* parent = nullptr);

    /// Takes the blanks of all forms, by the form's ID. What the user has set for a blank stays; of
    /// a new form's blanks the first is printed.
    void setBlanks(const QHash<qint64, BlankList>& blanks);

    /// Shows the blanks of these forms. What was set for others comes back with them.
    void setForms(const QVector<Form>& forms);

    /// The blanks of a form that are printed, in the database's order.
    QVector<Choice> printed(qint64 form) const;

    /// Whether the form has any blank.
    bool hasBlanks(qint64 form) const { return !m_choices.value(form).isEmpty(); }

    /// Names of the forms shown of which no blank is printed, though they have some.
    QStringList formsLeftOut() const;

signals:
    void choicesChanged();

private:
    enum Column
    {
        BlankColumn,
        FormColumn,
        DocumentsColumn,
        CopiesColumn,
        BackgroundColumn,
        ColumnCount
    };

    void addFormWithoutBlanks(const Form& form);
    void addBlank(const Form& form, int blank);
    void addCopies(int row, const Form& form, int blank);
    void takeTick(const QTableWidgetItem* item);
    Choice& choiceOf(int row);

    QVector<Form> m_forms;
    QHash<qint64, QVector<Choice>> m_choices; // of each form
    QVector<QPair<qint64, int>> m_rows;       // form and number of its blank; -1: none
};
