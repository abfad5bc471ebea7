#pragma once

#include <QRectF>
#include <QVector>

#include "preflight/Finding.h"
#include "preflight/InkRecorder.h"

struct PageFrame;
struct PageItem;

/// Tells what of a text item of a page is cut off, or printed beyond its frame.
///
/// The text stands on a label, which the layout of the frame keeps inside its margins. Two things
/// happen to a text that has no room: a text that wraps onto too many lines is cut at the label's
/// edge; a word or a line feed that needs more room makes the label and its container larger than
/// the frame, so that the text is printed beyond it.
class TextFrameCheck
{
public:
    /// `item` is a text; `unitLength` is that of a scene unit on paper, millimetres.
    TextFrameCheck(const PageItem& item, double unitLength, InkRecorder& recorder);

    const PrintedInk& printedInk() const { return m_ink; }

    /// Kind, severity, side and amounts alone.
    QVector<Finding> findings() const;

private:
    void readLabel(const PageFrame& frame, InkRecorder& recorder);
    void addExcesses(QVector<Finding>& findings, const QRectF& ink, const QRectF& room,
                     bool isLost) const;

    QRectF m_frame;
    double m_unitLength;
    QRectF m_room; // of the text on the page; what lies outside is not painted
    PrintedInk m_ink;
    bool m_isInRoom = true; // surely
};
