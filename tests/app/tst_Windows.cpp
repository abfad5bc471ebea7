#include <QtTest>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QGraphicsItem>
#include <QGraphicsView>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonObject>
#include <QLineEdit>
#include <QRadioButton>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTableWidget>

#include <functional>
#include <memory>
#include <vector>

#include "DeskFixture.h"
#include "app/AppStyle.h"
#include "blanks/BlankDlg.h"
#include "blanks/BlankFormatDialog.h"
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
#include "render/PrinPreviewDialog.h"
#include "store/ChangeOrgDataDlg.h"

namespace {

constexpr int diplomaForm = 2;
constexpr int diplomaBlank = 2;
constexpr int diplomaDocument = 71;

/// A window of the application as a registrar meets it on the sample, with what keeps it alive.
struct Shown
{
    std::unique_ptr<QWidget> parent;
    std::unique_ptr<QWidget> window;
};

QJsonObject diplomaContent()
{
    QSqlQuery query("SELECT CONTENT FROM docs WHERE ID = " + QString::number(diplomaDocument));
    return query.first() ? parseJsonColumn(query.value(0)) : QJsonObject();
}

void selectFirstRow(const QWidget* window, const char* table)
{
    window->findChild<QTableWidget*>(table)->setCurrentCell(0, 0);
}

template <class Window>
Shown plain()
{
    return {nullptr, std::make_unique<Window>()};
}

template <class Window>
Shown withRow(const char* table)
{
    Shown shown = plain<Window>();
    selectFirstRow(shown.window.get(), table);
    return shown;
}

Shown tableField()
{
    auto dialog = std::make_unique<FieldEditDlg>();
    const QJsonArray fields = readFormFields(diplomaForm).object["fields"].toArray();
    for (const QJsonValue& field : fields) {
        if (field["type"].toInt() == FieldType::table) {
            dialog->setField(field.toObject());
        }
    }
    return {nullptr, std::move(dialog)};
}

Shown document()
{
    auto dialog = std::make_unique<DocDialog>();
    dialog->setDocType(diplomaForm);
    dialog->setContent(diplomaContent());
    return {nullptr, std::move(dialog)};
}

Shown newDocument()
{
    Shown shown = plain<NewDocDlg>();
    shown.window->findChild<QComboBox*>("docTypeCmb")->setCurrentIndex(1);
    return shown;
}

Shown text()
{
    Shown opener = document();
    auto dialog = std::make_unique<TextMemoDialog>(opener.window.get());
    dialog->setText("Наименование образовательной организации изменилось");
    return {std::move(opener.window), std::move(dialog)};
}

Shown table()
{
    auto dialog = std::make_unique<TableMemoDialog>();
    const QJsonObject subjects = diplomaContent()["#SUBJECTS"].toObject();
    dialog->setData(subjects["columns"].toArray(), {subjects["value"].toArray().first()});
    return {nullptr, std::move(dialog)};
}

Shown blankEditor()
{
    auto window = std::make_unique<BlankWindow>();
    window->setBlankId(diplomaBlank);
    window->loadBlank();
    window->loadBlankTree();
    const QList<QGraphicsItem*> items = window->findChild<QGraphicsView*>()->scene()->items();
    for (QGraphicsItem* item : items) {
        if (item->data(BlankWindow::itemDataSlot).isValid()) {
            item->setSelected(true);
            break;
        }
    }
    return {nullptr, std::move(window)};
}

Shown tableLayout()
{
    auto dialog = std::make_unique<TableLayoutDialog>();
    dialog->setColumns({100, 50}, {0, 1});
    return {nullptr, std::move(dialog)};
}

Shown preview()
{
    auto dialog = std::make_unique<PrinPreviewDialog>(diplomaDocument);
    dialog->buildScene(dialog->pageScene(), diplomaDocument, diplomaBlank);
    return {nullptr, std::move(dialog)};
}

const std::vector<std::pair<const char*, std::function<Shown()>>>& windows()
{
    static const std::vector<std::pair<const char*, std::function<Shown()>>> all = {
        {"main window", plain<MainWindow>},
        {"forms", [] { return withRow<FormsDlg>("formsWidget"); }},
        {"form names", plain<FormEditDlg>},
        {"field", plain<FieldEditDlg>},
        {"table field", tableField},
        {"column settings",
         [] {
             return Shown{nullptr, std::make_unique<TableColumFormDialog>(QJsonObject())};
         }},
        {"document", document},
        {"new document", newDocument},
        {"text", text},
        {"template name", plain<TextValDialog>},
        {"table", table},
        {"blanks", [] { return withRow<BlankDlg>("blanksWidget"); }},
        {"blank format", plain<BlankFormatDialog>},
        {"blank editor", blankEditor},
        {"table layout", tableLayout},
        {"preview", preview},
        {"exchange", [] { return withRow<ExportDlg>("templatesWidget"); }},
        {"organisation", plain<ChangeOrgDataDlg>}};
    return all;
}

void addWindows()
{
    QTest::addColumn<int>("index");
    for (size_t i = 0; i < windows().size(); ++i) {
        QTest::newRow(windows()[i].first) << static_cast<int>(i);
    }
}

Shown makeWindow(int index)
{
    return windows()[index].second();
}

QPalette darkPalette()
{
    QPalette palette(QColor("#353535"), QColor("#2D2D2D"));
    palette.setColor(QPalette::Base, QColor("#232323"));
    for (const QPalette::ColorRole role :
         {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
        palette.setColor(role, Qt::white);
    }
    return palette;
}

/// Share of the pixels that are darker than the darkest background of a window, 0 to 1.
double darkShare(const QImage& image)
{
    constexpr int darkest = 100;
    int dark = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            dark += qGray(image.pixel(x, y)) < darkest ? 1 : 0;
        }
    }
    return static_cast<double>(dark) / (image.width() * image.height());
}

