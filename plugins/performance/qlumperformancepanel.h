// What the user asks a performance view to measure.
#pragma once
#include <plugins/performance/qlummeasurement.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QMap>
#include <QObject>
#include <QSettings>
#include <QString>
#include <QVariant>
#include <QWidget>

#include <functional>
#include <optional>
#include <span>
#include <utility>
#include <vector>

class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QSpinBox;
class QTableView;
class QlumViewState;

/// A node to be measured.
struct QlumMeasuredNode
{
    QlumToolNode node;
    bool isLost = false; ///< its server has no such namespace now
};

/// The nodes, one row each. GUI thread.
class QlumMeasuredNodesModel : public QlumTableModel<QlumMeasuredNode>
{
    Q_OBJECT
public:
    /// Tells the names of servers.
    using ServerName = std::function<QString(unsigned int serverId)>;

    /// Empty.
    explicit QlumMeasuredNodesModel(ServerName serverName, QObject* parent = nullptr);
    /// At the end; those that are there already are left out.
    void addNodes(std::span<const QlumToolNode> nodes);
    /// Takes rows out.
    void removeNodes(int first, int count) { remove(first, count); }
    /// Takes those of a server out.
    void removeServer(unsigned int serverId);
    /// The server has its namespaces in another order.
    void remap(unsigned int serverId, const QMap<quint16, quint16>& map);

protected:
    [[nodiscard]] QVariant cell(const QlumMeasuredNode& node, int column, int role) const override;

private:
    const ServerName m_serverName;
};

/// The fields and commands of a performance view. GUI thread.
class QlumPerformancePanel : public QWidget
{
    Q_OBJECT
public:
    /// With the server that its nodes are taken from. The state keeps the table's columns.
    QlumPerformancePanel(QlumMeasuredNodesModel* nodes, QlumViewState* state, QWidget* parent = nullptr);

    /// The servers of the project, by id; keeps the one that is chosen while it is there.
    void setServers(const std::vector<std::pair<unsigned int, QString>>& servers);
    /// The one that is chosen; qlumNoServer for none.
    [[nodiscard]] unsigned int serverId() const;
    /// Chooses one.
    void setServer(unsigned int serverId);
    /// What is asked for, with the nodes of the chosen server that the kind can be measured at.
    [[nodiscard]] QlumMeasurementPlan plan() const;
    /// Why that cannot be measured, in words; empty when it can.
    [[nodiscard]] QString obstacle() const;
    /// The fields, not the nodes.
    void setPlan(const QlumMeasurementPlan& plan);
    /// What is going on; empty for nothing. So many of so many calls; 0 of them for an unknown number.
    void setRunning(const QString& text, quint64 done, quint64 total);
    /// Nothing is going on: can measure when there is no obstacle.
    void setIdle();
    [[nodiscard]] QTableView* nodesView() const { return m_nodesView; } ///< of the nodes

signals:
    void measure();          ///< one run
    void sweepNodes();       ///< over nodes a call
    void sweepOutstanding(); ///< over calls at once
    void compareSecurity();  ///< over endpoints
    void cancel();           ///< what is going on
    void changed();          ///< a field is another now
    void serverChanged();    ///< the chosen server is another now

private:
    QWidget* makeFields();
    QWidget* makeCommands();
    QSpinBox* makeNumber(const QString& name, int minimum, int maximum, int value);
    void showState();

    QlumMeasuredNodesModel* m_nodes;
    QComboBox* m_server;
    QComboBox* m_kind;
    QSpinBox* m_nodesPerCall;
    QSpinBox* m_calls;
    QSpinBox* m_seconds;
    QSpinBox* m_pause;
    QSpinBox* m_outstanding;
    QSpinBox* m_timeout;
    QSpinBox* m_warmUp;
    QTableView* m_nodesView;
    QLabel* m_hint;
    QLabel* m_activity;
    QProgressBar* m_progress;
    QPushButton* m_measure;
    QPushButton* m_sweepNodes;
    QPushButton* m_sweepOutstanding;
    QPushButton* m_compare;
    QPushButton* m_cancel;
    bool m_isRunning = false;
};
