#pragma once
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>
#include <QWidget>

/// The style of our own palettes: boxes to be ticked can be seen on dark backgrounds, too.
class QlumOutlinedStyle : public QProxyStyle
{
    Q_OBJECT
public:
    QlumOutlinedStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
};