/// Grey value of the darkest pixel inside an editor's border.
int darkest(const QImage& image)
{
    constexpr int border = 3;
    int grey = 255;
    for (int y = border; y < image.height() - border; ++y) {
        for (int x = border; x < image.width() - border; ++x) {
            grey = qMin(grey, qGray(image.pixel(x, y)));
        }
    }
    return grey;
}

/// Fills the combos that get their names only when the window is run.
void fillLateCombos(QWidget* window, const QString& name)
{
    if (auto* format = qobject_cast<BlankFormatDialog*>(window)) {
        format->setForms({name}, {1});
    }
    if (auto* blanks = window->findChild<QComboBox*>("comboBoxBlank")) {
        blanks->addItem(name, 1);
    }
}

/// Letters of the longest item among a window's combos.
int longestItem(const QWidget* window)
{
    int letters = 0;
    const QList<QComboBox*> combos = window->findChildren<QComboBox*>();
    for (const QComboBox* combo : combos) {
        for (int i = 0; i < combo->count(); ++i) {
            letters = qMax(letters, combo->itemText(i).size());
        }
    }
    return letters;
}

/// True for a widget at which Tab must stop. Of radio buttons it stops at one alone, and an editor
/// in a cell belongs to its table.
bool isTabStop(const QWidget* widget)
{
    const auto* radio = qobject_cast<const QRadioButton*>(widget);
    return widget->focusPolicy() & Qt::TabFocus && !widget->focusProxy() && widget->isVisible() &&
           widget->isEnabled() && !widget->isWindow() && !(radio && !radio->isChecked());
}

} // namespace

/// What holds for every window of the application.
class tst_Windows : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void lightOnADarkDesktop_data() { addWindows(); }
    void lightOnADarkDesktop();
    void keyboardReachesEverything_data() { addWindows(); }
    void keyboardReachesEverything();
    void headersKeepTheirFont_data() { addWindows(); }
    void headersKeepTheirFont();
    void placeholdersArePale_data() { addWindows(); }
    void placeholdersArePale();
    void iconButtonsTellWhatTheyDo_data() { addWindows(); }
    void iconButtonsTellWhatTheyDo();
    void noContextHelpButton_data() { addWindows(); }
    void noContextHelpButton();
    void longNamesLeaveTheToldSizes_data();
    void longNamesLeaveTheToldSizes();

private:
    std::unique_ptr<SampleApplication> m_sample;
};

void tst_Windows::initTestCase()
{
    QVERIFY(loadBaseStyle());
    m_sample = std::make_unique<SampleApplication>();
    MainWindow().loadDocTypes(); // the dialogs offer what the main window has read
}

void tst_Windows::lightOnADarkDesktop()
{
    QFETCH(int, index);
    const QPalette desktop = QApplication::palette();
    QApplication::setPalette(darkPalette());
    double dark = 1;
    {
        const Shown shown = makeWindow(index);
        shown.window->show();
        QVERIFY(QTest::qWaitForWindowExposed(shown.window.get()));
        dark = darkShare(shown.window->grab().toImage());
    }
    QApplication::setPalette(desktop);
    // Text and the lines of a page; an editor with the desktop's background is more.
    QVERIFY2(dark < 0.06, QByteArray::number(dark));
}

