#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumsessionservices.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <QString>

/// The browse names from the root to a node, "/Objects/2:Demo/2:Scalar", by one of the ways that lead there.
/// For jobs. Bad when the server cannot be asked; where no way leads up to the root, the path begins with the
/// id of the node where it ends.
[[nodiscard]] UaStatus qlumReadBrowsePath(const QlumJob& job, QlumSessionServices& session,
                                          const UaNodeId& nodeId, QString& path);
