#pragma once

#include <memory>

#include "render/page/PageSet.h"

class QPainter;
class QPrinter;
struct PrintSheet;

/// The page of a sheet: the very one that the application's preview shows and prints. The database
/// must be open.
class SheetPage
{
public:
    explicit SheetPage(std::shared_ptr<PageSet> pages)
        : m_pages(std::move(pages))
    {
    }

    /// Lays the sheet's document out on its blank; false if one of the two can't be read.
    bool build(const PrintSheet& sheet);

    /// Prints the page that was built last, as often as is wanted. False if the printer refuses it.
    bool print(QPrinter& printer, QPainter& painter);

private:
    std::shared_ptr<PageSet> m_pages;
    PageBuilder* m_page = nullptr; // built last; owned by the set
    bool m_withBackground = false;
};
