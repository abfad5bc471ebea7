// Bytes taken as a document's value as it comes into the text of a frame: bounded, laid out and
// painted.

#include <QImage>

#include "fuzz/FuzzSupport.h"
#include "render/page/FrameLabel.h"
#include "render/page/MarkupBound.h"

void tryInput(const QByteArray& input)
{
    const QString value = QString::fromUtf8(input);
    const QString markup = "<p style=\"line-height: 100%;\">" + value + "</p>";
    const BoundedMarkup bounded = boundedMarkup(markup);
    require(!bounded.isWhole || bounded.text == markup, "a whole text is as it was");
    require(boundedMarkup(bounded.text).text == bounded.text, "a bounded text stays");
    require(bounded.isWhole || !hasElements(bounded.text), "else it has no markup");

    FrameLabel label(value);
    label.setText(markup);
    label.setWordWrap(true);
    require(label.isWhole() == bounded.isWhole, "the label tells of it");
    QImage page(120, 60, QImage::Format_RGB32);
    page.fill(Qt::white);
    label.resize(page.size().expandedTo(label.minimumSizeHint()).boundedTo(QSize(4000, 4000)));
    label.render(&page);
}
