#include "scripts/guide-pictures/GuidePictures.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDataStream>
#include <QDateEdit>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QSplitter>
#include <QSqlQuery>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QVariant>

#include <cmath>
#include <functional>

#include "app/AppHelpers.h"
#include "batch/BatchWindow.h"
#include "batch/ElidedLabel.h"
#include "blanks/BlankDlg.h"
#include "blanks/BlankFormatDialog.h"
#include "blanks/BlankRecord.h"
#include "blanks/BlankWindow.h"
#include "blanks/TableLayoutDialog.h"
#include "documents/DocDialog.h"
#include "documents/MainWindow.h"
#include "documents/NewDocDlg.h"
#include "documents/TableMemoDialog.h"
#include "documents/TextMemoDialog.h"
#include "documents/TextValDialog.h"
#include "exchange/ExportDlg.h"
#include "forms/FieldEditDlg.h"
#include "forms/FormDefinitions.h"
#include "forms/FormEditDlg.h"
#include "forms/FormsDlg.h"
#include "forms/TableColumFormDialog.h"
#include "preflight/PageCheck.h"
#include "preflight/ProofPicture.h"
#include "printing/calibration/CalibrationSheet.h"
#include "render/PrinPreviewDialog.h"
#include "render/page/BlankPaper.h"
#include "render/page/PageRows.h"
#include "store/ChangeOrgDataDlg.h"
#include "store/DataBase.h"
#include "store/DataBaseUpdater.h"
#include "store/UpdatePackage.h"

namespace {

// What of the sample the pictures show.
constexpr int diplomaForm = 2;
constexpr int diplomaBlank = 2;
constexpr int supplementBlank = 3;
constexpr int diplomaDocument = 71;
constexpr int marksList = 10;

class Pictures
{
public:
    explicit Pictures(const QString& folder)
        : m_folder(folder)
    {
    }

    bool makeAll(const QStringList& only);

private:
    using Make = void (Pictures::*)();

    void take(QWidget* window, const QString& name);
    void save(const QImage& picture, const QString& name);
    void show(QWidget& window, const QString& name);

    void mainWindow();
    void forms();
    void formNames();
    void fields();
    void columnSettings();
    void lists();
    void newDocument();
    void documentTemplates();
    void templateName();
    void document();
    void valueEditors();
    void blanks();
    void blankFormat();
    void blankEditor();
    void tableLayout();
    void preview();
    void testSheet();
    void proof();
    void batch();
    void testBlank();
    void exchange();
    void organisation();
    void questions();
    void messages();

    QString m_folder;
    bool m_allWritten = true;
};

template <class Widget>
Widget* part(const QWidget* window, const char* name)
{
    auto* found = window->findChild<Widget*>(QLatin1String(name));
    if (!found) {
        qFatal("%s has no %s", window->metaObject()->className(), name);
    }
    return found;
}

/// Lets layouts, style sheets and delayed repaints come to rest.
void settle()
{
    constexpr int rounds = 3;
    for (int i = 0; i < rounds; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

/// Runs `open`, which runs a modal dialog of the type, does `step` in it and rejects it.
template <class Dialog>
void inModal(const std::function<void()>& open, const std::function<void(Dialog*)>& step)
{
    constexpr int pollMs = 20;
    bool met = false;
    QTimer poll;
    poll.setInterval(pollMs);
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible() || met) {
            return;
        }
        met = true;
        poll.stop();
        step(dialog);
        static_cast<QDialog*>(dialog)->reject();
    });
    poll.start();
    open();
    if (!met) {
        qFatal("%s did not open", Dialog::staticMetaObject.className());
    }
}

/// The row of a table whose first item carries this identity.
int rowOf(const QTableWidget* table, const QVariant& id)
{
    for (int row = 0; row < table->rowCount(); ++row) {
        if (table->item(row, 0)->data(Qt::UserRole) == id) {
            return row;
        }
    }
    qFatal("the sample has no row %s", qUtf8Printable(id.toString()));
    return -1;
}

