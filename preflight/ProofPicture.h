#pragma once

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QVector>

#include "preflight/FindingWords.h"

class PageCheck;
class QFont;
class QGraphicsPixmapItem;
class QPainter;

/// A picture of the sheet as it will be printed, with the background, the frames outlined, and
/// what the check found marked by numbers that a legend below the sheet explains.
class ProofPicture
{
public:
    /// Draws the page that `check` looked at last. `dpi` is the picture's resolution.
    /// `isBackgroundPrinted` tells whether the background is printed, and so moved by the print
    /// offsets, or is the paper's own, which stays where it is. `words` are those of the legend.
    ProofPicture(PageCheck& check, int dpi, bool isBackgroundPrinted,
                 const FindingWords& words = FindingWords());

    /// The picture, as wide as the sheet; as high as the sheet, and the legend's height more if
    /// there are findings. Null if there is no memory for it.
    QImage draw();

    /// The sheet alone, for who marks it himself: without frames, marks and legend. Null if there
    /// is no memory for it.
    QImage drawSheetAlone();

    /// What frames and marks are painted with: of a frame without findings, and of a finding.
    static QColor frameColor();
    static QColor colorOf(Finding::Severity severity);

    /// Size of the sheet in the picture, pixels.
    QSize sheetSize() const;

private:
    QImage draw(int legendHeight, bool isMarked);
    double pixels(double millimetres) const;
    QRectF inPixels(const QRectF& millimetres) const;
    int textSize() const;
    double markRadius() const;

    void drawSheet(QPainter& painter);
    void drawBackground(QPainter& painter, const QGraphicsPixmapItem& background);
    void drawEdges(QPainter& painter);
    void drawFrames(QPainter& painter);
    void drawMarks(QPainter& painter);
    void drawMark(QPainter& painter, const QPointF& centre, int number, const Finding& finding);
    QPointF placeOfMark(const QRectF& frame, const QVector<QRectF>& taken) const;
    int drawLegend(QPainter& painter, int top);
    int drawLegendLine(QPainter& painter, int top, int number, const Finding& finding);
    int drawText(QPainter& painter, const QFont& font, int left, int top, QString text);

    PageCheck& m_check;
    int m_dpi;
    bool m_isBackgroundPrinted;
    FindingWords m_words;
};
