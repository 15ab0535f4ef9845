#pragma once
#include <opcua/opcua_types.h>
#include <uabase/values/uanodeid.h>

#include <QGroupBox>
#include <QString>
#include <QWidget>

#include <vector>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QSpinBox;

/// An aggregate that a server calculates.
struct QlumAggregate
{
    UaNodeId id;  ///< of its function
    QString name; ///< for the user
};

/// What is read besides raw values: aggregates, and values as they were before somebody changed them.
class QlumTrendExtras : public QGroupBox
{
    Q_OBJECT
public:
    /// Nothing is chosen.
    explicit QlumTrendExtras(QWidget* parent = nullptr);

    /// Adds those that are not there; what was chosen stays.
    void addAggregates(const std::vector<QlumAggregate>& aggregates);
    [[nodiscard]] bool wantsProcessed() const;   ///< whether the user does
    [[nodiscard]] bool hasProcessed() const;     ///< whether an aggregate is to be read
    [[nodiscard]] UaNodeId aggregate() const;    ///< that is chosen; null while no server has told any
    [[nodiscard]] QString aggregateName() const; ///< of that
    [[nodiscard]] double interval() const;       ///< of an aggregate; ms
    /// How servers are to calculate.
    [[nodiscard]] OpcUa_AggregateConfiguration configuration() const;
    [[nodiscard]] bool hasModified() const; ///< whether modified values are to be read

private:
    void showChoices();

    QCheckBox* m_processed;
    QComboBox* m_aggregate;
    QDoubleSpinBox* m_interval;
    QCheckBox* m_defaults;
    QCheckBox* m_uncertainAsBad;
    QSpinBox* m_percentBad;
    QSpinBox* m_percentGood;
    QCheckBox* m_sloped;
    QCheckBox* m_modified;
    std::vector<QlumAggregate> m_aggregates;
};
