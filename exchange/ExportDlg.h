#pragma once

#include <QDialog>
#include <QJsonDocument>
#include <QVariant>

#include <memory>

#include "store/JsonColumn.h"

class QSqlQuery;

namespace QXlsx {
class Document;
}

namespace Ui {
class ExportDlg;
}

/// Exchange of documents with .xlsx workbooks: edits the templates that map sheet columns to tags,
/// and starts the export and the import by the selected one. Every edit is written to the database
/// at once; failures go to the log and leave the widgets as they were.
class ExportDlg : public QDialog
{
    Q_OBJECT

public:
    explicit ExportDlg(QWidget* parent = nullptr);
    ~ExportDlg() override;

    /// The statement that selects the documents to export; empty for all documents.
    void setDocsQuery(const QString& query);

    /// Fills the list of templates. While it cannot be read, edits have no effect.
    void loadTemplates();

    /// Fills the choice of the form for import; nothing is selected in it.
    void loadForms();

    /// Shows the mapping in a template's `FIELDS` object.
    void loadFields(const QJsonObject& object);

public slots:
    /// Makes a new template and selects it.
    void addTemplate();
    /// Deletes the selected template after a question.
    void deleteTemplate();
    /// Writes the selected template's five values as the widgets show them.
    void editTemplate();
    void addField();
    void deleteField();
    /// Stores the mapping's current row as it was edited in place.
    void editField();
    /// Shows the template that became current, or empties the widgets if none is.
    void selChange();
    /// Asks for the workbook to fill; cancelling clears its path.
    void tmpFileClicked();
    /// Writes the documents of `docsQuery` into a copy of the template's workbook.
    void exportClicked();
    /// Makes a document of the chosen form from each sheet row of the range.
    void importClicked();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// What an import takes from the widgets.
    struct ImportRequest
    {
        int firstRow;
        int lastRow; ///< inclusive
        int formId;
        QString dateFormat;
        QString file;
    };

    void connectWidgets();
    void showTemplate(const QString& workbook, const QString& from, const QString& to,
                      const QString& dates);
    void showNoTemplate();
    bool changeItems(const JsonLogLines& log, QJsonDocument::JsonFormat format,
                     const JsonArrayChange& change);
    void exportDocuments(QSqlQuery& templateQuery, QSqlQuery& documents);
    std::unique_ptr<QXlsx::Document> openTemplate(const QString& path);
    QString askExportFile(const QString& templateName);
    void importRows(QSqlQuery& form, QSqlQuery& templateQuery, const ImportRequest& request);

    std::unique_ptr<Ui::ExportDlg> ui;
    bool loadingFields = false;
    bool loadingTemplate = false;
    QVariant currentTemplateId = -1;
    QString docsQuery;
};
