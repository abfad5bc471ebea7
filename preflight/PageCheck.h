#pragma once

#include <QJsonObject>
#include <QMarginsF>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QVariant>
#include <QVector>

#include <memory>

#include "preflight/Finding.h"
#include "preflight/InkRecorder.h"
#include "render/page/PageSet.h"

class QPrinter;
class TagCheck;

/// Finds what of a document on a blank would not come onto the paper as it was meant, from the very
/// page that is printed. The database must be open.
class PageCheck
{
public:
    /// Lays documents out on pages of its own, or on those that are given, so that who prints them
    /// next finds them laid out.
    explicit PageCheck(std::shared_ptr<PageSet> pages = nullptr);
    ~PageCheck();

    /// The margins on which the printer cannot print, in millimetres; 0 by default.
    void setMargins(const QMarginsF& margins) { m_margins = margins; }

    /// Whether the background is printed too, so that a missing one is an error.
    void setBackgroundPrinted(bool printed) { m_isBackgroundPrinted = printed; }

    /// Takes the margins that a printer of the system has on the paper of each blank; false if
    /// there is no printer with this name.
    bool setPrinter(const QString& name);

    /// Lays the document out on the blank and looks at the page; false if one of the two can't be
    /// read.
    bool check(const QVariant& document, const QVariant& blank);

    /// Looks at a page as it is before printing.
    void check(const PageBuilder& page);

    /// Of the last check: first those of the blank, then item by item.
    const QVector<Finding>& findings() const { return m_findings; }

    /// Frames of the items that were checked, from the top left corner of the sheet, millimetres.
    const QVector<QRectF>& frames() const { return m_frames; }

    /// Document and blank of the last check.
    const Finding::Document& document() const { return m_document; }
    const Finding::Blank& blank() const { return m_blank; }

    /// The sheet in millimetres, the part of it that the page covers, and the printable part, which
    /// is not valid if the margins leave none.
    QSizeF sheetSize() const { return m_sheetSize; }
    QRectF pageOnSheet() const;
    QRectF printableOnSheet() const;

    /// The print offsets in scene units, and the length of a scene unit on paper in millimetres.
    QPointF offset() const { return m_offset; }
    double unitLength() const { return m_unitLength; }

    /// The page that was looked at last; null if there is none.
    const PageBuilder* page() const { return m_page; }

private:
    void takeRows(const PageBuilder& page);
    void checkBlank(const PageBuilder& page);
    void checkPaper(const PageBlank& blank);
    void checkBackground(const PageBuilder& page);
    void checkFonts(const QVector<PageItem>& items);
    void checkItem(const PageItem& item, const TagCheck& tags);
    void checkSymbol(const PageItem& item, const TagCheck& tags);
    void checkTags(const PageItem& item, const TagCheck& tags);
    void checkEmptyTags(const PageItem& item, const TagCheck& tags);
    void checkMarkup(const PageItem& item, const TagCheck& tags);
    void checkBound(const PageItem& item);
    void checkEdges(const PageItem& item, const PrintedInk& printed);
    void checkEdge(const PageItem& item, const QRectF& ink, Finding::Kind kind, const QRectF& area);
    bool isKnown(const PageItem& item, Finding::Side side) const;
    void checkRowsLeftOut(const QVector<PageItem>& items);
    void addOfDocument(const PageItem& item, Finding finding);
    void addOfBlank(const PageItem* item, Finding finding);
    QRectF onSheet(const QRectF& onPage) const;
    QRectF fromSheet(const QRectF& onSheet) const;

    std::shared_ptr<PageSet> m_pages;
    const PageBuilder* m_page = nullptr;
    QMarginsF m_margins;
    std::unique_ptr<QPrinter> m_printer; // whose margins count; null: m_margins as they are
    bool m_isBackgroundPrinted = false;
    std::unique_ptr<InkRecorder> m_recorder;

    Finding::Document m_document;
    Finding::Blank m_blank;
    QJsonObject m_docValues;
    QJsonObject m_docContent;
    QString m_blankFont;
    QSizeF m_sheetSize;       // millimetres
    QSizeF m_pageSize;        // scene units
    double m_unitLength = 0;  // of a scene unit on paper, millimetres
    QPointF m_offset;         // scene units
    QVector<QRectF> m_frames; // millimetres
    QVector<Finding> m_findings;
};
