#include "blanks/ItemPropertiesTable.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontComboBox>
#include <QHeaderView>
#include <QJsonObject>
#include <QPushButton>
#include <QResizeEvent>
#include <QSpinBox>
#include <QStyledItemDelegate>
#include <QTableWidget>

#include <algorithm>

#include "app/widgets/WheelGuard.h"
#include "blanks/BlankRecord.h"
#include "blanks/FontFamily.h"

namespace {

// Keys of the rows.
namespace PropertyKey {
constexpr int text = 0;
constexpr int x = 1;
constexpr int y = 2;
constexpr int width = 3;
constexpr int height = 4;
constexpr int hAlign = 5;
constexpr int vAlign = 6;
constexpr int font = 7;
constexpr int fontSize = 8;
constexpr int zStroke = 9;
constexpr int columns = 10;
constexpr int lineSpacing = 11;
} // namespace PropertyKey

// The rows that are plain table items stand first, each in the row of its key.
constexpr int typedRowCount = 5;
constexpr int captionColumn = 0;
constexpr int valueColumn = 1;

// What the editors need to be whole, pixels; the captions get the rest.
constexpr int editorWidth = 88;
constexpr int narrowestCaption = 40;

/// Leaves the editors that are to be shown again alone when their rows go.
class KeptEditorDelegate : public QStyledItemDelegate
{
public:
    KeptEditorDelegate(const QHash<int, QWidget*>& kept, QObject* parent)
        : QStyledItemDelegate(parent)
        , m_kept(kept)
    {
    }

    void destroyEditor(QWidget* editor, const QModelIndex& index) const override
    {
        if (std::find(m_kept.begin(), m_kept.end(), editor) == m_kept.end()) {
            QStyledItemDelegate::destroyEditor(editor, index);
        }
    }

private:
    const QHash<int, QWidget*>& m_kept;
};

/// Cuts a caption in the middle: "Выравнивание X" and "Выравнивание Y" differ at their ends.
class CaptionDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->textElideMode = Qt::ElideMiddle;
        option->features &= ~QStyleOptionViewItem::WrapText;
    }
};

QString wholeUnits(double length)
{
    return QString::number(truncated(length));
}

} // namespace

ItemPropertiesTable::ItemPropertiesTable(QTableWidget* widget, QObject* parent)
    : QObject(parent)
    , m_table(widget)
{
    m_table->setItemDelegateForColumn(captionColumn, new CaptionDelegate(m_table));
    m_table->setItemDelegateForColumn(valueColumn, new KeptEditorDelegate(m_editors, this));
    m_table->viewport()->installEventFilter(this);
}

bool ItemPropertiesTable::eventFilter(QObject* watched, QEvent* event)
{
    // The kind first: further events come while the table goes down.
    if (event->type() == QEvent::Resize && watched == m_table->viewport()) {
        fitColumns(static_cast<QResizeEvent*>(event)->size().width());
    } else if (event->type() == QEvent::FocusIn) { // of an editor
        forgetEditors();
    }
    return QObject::eventFilter(watched, event);
}

/// What the user does in an editor may leave traces: how far a text is scrolled, what Undo brings
/// back. All are made anew, so that the order of the editors stays.
void ItemPropertiesTable::forgetEditors()
{
    for (int row = 0; row < m_table->rowCount(); ++row) {
        m_editors.remove(m_table->item(row, captionColumn)->data(Qt::UserRole).toInt());
    }
    // No row shows those that are left, so that none would take them along.
    for (QWidget* editor : qAsConst(m_editors)) {
        editor->deleteLater();
    }
    m_editors.clear();
}

void ItemPropertiesTable::clear()
{
    m_table->setRowCount(0);
}

