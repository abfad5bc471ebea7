#include "preflight/TextFrameCheck.h"

#include <QTextDocument>

#include <algorithm>

#include "preflight/Excess.h"
#include "render/page/FrameLabel.h"
#include "render/page/PageItem.h"

namespace {

/// Where the label paints its text, in its own coordinates: the toolkit lets no text begin above
/// the label, and cuts it at this place's edges.
QRectF placeOfText(const QLabel& label, const QTextDocument& document)
{
    const QRectF contents = label.contentsRect();
    const double rest = qMax(contents.height() - document.size().height(), 0.0);
    double top = 0;
    if (label.alignment() & Qt::AlignVCenter) {
        top = rest / 2;
    } else if (label.alignment() & Qt::AlignBottom) {
        top = rest;
    }
    return contents.translated(0, top).toAlignedRect();
}

} // namespace

TextFrameCheck::TextFrameCheck(const PageItem& item, double unitLength, InkRecorder& recorder)
    : m_frame(item.place())
    , m_unitLength(unitLength)
{
    m_ink.texts = recorder.textsOf(item.frame.container);
    m_ink.solid = item.frame.strokeInk();
    readLabel(item.frame, recorder);
}

void TextFrameCheck::readLabel(const PageFrame& frame, InkRecorder& recorder)
{
    const QTextDocument& document = frame.label->pageDocument();
    const QRectF place = placeOfText(*frame.label, document);
    m_room = frame.content->mapRectToScene(place & QRectF(frame.label->rect()));
    m_isInRoom =
        document.size().height() <= place.height() &&
        std::all_of(m_ink.texts.cbegin(), m_ink.texts.cend(), [this](const TextMark& mark) {
            const QRectF ink = mark.roughInk();
            return ink.isNull() || m_room.contains(ink) ||
                   excessesOf(ink, m_room, smallestInk / m_unitLength).isEmpty();
        });
    if (m_isInRoom) {
        return;
    }
    // Lines that lie wholly outside were not painted.
    m_ink.texts = recorder.textsOf(document, QTransform::fromTranslate(place.x(), place.y()) *
                                                 frame.content->sceneTransform());
    for (TextMark& mark : m_ink.texts) {
        mark.clip = m_room;
    }
}

QVector<Finding> TextFrameCheck::findings() const
{
    QVector<Finding> findings;
    if (!m_isInRoom) {
        addExcesses(findings, inkOf(m_ink.texts), m_room, true);
    }
    if (!m_frame.contains(m_ink.roughBounds())) {
        addExcesses(findings, PrintedInk{m_ink.texts, QRectF()}.bounds(), m_frame, false);
    }
    return findings;
}

void TextFrameCheck::addExcesses(QVector<Finding>& findings, const QRectF& ink, const QRectF& room,
                                 bool isLost) const
{
    for (const Excess& excess : excessesOf(ink, room, smallestInk / m_unitLength)) {
        const bool isKnown =
            std::any_of(findings.cbegin(), findings.cend(),
                        [&](const Finding& finding) { return finding.side == excess.side; });
        if (isKnown) {
            continue;
        }
        const bool isHeight =
            excess.side == Finding::Side::Top || excess.side == Finding::Side::Bottom;
        Finding finding;
        finding.kind = isHeight ? Finding::Kind::TextTooHigh : Finding::Kind::TextTooWide;
        finding.severity = isLost ? Finding::Severity::Error : Finding::Severity::Warning;
        finding.side = excess.side;
        finding.amount = excess.length * m_unitLength;
        finding.lostInk = isLost ? finding.amount : 0;
        findings.append(finding);
    }
}
