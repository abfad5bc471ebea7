#include "render/page/MarkupDocument.h"

#include <QAbstractTextDocumentLayout>

#include "render/page/MarkupBound.h"
#include "render/page/MarkupPictures.h"

MarkupDocument::MarkupDocument(MarkupResources* resources)
    : m_resources(resources ? resources : &m_ownResources)
{
}

void MarkupDocument::guard(QTextDocument& document, const QString& markup)
{
    auto* pictures = new MarkupPictures(&document);
    document.documentLayout()->registerHandler(QTextFormat::ImageObject, pictures);
    // What else a text loads it loads as it is read. The toolkit's document, whose loading can't be
    // changed, finds all of it there: it reads the same text in the same way.
    pictures->resources().setMostStyleRules(mostStyleRules(markup));
    MarkupDocument trial(&pictures->resources());
    trial.m_guarded = &document;
    trial.setHtml(markup);
}

QVariant MarkupDocument::loadResource(int type, const QUrl& name)
{
    QVariant resource = QString(""); // is there, and is nothing
    if (type == StyleSheetResource) {
        // Text, not bytes: the toolkit would decode bytes as a picture of any size.
        resource = m_resources->styleSheet(name) + "";
    } else if (type == ImageResource) {
        const QPixmap picture = m_resources->picture(name);
        resource = picture.isNull() ? resource : QVariant(picture);
    }
    addResource(type, name, resource);
    if (m_guarded) {
        m_guarded->addResource(type, name, resource);
    }
    return resource;
}