void selectRow(QTableWidget* table, const QVariant& id)
{
    table->setCurrentCell(rowOf(table, id), 0);
    table->scrollToItem(table->currentItem(), QAbstractItemView::PositionAtCenter);
}

QJsonObject fieldOfForm(int formId, const QString& tag)
{
    const QJsonArray fields = readFormFields(formId).object["fields"].toArray();
    for (const QJsonValue& field : fields) {
        if (field["tag"].toString() == tag) {
            return field.toObject();
        }
    }
    qFatal("the sample's form %d has no %s", formId, qUtf8Printable(tag));
    return {};
}

void changeSample(const QString& statement)
{
    QSqlQuery query;
    if (!query.exec(statement)) {
        qFatal("the sample refused: %s", qUtf8Printable(statement));
    }
}

QJsonObject documentContent(int id)
{
    QSqlQuery query("SELECT CONTENT FROM docs WHERE ID = " + QString::number(id));
    return query.next() ? parseJsonColumn(query.value(0)) : QJsonObject();
}

/// The title bar that a desktop would draw, and a thin frame: most windows are white, as the page.
QImage withTitle(const QPixmap& content, const QString& title)
{
    constexpr int barHeight = 28;
    constexpr int textIndent = 10;
    constexpr int edge = 1;
    QImage image(content.width() + 2 * edge, content.height() + barHeight + edge,
                 QImage::Format_RGB32);
    image.fill(QColor("#E6EAF4"));
    QPainter painter(&image);
    QFont font("Roboto");
    font.setPixelSize(13);
    painter.setFont(font);
    painter.setPen(QColor("#404040"));
    painter.drawText(QRect(textIndent, 0, image.width() - 2 * textIndent, barHeight),
                     Qt::AlignVCenter | Qt::AlignLeft, title);
    painter.drawPixmap(edge, barHeight, content);
    painter.setPen(QColor("#AAB4CC"));
    painter.drawRect(image.rect().adjusted(0, 0, -1, -1));
    return image;
}

void Pictures::take(QWidget* window, const QString& name)
{
    if (QWidget* focused = QApplication::focusWidget()) {
        focused->clearFocus(); // no caret that is there by chance
    }
    settle();
    save(withTitle(window->grab(), window->windowTitle()), name);
}

void Pictures::save(const QImage& picture, const QString& name)
{
    const QString file = m_folder + "/" + name + ".png";
    if (!picture.save(file)) {
        qWarning() << "could not write" << file;
        m_allWritten = false;
    }
}

void Pictures::show(QWidget& window, const QString& name)
{
    window.show();
    take(&window, name);
    window.hide();
}

void setFilterDates(const QWidget& window)
{
    part<QDateEdit>(&window, "fromDate")->setDate(QDate(2023, 7, 1));
    part<QDateEdit>(&window, "toDate")->setDate(QDate(2023, 7, 31));
}

void Pictures::mainWindow()
{
    MainWindow window;
    setFilterDates(window);
    window.show();
    settle();
    selectRow(part<QTableWidget>(&window, "docsWidget"), diplomaDocument);
    take(&window, "main-window");

    part<QLineEdit>(&window, "filterGroupEdit")->setText("ИС-41");
    auto* types = part<QComboBox>(&window, "filterTypeCmb");
    types->setCurrentIndex(types->findData(diplomaForm));
    part<QCheckBox>(&window, "dateCheck")->setChecked(true);
    part<QToolButton>(&window, "filterApplyBtn")->click();
    take(&window, "filter");
}

