#include <plugins/dataaccess/parts/qlumnodelist.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumnodeaddress.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QLatin1String>
#include <QStringList>
#include <QVector>

#include <algorithm>
#include <span>
#include <utility>

namespace {
constexpr int maximumLines = 200'000;
constexpr std::size_t nodesPerStep = 1000;

QString listWords(const char* text)
{
    return QCoreApplication::translate("QlumNodeList", text);
}

// ---- columns

struct Columns
{
    int node = -1;
    int path = -1;
    int server = -1;
    int value = -1;
};

QString plainTitle(QString title)
{
    title = title.trimmed().toLower();
    for (const char* blank : {" ", "_", "-"})
        title.remove(QLatin1String(blank));
    return title;
}

// A list may be a table that this program has exported, in the user's language.
bool isTitle(const QString& title, const char* column)
{
    return title == plainTitle(QLatin1String(column)) ||
           title == plainTitle(QCoreApplication::translate("QlumDaModel", column));
}

// Nothing when the line is no line of titles.
Columns columnsOf(const QStringList& titles)
{
    Columns columns;
    int oldValue = -1;
    for (int i = 0; i < titles.size(); ++i) {
        const QString title = plainTitle(titles.at(i));
        if (isTitle(title, "Node Id") || title == QLatin1String("id") || title == QLatin1String("node"))
            columns.node = i;
        else if (isTitle(title, "Browse Path") || title == QLatin1String("path"))
            columns.path = i;
        else if (isTitle(title, "Server"))
            columns.server = i;
        else if (isTitle(title, "New Value"))
            columns.value = i;
        else if (isTitle(title, "Value"))
            oldValue = i;
    }
    if (columns.node < 0 && columns.path < 0)
        return {};
    columns.value = columns.value < 0 ? oldValue : columns.value;
    return columns;
}

QString fieldAt(const QStringList& fields, int column)
{
    return column >= 0 && column < fields.size() ? fields.at(column) : QString();
}

QlumNodeLine lineOf(const QlumCsvRow& row, const Columns& columns)
{
    QlumNodeLine line;
    line.line = row.line;
    line.server = fieldAt(row.fields, columns.server).trimmed();
    line.text = fieldAt(row.fields, columns.node).trimmed();
    if (line.text.isEmpty())
        line.text = fieldAt(row.fields, columns.path).trimmed();
    line.hasValue = columns.value >= 0 && columns.value < row.fields.size();
    line.value = fieldAt(row.fields, columns.value);
    return line;
}
} // namespace

QlumNodeList qlumReadNodeList(const QByteArray& bytes, const QlumReadsOn& goesOn)
{
    QlumNodeList list;
    QlumReadText read = qlumReadText(bytes);
    list.remark = read.remark;
    list.fault = read.fault;
    if (!read.fault.isEmpty())
        return list;
    int rest = 0;
    const QVector<QlumCsvRow> rows = qlumCsvRows(read.text, maximumLines, &rest, goesOn);
    if (rest > 0)
        list.remark +=
            (list.remark.isEmpty() ? QString() : QStringLiteral(" ")) +
            listWords("Only the first %1 lines were taken; %2 are left out.").arg(maximumLines).arg(rest);
    Columns columns = rows.isEmpty() ? Columns() : columnsOf(rows.at(0).fields);
    const bool hasTitles = columns.node >= 0 || columns.path >= 0;
    if (!hasTitles)
        columns = {0, -1, -1, 1};
    for (int i = hasTitles ? 1 : 0; i < rows.size(); ++i) {
        list.lines.push_back(lineOf(rows.at(i), columns));
        list.hasValues = list.hasValues || list.lines.back().hasValue;
    }
    if (list.lines.empty())
        list.fault = listWords("There are no lines with nodes.");
    return list;
}

// ---- finding them

namespace {
// One portion of texts on their way to nodes.
class NodeFinder
{
public:
    NodeFinder(QlumJob& job, QlumSessionServices& session) : m_job(job), m_session(session)
    {
        const UaStringArray table = session.namespaceTable();
        for (const OpcUa_String& uri : table)
            m_namespaces.append(toQString(UaString(uri)));
    }

