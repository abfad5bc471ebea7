#include "render/page/PageSet.h"

#include <algorithm>

PageSet::PageSet() = default;

PageSet::~PageSet() = default;

PageBuilder* PageSet::build(const QVariant& document, const QVariant& blank, QString* error)
{
    Page& page = pageFor(blank);
    const bool isBuilt = page.builder->page()
                             ? page.builder->refill(document, blank, error)
                             : page.builder->build(page.scene.get(), document, blank, error);
    return isBuilt ? page.builder.get() : nullptr;
}

PageSet::Page& PageSet::pageFor(const QVariant& blank)
{
    constexpr std::size_t mostPages = 8; // widgets take memory; few batches mix more blanks
    const auto found = std::find_if(m_pages.begin(), m_pages.end(),
                                    [&blank](const Page& page) { return page.blank == blank; });
    if (found != m_pages.end()) {
        std::rotate(found, found + 1, m_pages.end());
        return m_pages.back();
    }
    if (m_pages.size() == mostPages) {
        m_pages.erase(m_pages.begin());
    }
    m_pages.push_back({blank, std::make_unique<QGraphicsScene>(), std::make_unique<PageBuilder>()});
    return m_pages.back();
}