void Pictures::forms()
{
    FormsDlg dialog;
    dialog.resize(1000, dialog.height());
    dialog.show();
    settle();
    part<QSplitter>(&dialog, "splitter")->setSizes({380, 600});
    selectRow(part<QTableWidget>(&dialog, "formsWidget"), diplomaForm);
    // As a user drags them: the tags are the point of the picture.
    auto* fields = part<QTableWidget>(&dialog, "fieldsWidget");
    fields->setColumnWidth(0, 160);
    fields->setColumnWidth(1, 250);
    take(&dialog, "forms");
}

void Pictures::formNames()
{
    FormEditDlg dialog;
    dialog.setFormName("Диплом СПО");
    dialog.setFullName("Диплом о среднем профессиональном образовании");
    dialog.resize(720, dialog.height());
    show(dialog, "form-names");
}

void Pictures::fields()
{
    const QVector<QPair<QString, QString>> shown = {{"#REG_NUMBER", "field-string"},
                                                    {"#QUALIFICATION", "field-list"},
                                                    {"#PROTOCOL_DATE", "field-date"},
                                                    {"#SUBJECTS", "field-table"}};
    for (const auto& [tag, picture] : shown) {
        FieldEditDlg dialog;
        dialog.setField(fieldOfForm(diplomaForm, tag));
        show(dialog, picture);
    }
}

void Pictures::columnSettings()
{
    const QJsonArray columns = fieldOfForm(diplomaForm, "#SUBJECTS")["content"].toArray();
    TableColumFormDialog dialog(columns.last().toObject());
    show(dialog, "column-settings");
}

void Pictures::lists()
{
    FormsDlg dialog;
    part<QTabWidget>(&dialog, "mainTab")->setCurrentIndex(1);
    selectRow(part<QTableWidget>(&dialog, "listsWidget"), marksList);
    show(dialog, "lists");
}

void fillNewDocument(const NewDocDlg& dialog)
{
    auto* types = part<QComboBox>(&dialog, "docTypeCmb");
    types->setCurrentIndex(types->findData(diplomaForm));
    part<QLineEdit>(&dialog, "groupEdit")->setText("ИС-41");
    part<QLineEdit>(&dialog, "lnameEdit")->setText("Абрамова");
    part<QLineEdit>(&dialog, "fnameEdit")->setText("Вера");
    part<QLineEdit>(&dialog, "mnameEdit")->setText("Николаевна");
    part<QDateEdit>(&dialog, "birthDateEdit")->setDate(QDate(2004, 3, 9));
    part<QDateEdit>(&dialog, "issueDateEdit")->setDate(QDate(2024, 6, 28));
    part<QDateEdit>(&dialog, "editDateEdit")->setDate(QDate(2024, 6, 20));
    const auto contentDates =
        part<QTableWidget>(&dialog, "contentTable")->findChildren<QDateEdit*>();
    for (QDateEdit* date : contentDates) {
        date->setDate(QDate(2024, 6, 20));
    }
    part<QLineEdit>(&dialog, "seriesEdit")->setText("114524");
    part<QLineEdit>(&dialog, "numberEdit")->setText("0003101");
}

void Pictures::newDocument()
{
    NewDocDlg dialog;
    dialog.show();
    settle();
    fillNewDocument(dialog);
    take(&dialog, "new-document");
}

void Pictures::documentTemplates()
{
    NewDocDlg dialog;
    fillNewDocument(dialog);
    part<QTabWidget>(&dialog, "newDocTab")->setCurrentIndex(1);
    show(dialog, "templates");
}

void Pictures::templateName()
{
    TextValDialog dialog;
    dialog.setWindowTitle("Введите название шаблона:");
    part<QLineEdit>(&dialog, "valueEdit")->setText("Диплом, программисты, 2024 год");
    show(dialog, "template-name");
}

void Pictures::document()
{
    MainWindow window;
    window.show();
    selectRow(part<QTableWidget>(&window, "docsWidget"), diplomaDocument);
    inModal<DocDialog>([&] { window.onEditDoc(); },
                       [this](DocDialog* dialog) { take(dialog, "document"); });
}

