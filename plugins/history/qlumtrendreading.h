#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/history/qlumhistorycsv.h>
#include <plugins/history/qlumhistoryplan.h>
#include <plugins/history/qlumtrendextras.h>
#include <plugins/history/qlumtrendnodes.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>

#include <QMap>
#include <QObject>
#include <QString>

#include <map>
#include <vector>

/// The jobs of a trend view: those of different servers run side by side. GUI thread.
class QlumTrendReading : public QObject
{
    Q_OBJECT
public:
    /// The provider must outlive this.
    explicit QlumTrendReading(QlumSessionServicesProvider services, QObject* parent = nullptr);

    /// Reads histories; batchRead() tells of each answer, planEnded() of the end.
    void read(const QlumHistoryPlan& plan);
    /// Looks for the earliest value of the targets of all plans; startTimeRead() tells.
    void findStartTime(std::vector<QlumHistoryPlan> plans);
    /// Asks what a server says of nodes, which may be new ones; nodesRead() tells.
    void readNodes(unsigned int serverId, const std::vector<UaNodeId>& ids, bool areNew);
    /// Asks a server which aggregates it calculates; aggregatesRead() tells.
    void readAggregates(unsigned int serverId);
    /// Reads plans to the end, into a file; fileWritten() tells.
    void writeFile(std::vector<QlumHistoryPlan> plans, const QMap<int, QlumHistoryName>& names,
                   const QString& fileName);
    /// Gives up what is written to files; they stay as they were.
    void cancelFiles();
    /// Gives up reads of histories at once: nothing more of them arrives. Continuation points are given back
    /// as soon as the server has answered what it was asked last.
    void cancel();
    /// Nothing calls the services of the server any more when this returns.
    void endServer(unsigned int serverId);
    /// Whether histories are being read.
    [[nodiscard]] bool isReading() const { return !m_reads.empty(); }

signals:
    /// What an answer holds of one node; whoever is told may move its parts away.
    void batchRead(QlumHistoryBatch& batch);
    /// A plan was carried out, or failed. Without outcomes it was cancelled, or its server has gone.
    void planEnded(const QlumHistoryPlan& plan, const std::vector<QlumHistoryOutcome>& outcomes);
    /// The last read has ended.
    void allEnded();
    /// The earliest time of all; null when there is none.
    void startTimeRead(const UaDateTime& time);
    /// Those of one server.
    void aggregatesRead(const std::vector<QlumAggregate>& aggregates);
    /// What came of a file; not told when the user gave it up.
    void fileWritten(const QlumHistoryFile& file, const QString& fileName);
    /// In the order of the question.
    void nodesRead(unsigned int serverId, const std::vector<QlumTrendNode>& nodes, bool areNew);

private:
    void carryOut(QlumJob& job, const QlumHistoryPlan& plan);
    void ended(quint64 number);
    void searchEnded(quint64 number);

    struct Work
    {
        QlumJobPool::Ticket ticket;
        unsigned int serverId;
    };

    const QlumSessionServicesProvider m_services;
    std::map<quint64, Work> m_reads;    ///< by numbers of our own
    std::map<quint64, Work> m_searches; ///< the same
    quint64 m_lastNumber = 0;
    UaDateTime m_found;
    QlumJobPool m_files; ///< as the next
    QlumJobPool m_pool;  ///< goes first: its jobs use the others
};
