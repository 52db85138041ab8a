#pragma once

#include <QProxyStyle>

/// A desktop that asks for motion of a given length, in milliseconds; 0 asks for none.
struct MotionStyle : QProxyStyle
{
    int duration = 0;

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *result) const override
    {
        return hint == SH_Widget_Animation_Duration
            ? duration
            : QProxyStyle::styleHint(hint, option, widget, result);
    }
};
