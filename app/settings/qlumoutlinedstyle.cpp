#include <app/settings/qlumoutlinedstyle.h>

#include <QColor>
#include <QPalette>
#include <QRectF>
#include <QString>

namespace {
constexpr int darkest = 128;      // lightness below which a background is dark
constexpr int lineStrength = 140; // of 255; a full line would look ticked
} // namespace

QlumOutlinedStyle::QlumOutlinedStyle() : QProxyStyle(QStringLiteral("fusion"))
{
    setObjectName(QStringLiteral("fusion")); // it is asked for by that name
}

// It draws its outlines darker than the window, which hides them where that is dark already.
void QlumOutlinedStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                      const QWidget* widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element != PE_IndicatorCheckBox || option->palette.color(QPalette::Base).lightness() >= darkest)
        return;
    QColor line = option->palette.color(QPalette::Text);
    line.setAlpha(lineStrength);
    painter->save();
    painter->setPen(line);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5));
    painter->restore();
}