/// The button in the cell of a document's entry that opens the editor of its value.
QAbstractButton* valueButton(const DocDialog& document, const QString& tag)
{
    constexpr int valueColumn = 1;
    const auto* entries = part<QTableWidget>(&document, "contentTable");
    auto* button =
        qobject_cast<QAbstractButton*>(entries->cellWidget(rowOf(entries, tag), valueColumn));
    if (!button) {
        qFatal("%s has no button", qUtf8Printable(tag));
    }
    return button;
}

void Pictures::valueEditors()
{
    // By the buttons, as users do: the editors take their style from the document's window too.
    DocDialog document;
    document.setContent(documentContent(diplomaDocument));
    document.show();
    inModal<TableMemoDialog>([&] { valueButton(document, "#SUBJECTS")->click(); },
                             [this](TableMemoDialog* dialog) {
                                 dialog->resize(620, dialog->height());
                                 take(dialog, "table-editor");
                             });
    inModal<TextMemoDialog>([&] { valueButton(document, "#NOTES")->click(); },
                            [this](TextMemoDialog* dialog) { take(dialog, "text-editor"); });
}

void Pictures::blanks()
{
    BlankDlg dialog;
    dialog.show();
    settle();
    selectRow(part<QTableWidget>(&dialog, "blanksWidget"), diplomaBlank);
    take(&dialog, "blanks");
}

void Pictures::blankFormat()
{
    BlankDlg list;
    inModal<BlankFormatDialog>([&] { list.editFormat(diplomaBlank); },
                               [this](BlankFormatDialog* dialog) { take(dialog, "blank-format"); });
}

QGraphicsView* pageOf(const BlankWindow& window)
{
    return window.findChild<QGraphicsView*>();
}

/// Opens a blank with the page turned smaller by so many steps of the mouse wheel.
void openBlank(BlankWindow& window, int blankId, int wheelSteps)
{
    constexpr double wheelStep = 1 / 1.15;
    window.setBlankId(blankId);
    window.loadBlank();
    window.loadBlankTree();
    part<QTreeWidget>(&window, "blankTree")->expandAll();
    window.resize(1240, 700);
    window.show();
    settle();
    window.findChild<QSplitter*>()->setSizes({210, 760, 260});
    const double scale = std::pow(wheelStep, wheelSteps);
    pageOf(window)->scale(scale, scale);
}

/// Selects the frame of the item that stands there.
void selectItem(const BlankWindow& window, int x, int y)
{
    const QList<QGraphicsItem*> items = pageOf(window)->scene()->items();
    for (QGraphicsItem* item : items) {
        const bool isFrame = item->data(BlankWindow::itemDataSlot).isValid();
        if (isFrame && item->pos().toPoint() == QPoint(x, y)) {
            item->setSelected(true);
            return;
        }
    }
    qFatal("the blank has no item at %d, %d", x, y);
}

void Pictures::blankEditor()
{
    BlankWindow texts;
    openBlank(texts, diplomaBlank, 1);
    selectItem(texts, 411, 164);
    take(&texts, "blank-editor");

    BlankWindow table;
    openBlank(table, supplementBlank, 4);
    selectItem(table, 578, 90);
    take(&table, "blank-editor-table");
}

void Pictures::tableLayout()
{
    BlankWindow window;
    openBlank(window, supplementBlank, 4);
    selectItem(window, 578, 90);
    inModal<TableLayoutDialog>([&] { window.tableEdit(); },
                               [this](TableLayoutDialog* dialog) { take(dialog, "table-layout"); });
}

void Pictures::preview()
{
    PrinPreviewDialog title(diplomaDocument);
    inModal<PrinPreviewDialog>([&] { title.exec(); },
                               [this](PrinPreviewDialog* dialog) {
                                   dialog->resize(dialog->width(), 740);
                                   take(dialog, "preview");
                               });
    PrinPreviewDialog supplement(diplomaDocument);
    inModal<PrinPreviewDialog>([&] { supplement.exec(); },
                               [this](PrinPreviewDialog* dialog) {
                                   auto* blanks = part<QComboBox>(dialog, "comboBoxBlank");
                                   blanks->setCurrentIndex(blanks->findData(supplementBlank));
                                   take(dialog, "preview-table");
                               });
}

