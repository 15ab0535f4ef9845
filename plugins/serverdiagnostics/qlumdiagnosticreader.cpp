// The calls of all readings, and what is read of the server itself.
#include <plugins/serverdiagnostics/qlumdiagnosticreader.h>

#include <app/api/qlumlog.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/serverdiagnostics/qlumdiagnosticvalue.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/browsecontext.h>
#include <uaclientsdk/uasession.h>

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <iterator>

namespace {
QStringList namesOf(const UaDataValue& strings)
{
    QStringList names;
    UaArray<OpcUa_LocalizedText> texts;
    if (!strings.statusCode().isBad() && strings.value().toLocalizedTextArray(texts))
        for (const OpcUa_LocalizedText& text : texts)
            names.append(toQString(UaLocalizedText(text).text()));
    return names;
}

bool isGood(OpcUa_StatusCode status)
{
    return OpcUa_IsGood(status) != 0;
}
} // namespace

void QlumDiagnosticFaults::tell(const QString& text)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_told.contains(text))
            return;
        m_told.insert(text);
    }
    QlumLog(QCoreApplication::translate("QlumServerDiagnosticWidget", "ServerDiagnostic Plugin"), m_serverId)
        .write(QlumLogLevel::Warning, text);
}

QlumDiagnosticReader::QlumDiagnosticReader(QlumSessionServices& services, QlumJob& job,
                                           QlumDiagnosticFaults& faults)
    : m_services(services), m_job(job), m_faults(faults)
{
}

// ---- calls

// Without an answer every value has the status of the call. Null ids are nodes that are not there.
UaStatus QlumDiagnosticReader::readValues(const Ids& ids, std::vector<UaDataValue>& values)
{
    values.assign(ids.size(), UaDataValue(UaVariant(), OpcUa_BadNodeIdUnknown));
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(
        std::count_if(ids.begin(), ids.end(), [](const UaNodeId& id) { return !id.isNull(); })));
    OpcUa_UInt32 next = 0;
    for (const UaNodeId& id : ids)
        if (!id.isNull()) {
            nodes[next].AttributeId = OpcUa_Attributes_Value;
            if (!isGood(id.copyTo(&nodes[next++].NodeId)))
                return UaStatus(OpcUa_BadOutOfMemory);
        }
    if (nodes.isEmpty())
        return {};
    QlumSessionServices::Settings settings = m_job.serviceSettings();
    UaDataValues answers;
    const UaStatus status = m_services.read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, answers);
    next = 0;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (ids[i].isNull())
            continue;
        values[i] = status.isGood() ? UaDataValue(answers[next]) : UaDataValue(UaVariant(), status);
        ++next;
    }
    return status;
}

// Null ids where there is no such node.
UaStatus QlumDiagnosticReader::translate(const std::vector<Path>& paths, Ids& ids)
{
    ids.assign(paths.size(), UaNodeId());
    UaBrowsePaths asked(static_cast<OpcUa_UInt32>(paths.size()));
    const UaNodeId hierarchical(OpcUaId_HierarchicalReferences);
    for (OpcUa_UInt32 i = 0; i < asked.length(); ++i) {
        const Path& path = paths[i];
        UaRelativePathElements elements(static_cast<OpcUa_UInt32>(path.steps.size()));
        for (OpcUa_UInt32 step = 0; step < elements.length(); ++step) {
            const UaQualifiedName name(UaString(path.steps[step].name), path.steps[step].namespaceIndex);
            elements[step].IncludeSubtypes = OpcUa_True;
            if (!isGood(hierarchical.copyTo(&elements[step].ReferenceTypeId)) ||
                !isGood(name.copyTo(&elements[step].TargetName)))
                return UaStatus(OpcUa_BadOutOfMemory);
        }
        elements.detach(&asked[i].RelativePath.NoOfElements, &asked[i].RelativePath.Elements);
        if (!isGood(path.start.copyTo(&asked[i].StartingNode)))
            return UaStatus(OpcUa_BadOutOfMemory);
    }
    if (asked.isEmpty())
        return {};
    QlumSessionServices::Settings settings = m_job.serviceSettings();
    UaBrowsePathResults results;
    const UaStatus status = m_services.translateBrowsePathsToNodeIds(settings, asked, results);
    for (OpcUa_UInt32 i = 0; status.isGood() && i < results.length(); ++i)
        if (isGood(results[i].StatusCode) && results[i].NoOfTargets > 0)
            ids[i] = UaNodeId(results[i].Targets[0].TargetId.NodeId);
    return status;
}

