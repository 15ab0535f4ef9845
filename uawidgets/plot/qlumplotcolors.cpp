#include <uawidgets/plot/qlumplotcolors.h>

#include <QColor>
#include <QPalette>
#include <QRgb>

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

constexpr std::array<QRgb, 8> onLight{0xff1f5fb4, 0xffc4321f, 0xff1e7d34, 0xff7d3cb5,
                                      0xffa05200, 0xff0b7a80, 0xffb8257f, 0xff555f6b};
constexpr std::array<QRgb, 8> onDark{0xff6cb2ff, 0xffff8a75, 0xff67d17f, 0xffc79bff,
                                     0xffffb454, 0xff4fd0d6, 0xffff85c8, 0xffb6c0cc};

QColor between(const QColor& from, const QColor& to, double part)
{
    return QColor::fromRgbF(from.redF() + part * (to.redF() - from.redF()),
                            from.greenF() + part * (to.greenF() - from.greenF()),
                            from.blueF() + part * (to.blueF() - from.blueF()));
}

} // namespace

QlumPlotColors::QlumPlotColors(const QPalette& palette)
    : ground(palette.color(QPalette::Base)), text(palette.color(QPalette::Text)),
      grid(between(ground, text, 0.15)), cursor(palette.color(QPalette::Highlight)),
      m_isDark(ground.lightnessF() < 0.5)
{
    uncertain = m_isDark ? QColor(0xff, 0xc8, 0x3d) : QColor(0x9a, 0x64, 0x00);
    bad = m_isDark ? QColor(0xff, 0x7b, 0x72) : QColor(0xb4, 0x1f, 0x1f);
}

QColor QlumPlotColors::adapted(const QColor& color) const
{
    for (const auto& colors : {onLight, onDark}) {
        const auto found = std::find(colors.begin(), colors.end(), color.rgb());
        if (found != colors.end())
            return curve(static_cast<int>(found - colors.begin()));
    }
    return color;
}

int QlumPlotColors::curveCount()
{
    return static_cast<int>(onLight.size());
}

QColor QlumPlotColors::curve(int number) const
{
    const auto place = static_cast<std::size_t>(number) % onLight.size();
    return QColor(m_isDark ? onDark[place] : onLight[place]);
}
