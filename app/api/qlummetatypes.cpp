#include <app/api/qlummetatypes.h>

void qlumRegisterMetaTypes()
{
    qRegisterMetaType<UaNodeId>("UaNodeId");
    qRegisterMetaType<OpcUa_Byte>("OpcUa_Byte");
    qRegisterMetaType<OpcUa_NodeClass>("OpcUa_NodeClass");
    qRegisterMetaType<NamespaceMap>("NamespaceMap");
    qRegisterMetaType<QlumConnectionStatus>("QlumConnectionStatus");
}
