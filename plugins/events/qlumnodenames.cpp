#include <plugins/events/qlumnodenames.h>

#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uavariant.h>

#include <QCoreApplication>

std::vector<std::pair<quint32, QString>> qlumReadNames(QlumSessionServices* services,
                                                       const std::vector<std::pair<quint32, UaNodeId>>& nodes)
{
    std::vector<std::pair<quint32, QString>> names;
    if (!services || nodes.empty())
        return names;
    UaReadValueIds ids(static_cast<OpcUa_UInt32>(nodes.size()));
    for (OpcUa_UInt32 i = 0; i < ids.length(); ++i) {
        static_cast<void>(nodes[i].second.copyTo(&ids[i].NodeId)); // else null, which has no name
        ids[i].AttributeId = OpcUa_Attributes_DisplayName;
    }
    UaClientSdk::ServiceSettings settings =
        qlumServiceSettings(QCoreApplication::translate("QlumMonitoredItemModel", "Subscribing to events"));
    UaDataValues values;
    if (!services->read(settings, 0, OpcUa_TimestampsToReturn_Neither, ids, values).isGood())
        return names;
    for (OpcUa_UInt32 i = 0; i < values.length() && i < ids.length(); ++i)
        if (const UaVariant value(values[i].Value); value.type() == OpcUaType_LocalizedText)
            names.emplace_back(nodes[i].first,
                               qlumSingleLine(qlumCutText(toQString(value.toLocalizedText().text()))));
    return names;
}
