#pragma once

#include <QProxyStyle>
#include <QStyleOption>

/// The toolkit's own style as it is on a screen of 96 dots per inch. A page asks it for what its
/// layouts leave free, so that a text stands at the same place on paper whatever screen the page
/// is laid out on and whatever style the desktop has.
class PageStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /// The one that all pages share; owned by the application object.
    static PageStyle* shared();

    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;

private:
    PageStyle();

    QStyleOption m_pageOption; // in a font of 96 dots per inch, by which a style scales
};
