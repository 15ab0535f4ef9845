#pragma once
#include <app/api/qlumtoolservices.h>

class QMimeData;
class QlumApplicationInterface;

/// Whether a drag may bring nodes of an address space.
[[nodiscard]] bool qlumMayHaveNodes(const QMimeData* data);

/// The nodes that were dropped, with their server and id only; none when they cannot be read. GUI thread.
[[nodiscard]] QlumToolNodes qlumDroppedNodes(QlumApplicationInterface& application, const QMimeData* data);
