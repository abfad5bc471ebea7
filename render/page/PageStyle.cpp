#include "render/page/PageStyle.h"

#include <QApplication>
#include <QPointer>
#include <QWidget>

#include "render/page/PageWidget.h"

PageStyle* PageStyle::shared()
{
    static QPointer<PageStyle> style;
    if (!style) {
        style = new PageStyle;
        style->setParent(qApp);
    }
    return style;
}

PageStyle::PageStyle()
    : QProxyStyle("Fusion")
{
    const PageWidget<QWidget> pageWidget;
    m_pageOption.fontMetrics = QFontMetrics(QFont(QApplication::font(), &pageWidget));
}

int PageStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const
{
    return QProxyStyle::pixelMetric(metric, option ? option : &m_pageOption, widget);
}
