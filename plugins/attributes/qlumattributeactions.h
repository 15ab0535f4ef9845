// What the parts of the attribute plugin call by the same names.
#pragma once
#include <QString>

namespace QlumAttributeNames {
/// The commands of the dock.
enum ActionId { OnOff, Refresh, ExpandAll, CollapseAll, CustomNodeId };

/// What the messages of the dock are about.
inline const QString readTopic = QStringLiteral("read");
inline const QString writeTopic = QStringLiteral("write");
} // namespace QlumAttributeNames
