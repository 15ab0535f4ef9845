#pragma once
#include <plugins/dataaccess/parts/qlumnodelist.h>
#include <plugins/dataaccess/qlumdapart.h>
#include <plugins/dataaccess/qlumdataitem.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <utility>
#include <vector>

class QlumJob;
class QlumStagedPart;
struct QlumStagedRow;

/// Rows from lists of nodes: pasted ones, files, and files with new values.
class QlumListPart final : public QlumDaPart
{
    Q_OBJECT
public:
    /// Adds its commands to the host; both outlive it.
    QlumListPart(QlumDaHost& host, QlumStagedPart& staged);

    /// Adds a row for each line, also for those that name nothing; asks for the server where that is open.
    void takeList(const QByteArray& bytes);
    /// Looks for the selected rows that named nothing, or for all of them.
    void lookAgain();

private:
    /// A line on its way to a row.
    struct Wanted
    {
        QlumNodeLine line;
        unsigned int serverId = qlumNoServer;
        QlumFoundNode found;
        UaStatus status;   ///< bad: the server could not be asked
        quint32 row = 0;   ///< that is looked for again; 0: a new one
        QlumDataItem item; ///< what it becomes
    };
    using Lines = std::vector<Wanted>;
    enum class Purpose { Rows, Values, Again };

    struct Given; ///< what a list brings, and whom it names
    struct Portion;
    using Node = std::pair<unsigned int, UaNodeId>;
    using RowOfNode = std::map<Node, quint32>;

    void makeCommands();
    void load(Purpose purpose);
    void read(const QByteArray& bytes, const QString& path, Purpose purpose);
    [[nodiscard]] static QByteArray contentOf(const QString& path, QString& fault);
    void take(const std::shared_ptr<Given>& given, Purpose purpose);
    void tellFault(const QString& what, const QString& why);
    [[nodiscard]] unsigned int usualServer(bool& isGivenUp);
    [[nodiscard]] static Lines linesOf(const Given& given);
    void find(const std::set<unsigned int>& servers, std::function<Lines(QlumJob&)> lines, Purpose purpose,
              const QString& remark);
    [[nodiscard]] static QlumDataItem itemFor(const Wanted& wanted);

    // ---- on a job's thread
    void handOver(QlumJob& job, Lines& lines, Purpose purpose, const QString& remark);
    void addRows(QlumJob& job, Lines& lines);
    [[nodiscard]] Lines linesOfRows(QlumJob& job, const std::vector<quint32>& keys);
    void resolveRows(QlumJob& job, Lines& lines);
    void stage(QlumJob& job, Lines& lines);
    [[nodiscard]] static Portion portionOf(std::span<Wanted> lines, RowOfNode& rows);

    // ---- on the GUI thread
    [[nodiscard]] std::vector<std::pair<Node, quint32>> nodesOfRows() const;
    void stagePortion(Portion& portion);
    void appendLines(std::span<const quint32> keys, Lines& lines) const;
    void tellStaged(std::size_t staged, std::size_t total, const std::vector<QlumStagedRow>& faults);
    void tellRows(int unresolved, std::size_t total, const QString& first, const QString& remark);

    QlumDaHost& m_host;
    QlumStagedPart& m_staged;
};
