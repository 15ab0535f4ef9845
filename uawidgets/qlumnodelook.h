// How a node looks in a tree or a table.
#pragma once
#include <opcua/opcua_types.h>
#include <uabase/values/uanodeid.h>

#include <QIcon>
#include <QString>

/// By class and, for objects and variables, by type definition; null for an unknown class. GUI thread.
[[nodiscard]] QIcon qlumNodeIcon(OpcUa_UInt32 nodeClass, const UaNodeId& typeDefinition);
/// "Variable"; "Invalid NodeClass" for a number that is none.
[[nodiscard]] QString qlumNodeClassText(OpcUa_Int32 nodeClass);
