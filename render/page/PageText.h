#pragma once

#include <QFont>
#include <QSizeF>
#include <QString>
#include <QTextDocument>
#include <QTextOption>

#include <memory>
#include <optional>

/// The text of a label laid out for a page, once for all that measure and paint it. A plain text
/// takes the place of the one before it without being read as markup.
class PageText
{
public:
    /// How a text is laid out.
    struct Form
    {
        QFont font;
        QTextOption option;
        double width; ///< of its lines, scene units
    };

    /// Lays a text out, or leaves it as it is if it is laid out so. `isGuarded`: it may load
    /// something.
    const QTextDocument& layOut(const QString& markup, bool isGuarded, const Form& form);

    /// Whether a text has been laid out.
    bool isLaidOut() const { return m_document != nullptr; }

    /// Size of the text that was laid out last, whose lines are higher by a factor if that is above
    /// 1; none if a line had to be broken.
    std::optional<QSizeF> unbrokenSize(double lineSpacing) const;

private:
    void setForm(const Form& form);
    void setText(const QString& markup, bool isGuarded);

    std::unique_ptr<QTextDocument> m_document;
    QString m_markup;   // that the document has now
    int m_opening = 0;  // length of the tag that opens its paragraph; 0: not a plain text
    int m_replaced = 0; // characters that the document still holds
};
