#pragma once

#include <QProxyStyle>

/// A style whose layouts keep other distances than the form, so that the form's own show.
class NarrowStyle : public QProxyStyle
{
public:
    NarrowStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override
    {
        switch (metric) {
        case PM_LayoutLeftMargin:
        case PM_LayoutTopMargin:
        case PM_LayoutRightMargin:
        case PM_LayoutBottomMargin:
            return 3;
        case PM_LayoutHorizontalSpacing:
        case PM_LayoutVerticalSpacing:
            return 2;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }
};
