// Colours of plots on light and on dark ground.
#pragma once
#include <QColor>
#include <QPalette>

/// Colours that the palette does not have.
struct QlumPlotColors
{
    /// For the ground of the palette's views.
    explicit QlumPlotColors(const QPalette& palette);

    /// Of a curve by its number; after eight they begin again. At least three times as light or dark as the
    /// ground.
    [[nodiscard]] QColor curve(int number) const;

    /// One of the colours of curves as it looks on this ground, whichever it was chosen on; others stay.
    [[nodiscard]] QColor adapted(const QColor& color) const;
    /// How many numbers have a colour of their own.
    [[nodiscard]] static int curveCount();

    QColor ground;    ///< behind curves
    QColor text;      ///< of scales and titles
    QColor grid;      ///< fainter than any curve
    QColor cursor;    ///< of the lines that the user places
    QColor uncertain; ///< marks of uncertain values
    QColor bad;       ///< marks of bad ones

private:
    bool m_isDark;
};