void tst_Windows::keyboardReachesEverything()
{
    QFETCH(int, index);
    const Shown shown = makeWindow(index);
    if (qobject_cast<TextMemoDialog*>(shown.window.get())) {
        return; // in its text Tab is a character
    }
    QWidget* window = shown.window.get();
    window->show();
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window));

    constexpr int manySteps = 200;
    QSet<QWidget*> reached;
    for (int i = 0; i < manySteps; ++i) {
        QWidget* focused = QApplication::focusWidget();
        QTest::keyClick(focused ? focused : window, Qt::Key_Tab);
        reached.insert(QApplication::focusWidget());
    }
    const QList<QWidget*> widgets = window->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (isTabStop(widget)) {
            const bool inside =
                std::any_of(reached.begin(), reached.end(), [widget](const QWidget* other) {
                    return other && widget->isAncestorOf(other);
                });
            QVERIFY2(reached.contains(widget) || inside, qPrintable(widget->objectName()));
        }
    }
}

void tst_Windows::headersKeepTheirFont()
{
    QFETCH(int, index);
    const Shown shown = makeWindow(index);
    shown.window->show();
    const QList<QHeaderView*> headers = shown.window->findChildren<QHeaderView*>();
    for (const QHeaderView* header : headers) {
        // Highlighted sections turn bold with the selection, and their texts jump.
        QVERIFY2(header->isHidden() || !header->highlightSections(),
                 qPrintable(header->parent()->objectName()));
    }
}

void tst_Windows::placeholdersArePale()
{
    QFETCH(int, index);
    const Shown shown = makeWindow(index);
    shown.window->show();
    const QList<QLineEdit*> edits = shown.window->findChildren<QLineEdit*>();
    for (QLineEdit* edit : edits) {
        if (edit->placeholderText().isEmpty() || !edit->isEnabled()) {
            continue;
        }
        edit->clear();
        edit->clearFocus();
        const int hint = darkest(edit->grab().toImage());
        edit->setText(edit->placeholderText());
        edit->setCursorPosition(0);
        const int value = darkest(edit->grab().toImage());
        QVERIFY2(hint >= 150 && value <= 110, qPrintable(edit->objectName()));
    }
}

void tst_Windows::iconButtonsTellWhatTheyDo()
{
    QFETCH(int, index);
    const Shown shown = makeWindow(index);
    shown.window->show();
    const QList<QAbstractButton*> buttons = shown.window->findChildren<QAbstractButton*>();
    for (const QAbstractButton* button : buttons) {
        const QStringList noWords{"", "...", "ADD", "DEL"};
        if (button->objectName().startsWith("qt_") || button->icon().isNull() ||
            !noWords.contains(button->text()))
        {
            continue;
        }
        QVERIFY2(!button->toolTip().isEmpty(), qPrintable(button->objectName()));
        QVERIFY2(!button->accessibleName().isEmpty(), qPrintable(button->objectName()));
    }
}

void tst_Windows::noContextHelpButton()
{
    QFETCH(int, index);
    const Shown shown = makeWindow(index);
    QVERIFY(!shown.window->windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
}

void tst_Windows::longNamesLeaveTheToldSizes_data()
{
    QTest::addColumn<QString>("window");
    QTest::addColumn<QSize>("size");
    QTest::newRow("main window") << "main window" << QSize(1300, 746);
    QTest::newRow("new document") << "new document" << QSize(619, 678);
    QTest::newRow("exchange") << "exchange" << QSize(714, 620);
    QTest::newRow("field") << "field" << QSize(491, 305);
    QTest::newRow("column settings") << "column settings" << QSize(317, 105);
    QTest::newRow("blank format") << "blank format" << QSize(714, 288);
    QTest::newRow("preview") << "preview" << QSize(1150, 900);
}

void tst_Windows::longNamesLeaveTheToldSizes()
{
    QFETCH(QString, window);
    QFETCH(QSize, size);
    const QString name = QString("Удостоверение о повышении квалификации ").repeated(4).left(150);
    const QSqlDatabase database = QSqlDatabase::database();
    QVERIFY(QSqlDatabase(database).transaction()); // the sample stays as it is
    for (const char* statement :
         {"UPDATE forms SET FORM_NAME = '%1'", "UPDATE lists SET LIST_NAME = '%1'"})
    {
        QSqlQuery query;
        QVERIFY(query.exec(QString(statement).arg(name)));
    }
    MainWindow().loadDocTypes();
    {
        Shown shown;
        for (const auto& [title, make] : windows()) {
            if (window == title) {
                shown = make();
            }
        }
        fillLateCombos(shown.window.get(), name);
        shown.window->show();
        QVERIFY(QTest::qWaitForWindowExposed(shown.window.get()));
        QCOMPARE(shown.window->size(), size);
        QVERIFY(shown.window->minimumSizeHint().width() <= size.width());
        const int longest = longestItem(shown.window.get());
        QCOMPARE(longest, name.size());
    }
    QVERIFY(QSqlDatabase(database).rollback());
    MainWindow().loadDocTypes();
}

QTEST_MAIN(tst_Windows)
#include "tst_Windows.moc"
