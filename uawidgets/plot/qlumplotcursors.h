// Two lines on a plot, and what the curves are where they stand.
#pragma once
#include <QObject>
#include <QString>

#include <array>
#include <memory>
#include <optional>
#include <vector>

class QlumPlotArea;
class QwtPlotMarker;

/// What a curve is at both cursors; nothing where it has no value.
struct QlumCursorReading
{
    QString curve;           ///< its name
    QString unit;            ///< its unit
    std::optional<double> a; ///< the sample at or before the first cursor
    std::optional<double> b; ///< and the second
    /// Second less first.
    [[nodiscard]] std::optional<double> difference() const;
};

/// Cursors 0 and 1, "A" and "B". GUI thread.
class QlumPlotCursors : public QObject
{
    Q_OBJECT
public:
    /// The area must outlive the cursors.
    QlumPlotCursors(QlumPlotArea* area, QObject* parent);
    ~QlumPlotCursors() override;

    /// Shown for the first time, or out of sight, they stand at a third and two thirds of the view.
    void setVisible(bool visible);
    [[nodiscard]] bool isVisible() const { return m_visible; } ///< as set
    /// Milliseconds since 1970.
    void setTime(int cursor, double time);
    [[nodiscard]] double time(int cursor) const
    {
        return m_times.at(static_cast<std::size_t>(cursor));
    } ///< as set
    /// The cursor near an x of the canvas; none while they are hidden.
    [[nodiscard]] std::optional<int> cursorAt(int canvasX) const;
    /// Of the visible curves.
    [[nodiscard]] std::vector<QlumCursorReading> readings() const;

signals:
    /// One was moved, or both were shown or hidden.
    void changed();

private:
    void applyColors();
    void place();

    QlumPlotArea* m_area;
    bool m_visible = false;
    std::array<double, 2> m_times{};
    std::array<std::unique_ptr<QwtPlotMarker>, 2> m_lines;
};

/// A span of time, as "-1 d 02:03:04.005".
[[nodiscard]] QString qlumDurationText(double milliseconds);
