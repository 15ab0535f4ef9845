#include <app/api/qlumdroppednodes.h>

#include <app/api/qlumapplicationinterface.h>
#include <uabase/values/uanodeid.h>

#include <QMimeData>
#include <QString>

#include <memory>

bool qlumMayHaveNodes(const QMimeData* data)
{
    return data->hasFormat(QStringLiteral("application/UaNodeInformation"));
}

QlumToolNodes qlumDroppedNodes(QlumApplicationInterface& application, const QMimeData* data)
{
    unsigned int serverId = qlumNoServer;
    unsigned int count = 0;
    UaNodeId* ids = nullptr;
    if (!application.nodeIdsFromMimeData(data, &serverId, &count, &ids))
        return {};
    const std::unique_ptr<UaNodeId[]> owned(ids);
    QlumToolNodes nodes;
    nodes.reserve(count);
    for (unsigned int i = 0; i < count; ++i)
        nodes.push_back({serverId, ids[i], OpcUa_NodeClass_Unspecified, {}, {}});
    return nodes;
}
