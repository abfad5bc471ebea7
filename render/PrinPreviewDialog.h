#pragma once

#include <QDialog>
#include <QFont>
#include <QJsonObject>
#include <QSizeF>
#include <QVariant>

#include <memory>

#include "render/page/BlankList.h"

class PageBuilder;
class QGraphicsLayoutItem;
class QGraphicsPixmapItem;
class QGraphicsProxyWidget;
class QGraphicsScene;
class QPainter;
class QPrinter;

namespace Ui {
class PrinPreviewDialog;
}

/// Shows one document on one of the blanks of its form and prints it. The scene that is shown is
/// the page that is printed: a scene unit is nominally a pixel at 96 dots per inch, the origin is
/// the top left corner of the paper.
class PrinPreviewDialog : public QDialog
{
    Q_OBJECT

public:
    /// Names and IDs of blanks.
    using BlankList = ::BlankList;

    /// `document` is the ID of a document.
    explicit PrinPreviewDialog(const QVariant& document, QWidget* parent = nullptr);
    ~PrinPreviewDialog() override;

    /// The blanks that can print the document, in the database's order; empty if there is none or
    /// the document cannot be read.
    BlankList loadBlanksForDoc(const QVariant& document);

    /// The blanks of a form.
    BlankList loadBlanksForForm(const QVariant& formId);

    /// The page that the preview shows and printTo() prints; made at the first call, empty until
    /// buildScene() fills it. Owned by the dialog.
    QGraphicsScene* pageScene();

    /// Clears the page and lays the document out on the blank. False, with an empty page, if one
    /// of the two rows cannot be read. The page must outlive its use by the other operations.
    bool buildScene(QGraphicsScene* page, const QVariant& document, const QVariant& blankId);

    /// Adds one item object of the blank's `CONTENT` to the page that was built last.
    void createBlankFieldItem(const QJsonObject& item);

    /// The frame of a table item with the rows of `docField`, a table entry of the document. The
    /// caller sets its geometry and owns it until it is in a scene.
    QGraphicsProxyWidget* createBlankFieldTableItem(const QJsonObject& docField,
                                                    const QJsonObject& item, const QFont& font);

    /// The frame of a text item; `text` is the finished text and may hold markup. Ownership and
    /// geometry as for a table item.
    QGraphicsProxyWidget* createBlankFieldTextItem(const QString& text, const QJsonObject& item,
                                                   const QFont& font);

    /// A new Z stroke, to be put into a frame's layout, which then owns it.
    QGraphicsLayoutItem* createZItem();

    /// Ticks the box that lets the background be printed, or clears it.
    void setBackgroundPrinted(bool printed);

    /// Prints the page on one sheet and closes the dialog, whatever the printer made of it; false
    /// if there is no page. The items of the page stay moved by the print offsets.
    bool printTo(QPrinter& printer);

    /// printTo() without the closing: sets the blank's paper on the printer and paints the page
    /// with `painter`. The first page begins the painter, each further one starts a new sheet.
    /// False if there is no page or the printer cannot print.
    bool printPage(QPrinter& printer, QPainter& painter);

public slots:
    /// Shows the preview. 0 at once, after a message, if no blank prints the document.
    int exec() override;

    void on_buttonPrint_clicked();
    void on_buttonReject_clicked();
    void on_comboBoxBlank_currentIndexChanged(int index);

private:
    std::unique_ptr<Ui::PrinPreviewDialog> ui;
    QGraphicsScene* scene = nullptr;
    QGraphicsPixmapItem* backgroundItem = nullptr; // owned by the scene
    QString lastError;
    QVariant docId;
    QJsonObject docValues;
    QJsonObject docContent;
    int paperOrientation = 0;
    int paperFormat = 0;
    QFont blankFont;
    QSizeF blankPageSize; // millimetres
    int offsetX = 0;      // millimetres
    int offsetY = 0;      // millimetres
    std::unique_ptr<PageBuilder> m_builder;
};
