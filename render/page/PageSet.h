#pragma once

#include <QGraphicsScene>
#include <QString>
#include <QVariant>

#include <memory>
#include <vector>

#include "render/page/PageBuilder.h"

/// The pages of a batch, one for each of the blanks that were used last.
class PageSet
{
public:
    PageSet();
    ~PageSet();

    /// The page of the blank with the document laid out on it, as it is before printing. Null, with
    /// what failed in `error` (may be null), if one of the two can't be read. Owned by the set, and
    /// good until the next call.
    PageBuilder* build(const QVariant& document, const QVariant& blank, QString* error = nullptr);

private:
    struct Page
    {
        QVariant blank;
        std::unique_ptr<QGraphicsScene> scene;
        std::unique_ptr<PageBuilder> builder;
    };

    Page& pageFor(const QVariant& blank);

    std::vector<Page> m_pages; // used last: last
};