void ItemPropertiesTable::show(const QJsonObject& item, const QRectF& geometry)
{
    clear();
    m_isShowing = true;
    addTextRow("Текст", PropertyKey::text, item["value"].toString());
    addTextRow("X", PropertyKey::x, wholeUnits(geometry.x()));
    addTextRow("Y", PropertyKey::y, wholeUnits(geometry.y()));
    addTextRow("Ширина", PropertyKey::width, wholeUnits(geometry.width()));
    addTextRow("Высота", PropertyKey::height, wholeUnits(geometry.height()));
    addAlignRow("Выравнивание X", PropertyKey::hAlign, {"Слева", "Справа", "По центру"},
                item["h_align"].toInt());
    addAlignRow("Выравнивание Y", PropertyKey::vAlign, {"Сверху", "Снизу", "По центру"},
                item["v_align"].toInt());
    addFontRow(item["font"].toString());
    addFontSizeRow(item["font_size"].toInt());
    addLineSpacingRow(item["line_spacing"].toString("1,0"));
    addZStrokeRow(item["f_cut"].toInt() != 0);
    if (item["type"].toInt() == BlankItemKind::table) {
        addColumnsRow();
    }
    m_isShowing = false;
}

void ItemPropertiesTable::showGeometry(const QRectF& geometry)
{
    m_table->item(PropertyKey::x, valueColumn)->setText(wholeUnits(geometry.x()));
    m_table->item(PropertyKey::y, valueColumn)->setText(wholeUnits(geometry.y()));
    m_table->item(PropertyKey::width, valueColumn)->setText(wholeUnits(geometry.width()));
    m_table->item(PropertyKey::height, valueColumn)->setText(wholeUnits(geometry.height()));
}

bool ItemPropertiesTable::isTypedCell(int row, int column)
{
    return row < typedRowCount && column == valueColumn;
}

void ItemPropertiesTable::readTypedCells(QJsonObject& item) const
{
    item["value"] = typedText(PropertyKey::text);
    item["pos_x"] = typedText(PropertyKey::x).toInt();
    item["pos_y"] = typedText(PropertyKey::y).toInt();
    item["size_w"] = typedText(PropertyKey::width).toInt();
    item["size_h"] = typedText(PropertyKey::height).toInt();
}

void ItemPropertiesTable::readProperties(QJsonObject& item) const
{
    for (int row = 0; row < m_table->rowCount(); ++row) {
        readRow(row, item);
    }
}

void ItemPropertiesTable::fitColumns(int tableWidth)
{
    const int widest = m_table->horizontalHeader()->defaultSectionSize();
    const int captions = qBound(narrowestCaption, tableWidth - editorWidth, widest);
    m_table->setColumnWidth(captionColumn, captions);
    // The last column stretches, but never shrinks by itself.
    m_table->setColumnWidth(valueColumn, tableWidth - captions);
}

void ItemPropertiesTable::addRow(const QString& caption, int key)
{
    const int row = m_table->rowCount();
    m_table->insertRow(row);
    auto* captionItem = new QTableWidgetItem(caption);
    captionItem->setFlags(captionItem->flags() & ~Qt::ItemIsEditable);
    captionItem->setData(Qt::UserRole, key);
    captionItem->setToolTip(caption);
    m_table->setItem(row, captionColumn, captionItem);
}

void ItemPropertiesTable::addTextRow(const QString& caption, int key, const QString& text)
{
    addRow(caption, key);
    m_table->setItem(m_table->rowCount() - 1, valueColumn, new QTableWidgetItem(text));
}

void ItemPropertiesTable::addEditorRow(const QString& caption, int key, QWidget* editor)
{
    addRow(caption, key);
    m_table->setCellWidget(m_table->rowCount() - 1, valueColumn, editor);
}

template <class Editor, class Make>
Editor* ItemPropertiesTable::editorFor(int key, Make make)
{
    if (QWidget* kept = m_editors.value(key)) {
        return static_cast<Editor*>(kept);
    }
    Editor* editor = make();
    editor->setStyleSheet("border: none");
    WheelGuard::install(editor);
    editor->installEventFilter(this);
    m_editors.insert(key, editor);
    return editor;
}

QComboBox* ItemPropertiesTable::comboFor(int key, const QStringList& entries)
{
    return editorFor<QComboBox>(key, [&] {
        auto* combo = new QComboBox(m_table->viewport());
        combo->addItems(entries);
        connectCombo(combo);
        return combo;
    });
}