/// The calibration sheet on paper that lies on a table, `shift` millimetres from its place: what of
/// the table is at `view`, in millimetres from the paper's corner.
QImage sheetOnPaper(const CalibrationSheet& sheet, const QSizeF& paper, const QRectF& view,
                    double dotsPerMillimetre, const QPointF& shift)
{
    constexpr double edge = 0.2; // millimetres
    QImage image((view.size() * dotsPerMillimetre).toSize(), QImage::Format_RGB32);
    image.fill(QColor("#E6EAF4"));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(dotsPerMillimetre, dotsPerMillimetre);
    painter.translate(-view.topLeft());
    painter.setPen(QPen(QColor("#AAB4CC"), edge));
    painter.setBrush(Qt::white);
    painter.drawRect(QRectF(QPointF(), paper));
    painter.setBrush(Qt::NoBrush);
    painter.setClipRect(QRectF(QPointF(), paper));
    painter.translate(shift);
    sheet.paint(painter, paper);
    return image;
}

/// A ruler across the picture whose zero is at `zero`, in dots of the picture.
void drawRuler(QImage& image, const QPointF& zero, double dotsPerMillimetre)
{
    constexpr double thickness = 9; // millimetres
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(zero);
    painter.scale(dotsPerMillimetre, dotsPerMillimetre);
    painter.setPen(QPen(QColor("#B89A3C"), 0.15));
    painter.setBrush(QColor("#FBEFC4"));
    const double length = image.width() / dotsPerMillimetre;
    painter.drawRect(QRectF(0, 0, length, thickness));
    painter.setPen(QPen(QColor("#5C4A10"), 0.12));
    QFont font("Roboto");
    font.setPixelSize(2);
    painter.setFont(font);
    for (int mark = 0; mark < length; ++mark) {
        const bool isLong = mark % 10 == 0;
        const double reach = isLong ? 4 : mark % 5 == 0 ? 3 : 2;
        painter.drawLine(QPointF(mark, 0), QPointF(mark, reach));
        if (isLong) {
            painter.drawText(QRectF(mark - 3, reach + 0.5, 6, 3), Qt::AlignCenter,
                             QString::number(mark));
        }
    }
}

void Pictures::testSheet()
{
    const std::optional<PageBlank> blank = PageBlank::read(diplomaBlank, PageBlank(), nullptr);
    if (!blank) {
        qFatal("the sample has no blank %d", diplomaBlank);
    }
    const BlankPaper paper = blank->paper();
    const CalibrationSheet sheet(paper, blank->name);
    const QSizeF size = paper.sheetSize();

    constexpr double whole = 4; // dots per millimetre
    const QRectF table = QRectF(QPointF(), size).marginsAdded(QMarginsF(3, 3, 3, 3));
    save(sheetOnPaper(sheet, size, table, whole, QPointF()), "test-sheet");

    // A printer that prints 2 mm too far to the right.
    constexpr double corner = 14;
    const QRectF nearCorner(-4, -4, 60, 34);
    QImage measured = sheetOnPaper(sheet, size, nearCorner, corner, QPointF(2, 0));
    drawRuler(measured, (QPointF(0, 15) - nearCorner.topLeft()) * corner, corner);
    save(measured, "test-sheet-ruler");
}

/// A QR item of the test blank: its pattern begins 4 units to the right of and below the place.
QJsonObject testMark(int x, int y)
{
    constexpr int frame = 98; // scene units
    return {{"type", BlankItemKind::qr},
            {"value", "Zelvora"},
            {"pos_x", x},
            {"pos_y", y},
            {"size_w", frame},
            {"size_h", frame},
            {"font", "Times New Roman"},
            {"font_size", 12}};
}