    UaStatus find(std::span<const QString> texts, std::span<QlumFoundNode> found)
    {
        m_paths.clear();
        for (std::size_t i = 0; i < texts.size(); ++i) {
            QlumNodeAddress address = qlumReadAddress(texts[i]);
            found[i].reason =
                address.fault.isEmpty() ? qlumPlaceAddress(address, m_namespaces) : address.fault;
            if (!found[i].reason.isEmpty())
                continue;
            if (address.path.empty())
                found[i].nodeId = address.nodeId;
            else
                m_paths.emplace_back(&found[i], std::move(address));
        }
        const UaStatus status = m_paths.empty() ? UaStatus() : followPaths();
        return status.isBad() ? status : describe(found);
    }

private:
    UaStatus followPaths()
    {
        UaBrowsePaths paths(static_cast<OpcUa_UInt32>(m_paths.size()));
        for (OpcUa_UInt32 i = 0; i < paths.length(); ++i) {
            const QlumNodeAddress& address = m_paths[i].second;
            static_cast<void>(address.nodeId.copyTo(&paths[i].StartingNode));
            UaRelativePathElements elements(static_cast<OpcUa_UInt32>(address.path.size()));
            for (OpcUa_UInt32 step = 0; step < elements.length(); ++step) {
                const UaQualifiedName name(toUaString(address.path[step].name),
                                           address.path[step].namespaceIndex);
                static_cast<void>(
                    UaNodeId(OpcUaId_HierarchicalReferences).copyTo(&elements[step].ReferenceTypeId));
                static_cast<void>(name.copyTo(&elements[step].TargetName));
                elements[step].IncludeSubtypes = OpcUa_True;
            }
            elements.detach(&paths[i].RelativePath.NoOfElements, &paths[i].RelativePath.Elements);
        }
        UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
        UaBrowsePathResults results;
        const UaStatus status = m_session.translateBrowsePathsToNodeIds(settings, paths, results);
        if (status.isBad() || results.length() != paths.length())
            return status.isBad() ? status : UaStatus(OpcUa_BadUnknownResponse);
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i)
            take(results[i], *m_paths[i].first);
        return status;
    }

    static void take(const OpcUa_BrowsePathResult& result, QlumFoundNode& node)
    {
        if (OpcUa_IsBad(result.StatusCode) || result.NoOfTargets < 1) {
            const bool isMissing = result.StatusCode == OpcUa_BadNoMatch || !OpcUa_IsBad(result.StatusCode);
            node.reason = isMissing ? listWords("The server has nothing at this browse path. Names of other "
                                                "namespaces than 0 need their index: /Objects/2:Plant.")
                                    : qlumResultInWords(UaStatus(result.StatusCode));
            return;
        }
        const UaExpandedNodeId target(result.Targets[0].TargetId);
        if (target.isLocal())
            node.nodeId = target.nodeId();
        else
            node.reason = listWords("The browse path leads to another server.");
    }

    UaStatus describe(std::span<QlumFoundNode> found)
    {
        std::vector<QlumFoundNode*> there;
        for (QlumFoundNode& node : found)
            if (node.reason.isEmpty())
                there.push_back(&node);
        if (there.empty())
            return {};
        UaReadValueIds nodes(static_cast<OpcUa_UInt32>(2 * there.size()));
        for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
            static_cast<void>(there[i / 2]->nodeId.copyTo(&nodes[i].NodeId));
            nodes[i].AttributeId = i % 2 == 0 ? OpcUa_Attributes_NodeClass : OpcUa_Attributes_DisplayName;
        }
        UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
        UaDataValues values;
        const UaStatus status = m_session.read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values);
        if (status.isBad() || values.length() != nodes.length())
            return status.isBad() ? status : UaStatus(OpcUa_BadUnknownResponse);
        for (OpcUa_UInt32 i = 0; i < nodes.length(); i += 2)
            take(values[i], values[i + 1], *there[i / 2]);
        return status;
    }

    static void take(const OpcUa_DataValue& nodeClass, const OpcUa_DataValue& name, QlumFoundNode& node)
    {
        if (OpcUa_IsBad(nodeClass.StatusCode)) {
            node.reason = nodeClass.StatusCode == OpcUa_BadNodeIdUnknown
                              ? listWords("The server has no such node.")
                              : qlumResultInWords(UaStatus(nodeClass.StatusCode));
            return;
        }
        node.nodeClass = static_cast<OpcUa_NodeClass>(UaVariant(nodeClass.Value).toInt32());
        if (!OpcUa_IsBad(name.StatusCode))
            node.displayName = toQString(UaVariant(name.Value).toLocalizedText().text());
        if (node.nodeClass != OpcUa_NodeClass_Variable && node.nodeClass != OpcUa_NodeClass_VariableType)
            node.reason =
                listWords("\"%1\" is no variable and has no value.").arg(qlumCutText(node.displayName));
    }

    QlumJob& m_job;
    QlumSessionServices& m_session;
    QStringList m_namespaces;
    std::vector<std::pair<QlumFoundNode*, QlumNodeAddress>> m_paths;
};
} // namespace

UaStatus qlumFindNodes(QlumJob& job, QlumSessionServices& session, const std::vector<QString>& texts,
                       std::vector<QlumFoundNode>& found)
{
    found.assign(texts.size(), {});
    NodeFinder finder(job, session);
    UaStatus status;
    for (std::size_t begin = 0; begin < texts.size() && status.isNotBad(); begin += nodesPerStep) {
        const std::size_t count = std::min(nodesPerStep, texts.size() - begin);
        job.setProgress(static_cast<qint64>(begin), static_cast<qint64>(texts.size()));
        if (job.isCancelled())
            status = UaStatus(OpcUa_BadRequestCancelledByClient);
        else
            status =
                finder.find(std::span(texts).subspan(begin, count), std::span(found).subspan(begin, count));
    }
    for (QlumFoundNode& node : found)
        if (status.isBad() && node.reason.isEmpty() && node.nodeClass == OpcUa_NodeClass_Unspecified)
            node.reason = qlumResultInWords(status);
    return status;
}
