#include "render/page/PageText.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextLayout>

#include "render/page/MarkupBound.h"
#include "render/page/MarkupDocument.h"

namespace {

/// As far as a page sets these options.
bool isSame(const QTextOption& left, const QTextOption& right)
{
    return left.alignment() == right.alignment() && left.wrapMode() == right.wrapMode() &&
           left.textDirection() == right.textDirection();
}

bool hasForm(const QTextDocument& document, const PageText::Form& form)
{
    return document.textWidth() == form.width && document.defaultFont() == form.font &&
           isSame(document.defaultTextOption(), form.option);
}

/// Whether a character stands for itself in markup, whatever is beside it.
bool isPlain(QChar c)
{
    return c.isPrint() && !c.isSpace() && c != '<' && c != '&' &&
           c != QChar::ObjectReplacementCharacter;
}

/// What a document holds of a paragraph behind the tag that opens it; none if that is not the
/// paragraph's text as it stands, since markup joins blanks and drops those at the ends.
std::optional<QString> plainText(const QString& markup, int opening)
{
    const QLatin1String closing("</p>");
    if (opening == 0 || !markup.endsWith(closing) || markup.contains(QChar::LineSeparator)) {
        return std::nullopt;
    }
    QString text = markup.mid(opening, markup.size() - opening - closing.size());
    text.replace(QLatin1String("<br>"), QString(QChar::LineSeparator));
    bool isBehindBlank = true;
    for (const QChar c : qAsConst(text)) {
        const bool isBlank = c == ' ' || c == QChar::LineSeparator;
        if (isBlank ? isBehindBlank : !isPlain(c)) {
            return std::nullopt;
        }
        isBehindBlank = isBlank;
    }
    return isBehindBlank ? std::nullopt : std::make_optional(text);
}

/// Puts a plain text in the place of another one, all of which has one format.
void replaceText(QTextDocument& document, const QString& text)
{
    const QTextCharFormat format = document.begin().begin().fragment().charFormat();
    QTextCursor cursor(&document);
    cursor.select(QTextCursor::Document);
    cursor.insertText(text, format);
}

/// Check and print paint the same glyphs.
void keepGlyphs(const QTextDocument& document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        block.layout()->setCacheEnabled(true);
    }
}

} // namespace

const QTextDocument& PageText::layOut(const QString& markup, bool isGuarded, const Form& form)
{
    const bool isFormed = m_document && hasForm(*m_document, form);
    if (isFormed && markup == m_markup) {
        return *m_document;
    }
    if (!m_document || isGuarded) {
        m_document = std::make_unique<QTextDocument>();
        m_document->setUndoRedoEnabled(false);
        m_document->setDocumentMargin(0);
        setForm(form);
    } else if (!isFormed) {
        setForm(form);
    }
    setText(markup, isGuarded);
    return *m_document;
}

void PageText::setForm(const Form& form)
{
    // Without a text: each of these would lay it out anew.
    m_document->clear();
    m_opening = 0;
    m_document->setDefaultFont(form.font);
    m_document->setDefaultTextOption(form.option);
    m_document->setTextWidth(form.width);
}

void PageText::setText(const QString& markup, bool isGuarded)
{
    constexpr int mostReplaced = 1 << 13; // a document holds them until it is cleared
    const QString openingBefore = m_markup.left(m_opening);
    const int opening = openedParagraph(markup).size();
    const std::optional<QString> text = plainText(markup, opening);
    m_markup = markup;
    if (text && m_opening > 0 && markup.leftRef(opening) == openingBefore &&
        m_replaced < mostReplaced) {
        m_replaced += text->size();
        replaceText(*m_document, *text);
        return;
    }
    m_replaced = 0;
    m_opening = text ? opening : 0;
    if (isGuarded) {
        MarkupDocument::guard(*m_document, markup);
    }
    m_document->setHtml(markup);
    keepGlyphs(*m_document);
}

std::optional<QSizeF> PageText::unbrokenSize(double lineSpacing) const
{
    m_document->size(); // lays out what waits for it
    QSizeF size(0, 0);
    for (QTextBlock block = m_document->begin(); block.isValid(); block = block.next()) {
        const QTextLayout& layout = *block.layout();
        if (layout.lineCount() != 1 + block.text().count(QChar::LineSeparator)) {
            return std::nullopt;
        }
        for (int i = 0; i < layout.lineCount(); ++i) {
            const QTextLine line = layout.lineAt(i);
            size.setWidth(qMax(size.width(), line.naturalTextWidth()));
            size.rheight() += line.height() * qMax(lineSpacing, 1.0);
        }
    }
    return size;
}
