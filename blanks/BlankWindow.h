#pragma once

#include <QFont>
#include <QJsonObject>
#include <QMainWindow>
#include <QPoint>

#include <memory>

#include "blanks/ResizeLimits.h"

class ItemPropertiesTable;
class QGraphicsItem;
class QGraphicsRectItem;
class QGraphicsScene;
class QSqlQuery;
class QTreeWidgetItem;
class ZelvoraView;

namespace Ui {
class BlankWindow;
}

/// The editor of a blank's items: a tree of tags, the page, and a table of the selected item's
/// properties. Tags are not expanded here.
///
/// Each item is a frame with exactly one child, a text or a picture; its JSON object lives as text
/// in the frame's data slot `itemDataSlot`, so that keys the editor does not know survive. Position
/// and size live in the frame and reach the object at the save. The database changes in saveBlank()
/// only; closing by any other way loses the changes.
class BlankWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Data slot of a frame that holds the item's JSON text.
    static constexpr int itemDataSlot = 256;

    explicit BlankWindow(QWidget* parent = nullptr);
    ~BlankWindow() override;

    /// Names the row that loadBlank(), loadBlankTree() and saveBlank() work on.
    void setBlankId(int id) { blankId = id; }

    /// Page, background and items from the blank's row. A failed query goes to the log and leaves
    /// an empty page; a missing background or unreadable content is no error.
    void loadBlank();

    /// Fills the tree of tags: the organisation, the fixed fields and the fields of the blank's
    /// form. Failures go to the log.
    void loadBlankTree();

    /// Adds a new item with default settings and selects it. `rect` in scene units; a text or table
    /// item without a size takes that of its text, at least 200 by 50, a QR item is 98 by 98.
    /// `kind` is one of BlankItemKind.
    void createItem(QRectF rect, const QString& value, int kind);

    /// Adds one saved item.
    void addItemFromJson(const QJsonObject& item);

    /// Writes all items, topmost first. A failure is shown, logged and gives false.
    bool saveBlank();

    /// Puts the object of a frame with a child into `out`, position and size taken from the frame.
    /// False for every other item.
    bool collectItem(QGraphicsItem* item, QJsonObject& out) const;

    /// Where a child stands in its frame: alignments are the codes of the keys `h_align` and
    /// `v_align`; any other code gives 0. Truncated to whole scene units.
    static QPoint alignChild(const QRectF& frame, const QRectF& child, int hAlign, int vAlign);

public slots:
    void addTextItem();
    void addQRItem();
    void addTableItem();
    void treeItemDblClick(QTreeWidgetItem* leaf);
    void sceneSelectionChanged();
    void on_buttonAccept_clicked();
    void on_buttonReject_clicked();
    void itemPropertyChanged();
    void itemValueChanged(int row, int column);
    void invalidateCurrentItem();
    void tableEdit();

private:
    void buildPage(const QSqlQuery& blank);
    QJsonObject newItemObject(const QRectF& rect, const QString& value, int kind) const;
    QGraphicsRectItem* addFrame(const QJsonObject& item, QGraphicsItem* child);
    QGraphicsRectItem* selectedFrame() const;
    QRectF newItemRect() const;
    QFont itemFont(const QJsonObject& item) const;
    void refreshChild(QGraphicsRectItem* frame, const QJsonObject& item);

    std::unique_ptr<Ui::BlankWindow> ui;
    QFont blankFont; // FONT at FONT_SIZE of the blank
    QGraphicsScene* scene;
    ZelvoraView* view;
    int blankId = 0;
    bool m_isUnread = false; // the page stands empty, since its row could not be read
    ResizeLimits resizeLimits;
    bool valueGuard = true; // false while the program itself fills the properties table
    ItemPropertiesTable* m_properties;
};
