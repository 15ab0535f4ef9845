// What a server says of the nodes of rows: names, types, units, paths.
#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <utility>
#include <vector>

/// A row whose node is asked about.
struct QlumDaQuestion
{
    quint32 key = 0; ///< of the row
    UaNodeId nodeId; ///< as the server calls it now
};

/// What the server said; empty where it did not.
struct QlumDaDescription
{
    quint32 key = 0;
    OpcUa_NodeClass nodeClass = OpcUa_NodeClass_Unspecified;
    QString displayName;
    QString browsePath; ///< "/Objects/2:Demo/2:Scalar"
    UaNodeId dataType;
    QString dataTypeName;
    QString unit;
    bool isWritable = true;
};

/// Asks in portions, on a job's thread. Parents, types and their names are asked for once.
class QlumDaDescriber
{
public:
    /// A portion of answers, and the types that are new in it.
    struct Portion
    {
        std::vector<QlumDaDescription> rows;
        std::vector<std::pair<UaNodeId, std::shared_ptr<const QlumValueContext>>> types;
    };
    /// Rows in one portion.
    static constexpr std::size_t portion = 500;

    /// Both must outlive it.
    QlumDaDescriber(std::shared_ptr<QlumSessionServices> services, QlumJob& job, bool readsUnits);

    /// Until all are done, the job is cancelled or the server cannot be asked; the last is then the reason.
    [[nodiscard]] UaStatus describe(const std::vector<QlumDaQuestion>& questions,
                                    const std::function<void(Portion)>& told);

private:
    struct Step
    {
        UaNodeId parent; ///< null for none
        QString name;    ///< of the node itself, as a step of a path
    };

    [[nodiscard]] UaStatus readAttributes(std::span<const QlumDaQuestion> questions, Portion& result);
    void nameTypes(Portion& result);
    void findPaths(std::span<const QlumDaQuestion> questions, Portion& result);
    void browseParents(const std::vector<UaNodeId>& nodes);
    void readUnits(std::span<const QlumDaQuestion> questions, Portion& result);
    [[nodiscard]] QString pathOf(UaNodeId node) const;

    const std::shared_ptr<QlumSessionServices> m_services;
    QlumJob& m_job;
    const bool m_readsUnits;
    std::map<UaNodeId, Step> m_steps;
    std::map<UaNodeId, QString> m_typeNames;
};

/// The variables below some nodes, properties left out. On a job's thread.
class QlumDaBranch
{
public:
    struct Variable
    {
        UaNodeId nodeId;
        QString name;
    };
    struct Result
    {
        std::vector<Variable> variables; ///< in the order in which they were found, each once
        bool isCut = false;              ///< there are more than the limit
        UaStatus status;                 ///< why it ended early; Good otherwise
    };

    /// Stops at that many variables, and at ten times as many nodes.
    QlumDaBranch(QlumSessionServices& services, QlumJob& job, std::size_t limit);

    [[nodiscard]] Result find(const std::vector<UaNodeId>& roots);

private:
    [[nodiscard]] UaStatus browse(std::span<const UaNodeId> nodes, std::vector<UaNodeId>& below);
    void take(UaReferenceDescriptions& references, std::vector<UaNodeId>& below);

    QlumSessionServices& m_services;
    QlumJob& m_job;
    const std::size_t m_limit;
    std::set<UaNodeId> m_seen;
    Result m_result;
};
