#pragma once
#include <uawidgets/models/qlumtitledmodel.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QAbstractTableModel>
#include <QMap>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

/// All values of one curve as a table. It shares them with the curve, so that a million rows cost nothing.
class QlumCurveValuesModel : public QlumTitledModel<QAbstractTableModel>
{
    Q_OBJECT
public:
    /// Its columns.
    enum Column { SourceTimestamp, ServerTimestamp, Value, Status };

    /// Without values.
    explicit QlumCurveValuesModel(QObject* parent = nullptr);

    /// What the curve holds now, and words for its values.
    void setSamples(const QlumSampleStore& samples, const QMap<qint64, QString>& names);
    /// Whether they are those that are shown.
    [[nodiscard]] bool shows(const QlumSampleStore& samples) const
    {
        return m_samples.revision() == samples.revision() && m_samples.size() == samples.size();
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;      ///< a sample each
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;   ///< four
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override; ///< of a sample

private:
    QlumSampleStore m_samples;
    QMap<qint64, QString> m_names;
};