// What is found before the browse fails stays; a rest beyond the pages is given up.
QlumDiagnosticReader::Found QlumDiagnosticReader::browse(const UaNodeId& start, OpcUa_UInt32 nodeClasses,
                                                         int mostPages)
{
    UaClientSdk::BrowseContext context;
    context.referenceTypeId = UaNodeId(OpcUaId_HierarchicalReferences);
    context.nodeClassMask = nodeClasses;
    QlumSessionServices::Settings settings = m_job.serviceSettings();
    UaByteString point;
    Found found;
    found.status = m_services.browse(settings, start, context, point, found.references);
    for (int page = 1; found.status.isGood() && point.length() > 0; ++page) {
        const bool isEnough = page >= mostPages || m_job.isCancelled();
        UaReferenceDescriptions more;
        const UaStatus status = m_services.browseNext(settings, isEnough, point, more);
        if (isEnough || status.isBad() || !found.references.appendMoved(std::move(more)))
            break;
    }
    return found;
}

// The names of what is in a folder, as if it were a variable.
std::vector<UaDataValue> QlumDiagnosticReader::readFolders(const Ids& ids)
{
    constexpr int mostPages = 100;
    std::vector<UaDataValue> values;
    for (const UaNodeId& id : ids) {
        const Found found = browse(id, OpcUa_NodeClass_Object, mostPages);
        UaStringArray names(found.references.length());
        bool isWhole = true;
        for (OpcUa_UInt32 i = 0; i < names.length(); ++i)
            isWhole = isWhole && isGood(UaString(found.references[i].DisplayName.Text).copyTo(&names[i]));
        UaVariant value;
        if (isWhole && found.status.isGood())
            value.setStringArray(names);
        values.emplace_back(value, found.status);
    }
    return values;
}

// ---- the server

QlumServerReading QlumDiagnosticReader::readServer()
{
    const std::span<const QlumServerRow> rows = qlumServerRows();
    Ids ids;
    Ids folders;
    for (const QlumServerRow& row : rows) {
        const bool isFolder = row.kind == QlumDiagnosticKind::Folder;
        ids.push_back(isFolder ? UaNodeId() : UaNodeId(row.nodeId));
        if (isFolder)
            folders.emplace_back(row.nodeId);
    }
    for (const OpcUa_UInt32 id : {OpcUaId_Server_ServerDiagnostics_EnabledFlag,
                                  OpcUaId_ServerState_EnumStrings, OpcUaId_RedundancySupport_EnumStrings})
        ids.emplace_back(id);
    QlumServerReading reading;
    reading.status = readValues(ids, reading.values);
    reading.time = QlumDiagnosticClock::now();
    const std::vector<UaDataValue> names =
        reading.status.isGood()
            ? readFolders(folders)
            : std::vector<UaDataValue>(folders.size(), UaDataValue(UaVariant(), reading.status));
    auto name = names.begin();
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (rows[i].kind == QlumDiagnosticKind::Folder)
            reading.values[i] = *name++;
    reading.isEnabled = reading.values[rows.size()];
    reading.stateNames = namesOf(reading.values[rows.size() + 1]);
    reading.redundancyNames = namesOf(reading.values[rows.size() + 2]);
    reading.values.resize(rows.size());
    reading.limits = m_services.operationLimits();
    if (const auto session = m_services.session()) {
        reading.longestArray = session->maxArrayLength();
        reading.longestString = session->maxStringLength();
    }
    return reading;
}

// ---- children of diagnostics