int addTestBlank()
{
    const QJsonObject content = {{"fields", QJsonArray{testMark(34, 34), testMark(1015, 686)}}};
    QSqlQuery insert;
    insert.prepare("INSERT INTO blanks (NAME, FORM_ID, PAPER_FORMAT, PAPER_ORIENTATION, PAGES, "
                   "FONT, FONT_SIZE, BACKGROUND_IMG, SIZE_WIDTH, SIZE_HEIGHT, OFFSET_X, OFFSET_Y, "
                   "CONTENT) VALUES (?, ?, ?, ?, 1, 'Times New Roman', 12, '', 297, 210, 0, 0, ?)");
    insert.addBindValue("Проверочный лист (А4, альбом)");
    insert.addBindValue(diplomaForm);
    insert.addBindValue(PaperFormat::a4);
    insert.addBindValue(PaperOrientation::landscape);
    insert.addBindValue(QJsonDocument(content).toJson(QJsonDocument::Compact));
    insert.exec();
    return insert.lastInsertId().toInt();
}

void Pictures::testBlank()
{
    const int blankId = addTestBlank();
    BlankWindow editor;
    openBlank(editor, blankId, 4);
    selectItem(editor, 34, 34);
    take(&editor, "test-blank-editor");

    PrinPreviewDialog sheet(diplomaDocument);
    inModal<PrinPreviewDialog>([&] { sheet.exec(); },
                               [this, blankId](PrinPreviewDialog* dialog) {
                                   auto* blanks = part<QComboBox>(dialog, "comboBoxBlank");
                                   blanks->setCurrentIndex(blanks->findData(blankId));
                                   take(dialog, "test-blank-preview");
                               });
    changeSample("DELETE FROM blanks WHERE ID = " + QString::number(blankId));
}

void Pictures::exchange()
{
    // The sample names its workbook by the folder that it was made in.
    changeSample("UPDATE export SET TEMPLATE = 'C:/Zelvora/templates/registry.xlsx'");
    ExportDlg dialog;
    dialog.show();
    part<QTableWidget>(&dialog, "templatesWidget")->setCurrentCell(0, 0);
    auto* forms = part<QComboBox>(&dialog, "formCombo");
    forms->setCurrentIndex(forms->findData(diplomaForm));
    take(&dialog, "exchange");
}

void Pictures::organisation()
{
    ChangeOrgDataDlg dialog;
    show(dialog, "organisation");
}

void Pictures::questions()
{
    MainWindow window;
    window.show();
    selectRow(part<QTableWidget>(&window, "docsWidget"), diplomaDocument);
    inModal<QMessageBox>([&] { window.onDeleteDoc(); },
                         [this](QMessageBox* box) { take(box, "question"); });
}

void Pictures::messages()
{
    const UpdatePackage package = {
        R"({"update_version": "2.0.0.0"})",
        {{R"({"version": "2.0.0.0"})", QString(), "UPDATE journal SET STATE = 1;"}}};
    QFile file(appFilePath("dbUpdate.bin"));
    if (file.open(QIODevice::WriteOnly)) {
        QDataStream stream(&file);
        writeUpdatePackage(stream, package);
        file.close();
    }
    inModal<QMessageBox>([&] { runDatabaseUpdate(file); },
                         [this](QMessageBox* box) { take(box, "update-error"); });

    changeSample("DELETE FROM blanks WHERE FORM_ID = " + QString::number(diplomaForm));
    MainWindow window;
    PrinPreviewDialog preview(diplomaDocument, &window);
    inModal<QMessageBox>([&] { preview.exec(); },
                         [this](QMessageBox* box) { take(box, "no-blank"); });
}

