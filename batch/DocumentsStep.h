#pragma once

#include <QVector>
#include <QWidget>

#include <memory>

#include "batch/PlannedSheet.h"

class DocumentsModel;

namespace Ui {
class DocumentsStep;
}

/// The first step: which documents are printed, and on which blanks.
class DocumentsStep : public QWidget
{
    Q_OBJECT

public:
    explicit DocumentsStep(QWidget* parent = nullptr);
    ~DocumentsStep() override;

    /// Reads documents, forms and blanks from the open database. Filters, ticks and what was set
    /// for a blank stay. False, with everything as it was, if it can't be read.
    bool load();

    /// The sheets of the ticked documents in the order of the list, a document's one after the
    /// other. A document whose form has no blank has one sheet, without a blank.
    QVector<PlannedSheet> sheets() const;

    /// "Выбрано 27 из 204".
    QString statusLine() const;

    /// Puts the keyboard where a user begins.
    void takeFocus();

signals:
    /// Another choice of documents or blanks.
    void choiceChanged();

    /// The user is done with this step.
    void finished();

private:
    void connectFilters();
    void applyFilters();
    void resetFilters();
    void showTypes(const QVector<QPair<qint64, QString>>& forms);
    void showBlanks();
    void showNotice();

    std::unique_ptr<Ui::DocumentsStep> m_ui;
    DocumentsModel* m_documents;
};