// All groups by one call each; those that are not where they should be once more.
UaStatus QlumDiagnosticReader::findChildren(const std::vector<Children>& groups, std::vector<Ids>& ids)
{
    std::vector<Path> paths;
    for (const Children& group : groups)
        for (const QlumDetailRow& row : group.rows) {
            Path& path = paths.emplace_back(Path{group.start, {}});
            if (group.below)
                path.steps.push_back({group.below, 0});
            path.steps.push_back({row.label, 0});
        }
    Ids found;
    const UaStatus status = translate(paths, found);
    auto next = found.begin();
    for (const Children& group : groups) {
        const auto end = next + static_cast<std::ptrdiff_t>(group.rows.size());
        Ids& own = ids.emplace_back(next, end);
        next = end;
        if (status.isGood())
            findElsewhere(group, own);
    }
    return status;
}

// By their other names, and, when none of them is there, in the namespace in which some servers have them.
void QlumDiagnosticReader::findElsewhere(const Children& group, Ids& ids)
{
    const bool isEmpty = std::all_of(ids.begin(), ids.end(), [](const UaNodeId& id) { return id.isNull(); });
    std::vector<Path> paths;
    std::vector<std::size_t> rows;
    const auto add = [&](std::size_t row, const char* name, OpcUa_UInt16 below, OpcUa_UInt16 child) {
        Path& path = paths.emplace_back(Path{group.start, {}});
        if (group.below)
            path.steps.push_back({group.below, below});
        path.steps.push_back({name, child});
        rows.push_back(row);
    };
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (!ids[i].isNull())
            continue;
        const QlumDetailRow& row = group.rows[i];
        for (const char* name : {row.label, row.otherName}) {
            if (!name)
                continue;
            if (name == row.otherName)
                add(i, name, 0, 0);
            if (isEmpty) {
                add(i, name, 0, 1);
                if (group.below)
                    add(i, name, 1, 1);
                if (group.below)
                    add(i, name, 1, 0);
            }
        }
    }
    Ids found;
    if (paths.empty() || m_job.isCancelled() || translate(paths, found).isBad())
        return;
    for (std::size_t i = 0; i < found.size(); ++i)
        if (!found[i].isNull() && ids[rows[i]].isNull())
            ids[rows[i]] = found[i];
    if (isEmpty && std::any_of(ids.begin(), ids.end(), [](const UaNodeId& id) { return !id.isNull(); }))
        m_faults.tell(QString::fromLatin1(group.wrongNamespace).arg(toQString(group.start.toXmlString())));
}

std::vector<std::vector<UaDataValue>> QlumDiagnosticReader::readChildren(const std::vector<Children>& groups)
{
    std::vector<Ids> ids;
    const UaStatus status = findChildren(groups, ids);
    Ids all;
    for (const Ids& group : ids)
        all.insert(all.end(), group.begin(), group.end());
    std::vector<UaDataValue> values;
    if (status.isGood() && !m_job.isCancelled())
        static_cast<void>(readValues(all, values)); // each value says it
    else
        values.assign(all.size(), UaDataValue(UaVariant(), status));
    std::vector<std::vector<UaDataValue>> result;
    auto next = values.begin();
    for (const Children& group : groups) {
        const auto end = next + static_cast<std::ptrdiff_t>(group.rows.size());
        result.emplace_back(next, end);
        next = end;
    }
    return result;
}

// A child of each object; null where there is none.
QlumDiagnosticReader::Ids QlumDiagnosticReader::findBelow(const Ids& objects, const char* child,
                                                          const char* wrongNamespace)
{
    Ids found;
    std::vector<Path> paths;
    for (const UaNodeId& object : objects)
        paths.push_back({object, {{child, 0}}});
    if (translate(paths, found).isBad())
        return found;
    std::vector<std::size_t> missing;
    paths.clear();
    for (std::size_t i = 0; i < objects.size(); ++i)
        if (found[i].isNull()) {
            paths.push_back({objects[i], {{child, 1}}});
            missing.push_back(i);
        }
    Ids elsewhere;
    if (paths.empty() || translate(paths, elsewhere).isBad())
        return found;
    for (std::size_t i = 0; i < missing.size(); ++i) {
        found[missing[i]] = elsewhere[i];
        if (!elsewhere[i].isNull())
            m_faults.tell(
                QString::fromLatin1(wrongNamespace).arg(toQString(objects[missing[i]].toXmlString())));
    }
    return found;
}
