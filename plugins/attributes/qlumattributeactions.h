// What the parts of the attribute plugin call by the same names.
#pragma once
#include <QString>

namespace QlumAttributeNames {
/// The commands of the dock.
enum ActionId {
    OnOff,
    Refresh,
    ExpandAll,
    CollapseAll,
    CustomNodeId,
    Back,
    Forward,
    Live,
    UndoWrite,
    EditInWindow,
    CopyUriNodeId,
    CopyBrowsePath,
    KeepNode,
    CompareNodes
};

/// What the messages of the dock are about.
inline const QString readTopic = QStringLiteral("read");
inline const QString writeTopic = QStringLiteral("write");
inline const QString liveTopic = QStringLiteral("live");
inline const QString pathTopic = QStringLiteral("path");
} // namespace QlumAttributeNames
