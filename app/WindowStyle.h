#pragma once

#include <QProxyStyle>

/// The style of this application's windows: the desktop's own, with sharp icons, and with standard
/// dialogs that suit the windows they open over (no icons on their buttons, no button for a help
/// that there is not, "Отмена"). It is set on each window, not on the application.
class WindowStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /// The one object; it lives as long as the application.
    static WindowStyle* shared();

    int styleHint(StyleHint hint, const QStyleOption* option = nullptr,
                  const QWidget* widget = nullptr,
                  QStyleHintReturn* returnData = nullptr) const override;
    void drawItemPixmap(QPainter* painter, const QRect& rect, int alignment,
                        const QPixmap& pixmap) const override;

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
};
