#pragma once

#include <QRectF>
#include <QVector>

#include "preflight/Finding.h"
#include "preflight/InkRecorder.h"

class QGraphicsWidget;
struct FrameParts;

/// Tells what of a text item of a page is cut off, or printed beyond its frame.
///
/// The text stands on a label, which the layout of the frame keeps inside its margins. Two things
/// happen to a text that has no room: a text that wraps onto too many lines is cut at the label's
/// edge; a word or a line feed that needs more room makes the label and its container larger than
/// the frame, so that the text is printed beyond it.
class TextFrameCheck
{
public:
    /// `container` is the item of the page and has to live as long as the check. `frame` is what
    /// the blank gives it, in scene units; `unitLength` is that of a unit on paper, millimetres.
    TextFrameCheck(QGraphicsWidget* container, const QRectF& frame, double unitLength,
                   InkRecorder& recorder);

    const PrintedInk& printedInk() const { return m_ink; }

    /// Kind, severity, side and amounts alone.
    QVector<Finding> findings() const;

private:
    void readLabel(const FrameParts& parts, InkRecorder& recorder);
    void addExcesses(QVector<Finding>& findings, const QRectF& ink, const QRectF& room,
                     bool isLost) const;

    QRectF m_frame;
    double m_unitLength;
    QRectF m_room; // of the text on the page; what lies outside is not painted
    PrintedInk m_ink;
    bool m_isInRoom = true; // surely
};