void Pictures::proof()
{
    const QString document = QString::number(diplomaDocument);
    const QString blank = QString::number(diplomaBlank);
    changeSample("UPDATE docs SET LNAME = 'Константинопольский-Преображенский-Вознесенский', "
                 "FNAME = '<Антон>', ISSUE_DATE = '' WHERE ID = " +
                 document);
    // The font that this machine has: a missing one is another story.
    changeSample("UPDATE blanks SET FONT = 'Liberation Serif', CONTENT = "
                 "replace(CAST(CONTENT AS TEXT), 'Times New Roman', 'Liberation Serif') "
                 "WHERE ID = " +
                 blank);
    PageCheck check;
    if (!check.check(document, blank)) {
        qFatal("the sample has no document %d or no blank %d", diplomaDocument, diplomaBlank);
    }
    constexpr int dpi = 110;
    save(ProofPicture(check, dpi, false).draw(), "proof");
}

void Pictures::batch()
{
    {
        BatchWindow window;
        part<ElidedLabel>(&window, "databaseLabel")->setWholeText("docs.db");
        window.resize(1220, 660);
        window.show();
        part<QLineEdit>(&window, "filterGroupEdit")->setText("ИС-41");
        part<QCheckBox>(&window, "selectAllCheck")->click();
        take(&window, "batch-documents");
        part<QAbstractButton>(&window, "toCheckButton")->click();
        auto* findings = part<QTreeWidget>(&window, "findingsTree");
        for (QTreeWidgetItemIterator row(findings); *row; ++row) {
            if ((*row)->childCount() > 0 && findings->currentItem() == *row) {
                findings->setCurrentItem((*row)->child(0));
                break;
            }
        }
        take(&window, "batch-check");
        part<QAbstractButton>(&window, "toPrintButton")->click();
        part<QLineEdit>(&window, "fileEdit")->setText("Документы/Партия.pdf");
        take(&window, "batch-print");
    }
    dataBase.open(); // the window's connection only reads
}

bool Pictures::makeAll(const QStringList& only)
{
    MainWindow().loadDocTypes(); // the document dialogs offer what the main window has read
    const QVector<QPair<QString, Make>> steps = {{"main", &Pictures::mainWindow},
                                                 {"forms", &Pictures::forms},
                                                 {"form-names", &Pictures::formNames},
                                                 {"fields", &Pictures::fields},
                                                 {"column-settings", &Pictures::columnSettings},
                                                 {"lists", &Pictures::lists},
                                                 {"new-document", &Pictures::newDocument},
                                                 {"templates", &Pictures::documentTemplates},
                                                 {"template-name", &Pictures::templateName},
                                                 {"document", &Pictures::document},
                                                 {"value-editors", &Pictures::valueEditors},
                                                 {"blanks", &Pictures::blanks},
                                                 {"blank-format", &Pictures::blankFormat},
                                                 {"blank-editor", &Pictures::blankEditor},
                                                 {"table-layout", &Pictures::tableLayout},
                                                 {"preview", &Pictures::preview},
                                                 {"test-sheet", &Pictures::testSheet},
                                                 {"test-blank", &Pictures::testBlank},
                                                 {"exchange", &Pictures::exchange},
                                                 {"organisation", &Pictures::organisation},
                                                 {"questions", &Pictures::questions},
                                                 {"proof", &Pictures::proof},
                                                 {"batch", &Pictures::batch},
                                                 {"messages", &Pictures::messages}};
    QStringList unknown = only;
    for (const auto& [name, make] : steps) {
        if (only.isEmpty() || unknown.removeAll(name) > 0) {
            (this->*make)();
        }
    }
    if (!unknown.isEmpty()) {
        qWarning() << "no such pictures:" << unknown;
    }
    return m_allWritten && unknown.isEmpty();
}

} // namespace

bool makeGuidePictures(const QString& folder, const QStringList& only)
{
    return QDir().mkpath(folder) && Pictures(folder).makeAll(only);
}