void ItemPropertiesTable::addAlignRow(const QString& caption, int key, const QStringList& entries,
                                      int align)
{
    QComboBox* combo = comboFor(key, entries);
    combo->setCurrentIndex(align);
    addEditorRow(caption, key, combo);
}

void ItemPropertiesTable::addFontRow(const QString& family)
{
    auto* combo = editorFor<QFontComboBox>(PropertyKey::font, [this] {
        auto* fonts = new QFontComboBox(m_table->viewport());
        connectCombo(fonts);
        return fonts;
    });
    showFontFamily(combo, family);
    addEditorRow("Шрифт", PropertyKey::font, combo);
}

void ItemPropertiesTable::addFontSizeRow(int pointSize)
{
    constexpr int largestSize = 999;
    auto* spin = editorFor<QSpinBox>(PropertyKey::fontSize, [this] {
        auto* size = new QSpinBox(m_table->viewport());
        size->setRange(0, largestSize);
        connect(size, QOverload<int>::of(&QSpinBox::valueChanged), this,
                &ItemPropertiesTable::editorChanged);
        return size;
    });
    spin->setValue(pointSize);
    addEditorRow("Размер шрифта", PropertyKey::fontSize, spin);
}

void ItemPropertiesTable::addLineSpacingRow(const QString& spacing)
{
    QComboBox* combo = comboFor(PropertyKey::lineSpacing, {"1,0", "1,15", "1,5", "2,0"});
    combo->setCurrentIndex(0); // stays so if there is no such entry
    combo->setCurrentText(spacing);
    addEditorRow("Межстрочный интервал", PropertyKey::lineSpacing, combo);
}

void ItemPropertiesTable::addZStrokeRow(bool isCut)
{
    auto* check = editorFor<QCheckBox>(PropertyKey::zStroke, [this] {
        auto* box = new QCheckBox(m_table->viewport());
        connect(box, &QCheckBox::stateChanged, this, &ItemPropertiesTable::editorChanged);
        return box;
    });
    check->setChecked(isCut);
    addEditorRow("Росчерк", PropertyKey::zStroke, check);
}

void ItemPropertiesTable::addColumnsRow()
{
    auto* button = editorFor<QPushButton>(PropertyKey::columns, [this] {
        auto* change = new QPushButton("Изменить", m_table->viewport());
        change->setAutoDefault(true); // Enter presses it, as it does in a dialog
        connect(change, &QPushButton::clicked, this, &ItemPropertiesTable::columnsRequested);
        return change;
    });
    addEditorRow("Столбцы", PropertyKey::columns, button);
}

void ItemPropertiesTable::connectCombo(QComboBox* combo)
{
    connect(combo, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ItemPropertiesTable::editorChanged);
}

void ItemPropertiesTable::editorChanged()
{
    if (!m_isShowing) {
        emit propertyChanged();
    }
}

QString ItemPropertiesTable::typedText(int row) const
{
    return m_table->item(row, valueColumn)->text();
}

void ItemPropertiesTable::readRow(int row, QJsonObject& item) const
{
    QWidget* editor = m_table->cellWidget(row, valueColumn);
    const auto* combo = qobject_cast<QComboBox*>(editor);
    switch (m_table->item(row, captionColumn)->data(Qt::UserRole).toInt()) {
    case PropertyKey::text:
        if (item["type"].toInt() != BlankItemKind::qr) {
            item["value"] = typedText(row);
        }
        break;
    case PropertyKey::hAlign:
        item["h_align"] = combo->currentIndex();
        break;
    case PropertyKey::vAlign:
        item["v_align"] = combo->currentIndex();
        break;
    case PropertyKey::font:
        item["font"] = combo->currentText();
        break;
    case PropertyKey::fontSize:
        item["font_size"] = qobject_cast<QSpinBox*>(editor)->value();
        break;
    case PropertyKey::zStroke:
        item["f_cut"] = qobject_cast<QCheckBox*>(editor)->isChecked() ? 1 : 0;
        break;
    case PropertyKey::lineSpacing:
        item["line_spacing"] = combo->currentText();
        break;
    default:
        break;
    }
}
