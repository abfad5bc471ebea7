#pragma once

#include <QTableView>

class DocumentsModel;
class HeadingCheck;

/// The list of documents with tick boxes. A click on a box ticks its document, Shift and a click
/// all from the last one that was clicked, Space those that are selected, and the box in the
/// heading all that are shown.
class DocumentsTable : public QTableView
{
    Q_OBJECT

public:
    explicit DocumentsTable(QWidget* parent = nullptr);

    /// Shows the documents; the model must outlive the table.
    void setDocuments(DocumentsModel* documents);

    /// What stands in grey in the middle as long as there is no row.
    void setNotice(const QString& notice);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool pressTick(const QMouseEvent& event);
    void tickUpTo(int row);
    void tickSelected();
    void keepCurrent();
    void restoreCurrent();
    void showHeading();

    DocumentsModel* m_documents = nullptr;
    HeadingCheck* m_heading;
    QString m_notice;
    QVariant m_currentId;      // of the document that is current while the rows are made anew
    QVariant m_anchorId;       // document of the last click
    bool m_anchorTicks = true; // what that click did
};
