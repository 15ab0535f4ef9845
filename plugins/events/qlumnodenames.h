#pragma once
#include <app/api/qlumsessionservices.h>
#include <uabase/values/uanodeid.h>

#include <QString>

#include <utility>
#include <vector>

/// The display names of nodes, each by the key of whoever wants it; in one call, for a job. Nodes whose name
/// cannot be read are left out; null services read nothing.
[[nodiscard]] std::vector<std::pair<quint32, QString>>
qlumReadNames(QlumSessionServices* services, const std::vector<std::pair<quint32, UaNodeId>>& nodes);
