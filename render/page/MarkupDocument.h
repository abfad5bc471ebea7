#pragma once

#include <QTextDocument>

#include "render/page/MarkupResources.h"

/// A document that reads markup that others wrote, and loads only what MarkupResources permits. It
/// is read, never laid out: the toolkit loads the <img> of a text only then.
class MarkupDocument : public QTextDocument
{
    Q_OBJECT

public:
    /// `resources`, if given, must outlive the document, and says what is left of its bounds.
    explicit MarkupDocument(MarkupResources* resources = nullptr);

    /// Prepares a document of the toolkit, which is about to take this markup, so that it loads
    /// only what is permitted too. The document owns what that takes.
    static void guard(QTextDocument& document, const QString& markup);

protected:
    QVariant loadResource(int type, const QUrl& name) override;

private:
    MarkupResources m_ownResources;
    MarkupResources* m_resources;
    QTextDocument* m_guarded = nullptr; // gets all that this one has loaded
};
