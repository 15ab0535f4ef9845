#pragma once
#include <app/api/qlummonitoring.h>
#include <plugins/dataaccess/qlumdafeed.h>
#include <plugins/dataaccess/qlumdataitem.h>

#include <QString>
#include <QWidget>

#include <map>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QlumDaModel;
class QlumPlot;
class QlumPlotCurve;

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
    /// Rows may have another name or unit now.
    void rowsChanged();
    /// These are watched in another way now.
    void watchChanged(const std::vector<quint32>& keys) { m_feed.refresh(keys); }
    /// Rows with a curve.
    [[nodiscard]] std::vector<quint32> keys() const;
    [[nodiscard]] QlumPlot* plot() const { return m_plot; } ///< with the curves
    /// Of a row; null when there is none.
    [[nodiscard]] QlumPlotCurve* curve(quint32 key) const;

signals:
    /// Other rows have curves now.
    void keysChanged();

private:
    [[nodiscard]] QWidget* makeBar();
    void take(const std::vector<QlumDaFeed::Value>& values);
    void dropCurves(const std::vector<quint32>& keys);
    void tellLost(quint64 count);
    void setPaused(bool isPaused);
    void setWindow(int milliseconds);
    void remakeCurve(quint32 key, QlumPlotCurve*& curve);
    [[nodiscard]] QString nameOf(const QlumDataItem& item) const;
    [[nodiscard]] QString unitOf(const QlumDataItem& item) const;
    [[nodiscard]] QlumPlotCurve* makeCurve(const QlumDataItem& item);

    QlumDaModel& m_model;
    QlumDaFeed m_feed;
    QlumPlot* m_plot;
    QPushButton* m_pause = nullptr;
    QComboBox* m_window = nullptr;
    QCheckBox* m_ownAxes = nullptr;
    QLabel* m_note = nullptr;
    quint64 m_lost = 0; ///< values that came too fast
    std::map<quint32, QlumPlotCurve*> m_curves;
};
