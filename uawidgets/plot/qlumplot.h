// Curves over time, as tools show them.
#pragma once
#include <app/api/qlumactiontable.h>
#include <app/api/qlumjobpool.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QFutureWatcher>
#include <QHash>
#include <QList>
#include <QString>
#include <QTimer>
#include <QVariant>
#include <QWidget>

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <unordered_map>

class QAction;
class QContextMenuEvent;
class QTableWidget;
class QlumMessageBar;
class QlumPlotArea;
class QlumPlotCursors;
class QlumPlotNavigator;

/// A plot with all that belongs to it: axes, legend, zoom with a history, cursors with their differences,
/// export, commands. Samples may come as fast as they like: the plot is painted 20 times a second at most,
/// and sorts what comes out of order in the background. GUI thread.
class QlumPlot : public QWidget
{
    Q_OBJECT
public:
    /// Follows the newest samples, in local time, until told otherwise.
    explicit QlumPlot(QWidget* parent = nullptr);
    ~QlumPlot() override;

    /// Name and unit are plain text, of a server for example. Of more samples than the capacity the oldest
    /// go. The curve is the plot's.
    QlumPlotCurve* addCurve(const QString& name, const QString& unit = QString(),
                            QlumCurveForm form = QlumCurveForm::Steps, std::size_t capacity = 1'000'000);
    /// Deletes a curve of this plot.
    void removeCurve(QlumPlotCurve* curve);
    /// Adds samples to a curve of this plot, in any order.
    void append(QlumPlotCurve* curve, std::span<const QlumSample> samples);
    /// Forgets the samples of all curves.
    void clearSamples();

    /// What stands there while there is nothing to show: what is missing, and what the user can do. Plain
    /// texts.
    void setEmptyText(const QString& headline, const QString& hint);
    /// Whether the newest samples stay in sight. Ends when the user looks at another part.
    void setFollowing(bool follows);
    [[nodiscard]] bool isFollowing() const; ///< as set, or ended by the user
    /// Whether times are local or UTC.
    void setUtc(bool isUtc);

    /// The commands, for menus and tool bars of the tool; they are in the context menu as well.
    [[nodiscard]] QList<QAction*> plotActions() const;
    [[nodiscard]] QlumPlotArea* area() const { return m_area; }                ///< the drawing
    [[nodiscard]] QlumPlotCursors* cursors() const { return m_cursors; }       ///< the two lines
    [[nodiscard]] QlumPlotNavigator* navigator() const { return m_navigator; } ///< views of the user

    /// Writes a file in the form of its ending: png, svg or csv; samples in the background, as running work
    /// that the user may cancel. What was there stays unless all was written.
    void exportTo(const QString& fileName);

signals:
    /// A file was written.
    void exported(const QString& fileName);
    /// A file could not be written: what failed, as plain text. While nobody is connected, a message bar of
    /// the plot's own says it.
    void exportFailed(const QString& message);

protected:
    /// The commands of plotActions().
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void makeActions();
    void makeReadout();
    void updateActions();
    void updateReadout();
    void moveCursor(int cursor, int pixels);
    void toggleCurve(const QVariant& item, bool on);
    void flush();
    void sortLate(QlumPlotCurve* curve);
    void askForExport();
    void exportSamples(const QString& fileName);
    void endExport(const QString& fileName, const QString& fault);
    void failExport(const QString& message);

    QlumPlotArea* m_area;
    QlumMessageBar* m_messages;
    QWidget* m_scales;
    QTableWidget* m_readout;
    QlumPlotCursors* m_cursors;
    QlumPlotNavigator* m_navigator;
    QlumActionTable m_actions;
    QTimer m_flushTimer;
    bool m_hasShownSamples = false;
    std::unordered_map<QlumPlotCurve*, std::unique_ptr<QFutureWatcher<QlumSampleStore>>> m_sorting;
    QlumJobPool m_exports;
};
