#pragma once

#include <QHash>
#include <QObject>
#include <QRectF>
#include <QStringList>

class QComboBox;
class QJsonObject;
class QTableWidget;
class QWidget;

/// The properties table of the blank editor: one row per setting of an item, with the caption and
/// the row's key in the first column and the editor in the second one. It shows an item and reads
/// the editors back; what a change means for the page is the window's matter.
class ItemPropertiesTable : public QObject
{
    Q_OBJECT

public:
    /// `widget` is a table of two columns. It is not owned and must outlive the object.
    explicit ItemPropertiesTable(QTableWidget* widget, QObject* parent = nullptr);

    void clear();

    /// Builds the rows of an item. `geometry` is the place of its frame, in scene units. The
    /// editors of the former item are used again, unless the user has been in one of them.
    void show(const QJsonObject& item, const QRectF& geometry);

    /// Writes another place into the rows that show it.
    void showGeometry(const QRectF& geometry);

    /// True for a cell that the user types into: those of the text, the position and the size.
    static bool isTypedCell(int row, int column);

    /// Copies the typed texts into the item object; what is no whole number gives 0.
    void readTypedCells(QJsonObject& item) const;

    /// Copies everything but position and size into the item object. The text of a QR item stays
    /// out too: it changes with the typed cells alone.
    void readProperties(QJsonObject& item) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    /// The user changed something else than a typed cell.
    void propertyChanged();

    /// The user wants to change the columns of a table item.
    void columnsRequested();

private:
    void fitColumns(int tableWidth);
    void addRow(const QString& caption, int key);
    void addTextRow(const QString& caption, int key, const QString& text);
    void addEditorRow(const QString& caption, int key, QWidget* editor);
    void addAlignRow(const QString& caption, int key, const QStringList& entries, int align);
    void addFontRow(const QString& family);
    void addFontSizeRow(int pointSize);
    void addLineSpacingRow(const QString& spacing);
    void addZStrokeRow(bool isCut);
    void addColumnsRow();
    void forgetEditors();
    /// The editor kept for a row, or a new one by `make`.
    template <class Editor, class Make>
    Editor* editorFor(int key, Make make);
    QComboBox* comboFor(int key, const QStringList& entries);
    void connectCombo(QComboBox* combo);
    QString typedText(int row) const;
    void readRow(int row, QJsonObject& item) const;
    void editorChanged();

    QTableWidget* m_table;
    QHash<int, QWidget*> m_editors; // by their rows' keys; kept for further items until used
    bool m_isShowing = false;       // the program itself fills the editors
};
