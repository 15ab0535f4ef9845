#include <app/api/qlummetatypes.h>

#include <QList>

void qlumRegisterMetaTypes()
{
    qRegisterMetaType<UaNodeId>("UaNodeId");
    qRegisterMetaType<OpcUa_Byte>("OpcUa_Byte");
    qRegisterMetaType<OpcUa_NodeClass>("OpcUa_NodeClass");
    qRegisterMetaType<OpcUa_DataValue*>("OpcUa_DataValue*");
    qRegisterMetaType<QList<int>>("QList<int>");
    qRegisterMetaType<NamespaceMap>("NamespaceMap");
    qRegisterMetaType<QlumConnectionStatus>("QlumConnectionStatus");
}
