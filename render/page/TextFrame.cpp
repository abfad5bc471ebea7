#include "render/page/TextFrame.h"

#include "render/page/FrameLabel.h"
#include "render/page/PageFont.h"

PageFrame TextFrame::make(const BlankItem& item, const QFont& font)
{
    PageFrame frame = PageFrame::make();
    frame.label = new FrameLabel;
    frame.setContent(frame.label);
    frame.label->setFont(pageFont(font));
    frame.label->setWordWrap(true);
    frame.label->setStyleSheet("background: transparent; border: 0;");
    frame.label->setAlignment(item.alignment);
    if (item.hasStroke) {
        frame.label->setFixedWidth(qMax(static_cast<int>(item.geometry.width()), 0));
        frame.addStroke();
    }
    return frame;
}

void TextFrame::fill(const PageFrame& frame, const BlankItem& item, const QString& text)
{
    const int lineHeight = static_cast<int>(item.lineSpacing * 100.0F);
    const QString markup =
        "<p style=\"line-height: " + QString::number(lineHeight) + "%;\">" + text + "</p>";
    frame.label->setText(QString(markup).replace('\n', "<br>"));
    if (item.hasStroke) {
        // Behind the text, which would make the height follow the width.
        frame.label->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    } else {
        frame.label->setAvailableSize(frame.availableSize(item.geometry.size()), text,
                                      item.lineSpacing);
    }
}
