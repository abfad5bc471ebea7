#pragma once

#include <QFont>
#include <QString>

#include "render/page/BlankItem.h"
#include "render/page/PageFrame.h"

/// The frame of a text item on a page.
namespace TextFrame {

/// A frame without a text.
PageFrame make(const BlankItem& item, const QFont& font);

/// Gives the frame a finished text, which may hold markup. It has to be laid out then.
void fill(const PageFrame& frame, const BlankItem& item, const QString& text);

} // namespace TextFrame
