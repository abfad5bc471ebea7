#include "render/vector/ClipTrackingEngine.h"

#include <QRegion>
#include <QTransform>

ClipTrackingEngine::ClipTrackingEngine()
    : QPaintEngine(AllFeatures)
{
}

bool ClipTrackingEngine::begin(QPaintDevice*)
{
    m_isClipped = false;
    return true;
}

void ClipTrackingEngine::updateState(const QPaintEngineState& newState)
{
    const DirtyFlags dirty = newState.state();
    if (dirty & DirtyClipRegion) {
        QPainterPath path;
        path.addRegion(newState.clipRegion());
        updateClip(newState.clipOperation(), newState.transform().map(path));
    } else if (dirty & DirtyClipPath) {
        updateClip(newState.clipOperation(), newState.transform().map(newState.clipPath()));
    }
    if (dirty & DirtyClipEnabled) {
        m_isClipped = newState.isClipEnabled();
    }
}

void ClipTrackingEngine::updateClip(Qt::ClipOperation operation, const QPainterPath& path)
{
    switch (operation) {
    case Qt::NoClip:
        m_isClipped = false;
        return;
    case Qt::ReplaceClip:
        m_clip = path;
        break;
    case Qt::IntersectClip:
        m_clip = m_isClipped ? m_clip.intersected(path) : path;
        break;
    }
    m_isClipped = true;
}
