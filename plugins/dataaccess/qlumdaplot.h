#pragma once
#include <app/api/qlummonitoring.h>
#include <monitoring/watch.h>
#include <plugins/dataaccess/qlumdataitem.h>

#include <QString>
#include <QWidget>

#include <map>
#include <memory>
#include <vector>

class QCheckBox;
class QComboBox;
class QPushButton;
class QlumDaModel;
class QlumPlot;
class QlumPlotCurve;
namespace monitoring {
class AllSink;
class MonitoredServer;
} // namespace monitoring

/// Curves of chosen rows. They are watched for this besides the table, so that no value between two of those
/// that the table shows is missed.
class QlumDaPlot : public QWidget
{
    Q_OBJECT
public:
    /// The model must outlive this.
    QlumDaPlot(QlumDaModel& model, QlumMonitoringProvider monitoring, QWidget* parent = nullptr);
    ~QlumDaPlot() override;

    /// Begins a curve for each that has none yet.
    void addKeys(const std::vector<quint32>& keys);
    /// Ends those that are there.
    void removeKeys(const std::vector<quint32>& keys);
    /// These may have another node, name or unit now.
    void rowsChanged();
    /// Rows with a curve.
    [[nodiscard]] std::vector<quint32> keys() const;
    [[nodiscard]] QlumPlot* plot() const { return m_plot; } ///< with the curves
    /// Of a row; null when there is none.
    [[nodiscard]] QlumPlotCurve* curve(quint32 key) const;

signals:
    /// Other rows have curves now.
    void keysChanged();

private:
    struct Plotted
    {
        QlumPlotCurve* curve = nullptr;
        std::shared_ptr<monitoring::MonitoredServer> server;
        monitoring::ItemId item = 0;
    };

    [[nodiscard]] QWidget* makeBar();
    void take();
    void setPaused(bool isPaused);
    void setWindow(int milliseconds);
    void remakeCurve(quint32 key, Plotted& plotted);
    void watch(const QlumDataItem& item, Plotted& plotted);
    [[nodiscard]] QString nameOf(const QlumDataItem& item) const;
    [[nodiscard]] QString unitOf(const QlumDataItem& item) const;
    [[nodiscard]] QlumPlotCurve* makeCurve(const QlumDataItem& item);

    QlumDaModel& m_model;
    const QlumMonitoringProvider m_monitoring;
    std::shared_ptr<monitoring::AllSink> m_sink;
    QlumPlot* m_plot;
    QPushButton* m_pause = nullptr;
    QComboBox* m_window = nullptr;
    QCheckBox* m_ownAxes = nullptr;
    std::map<quint32, Plotted> m_plotted;
};
