#pragma once

#include <QFont>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QTransform>
#include <QVector>

#include <memory>
#include <optional>

#include "render/vector/PagedPainting.h"
#include "render/vector/VirtualPaintDevice.h"

class QGraphicsItem;
class QTextDocument;

/// A text that was painted, in the coordinates of the page.
struct TextMark
{
    QString text;
    QFont font;
    QPointF position;           ///< start of its base line, before `transform`
    QTransform transform;       ///< to the page
    double advance;             ///< before `transform`
    QRectF box;                 ///< of the font, not of the ink, on the page
    std::optional<QRectF> clip; ///< what of the page could be painted, if not all

    /// Bounding box of the glyphs on the page, clipped or not; null if they leave no ink.
    QRectF ink() const;

    /// Box that holds ink(), found without shaping the text: of plain letters it is no higher than
    /// they are.
    QRectF roughInk() const;

    /// What the clip leaves of a box; null if nothing.
    QRectF clipped(const QRectF& onPage) const;
};

/// A paint device that writes down the texts that are painted on it, as a printed page gets them,
/// where they are and how they are clipped. It shows what really is painted without printing it.
class InkRecorder : public VirtualPaintDevice, public PageSurface
{
public:
    InkRecorder();
    ~InkRecorder() override;

    /// The texts of an item and all items in it, as they would be painted on its page.
    QVector<TextMark> textsOf(QGraphicsItem* item);

    /// The texts of a whole document, with nothing clipped; `place` brings its top left corner to
    /// the page.
    QVector<TextMark> textsOf(const QTextDocument& document, const QTransform& place);

    QPaintEngine* paintEngine() const override;

private:
    class Engine;

    QVector<TextMark> m_marks;
    std::unique_ptr<Engine> m_engine;
};

/// What an item of a page prints.
struct PrintedInk
{
    QVector<TextMark> texts;
    QRectF solid; ///< of a stroke or a symbol; null: none

    /// Box that the ink surely does not leave; cheap.
    QRectF roughBounds() const;

    /// Bounding box of what the clips leave of the ink; null if there is none.
    QRectF bounds() const;
};

/// Bounding box of the ink of texts, clipped or not; null if there is none.
QRectF inkOf(const QVector<TextMark>& marks);
