#pragma once

#include <QFont>
#include <QJsonObject>

#include "render/page/BlankItem.h"
#include "render/page/PageFrame.h"

/// The frame of a table item on a page.
namespace TableFrame {

/// A frame with a table without rows, with the columns of `docField`, a table entry of a document.
/// A table without columns stays empty.
PageFrame make(const BlankItem& item, const QFont& font, const QJsonObject& docField);

/// Gives the table the rows of `docField`, which must have as many columns as the one that the
/// frame was made for. It has to be laid out then.
void fill(const PageFrame& frame, const BlankItem& item, const QFont& font,
          const QJsonObject& docField);

} // namespace TableFrame
