// A server with a pump, its drive and their lock, as a table whose methods note each call.
#pragma once
#include <app/api/qlumserverrole.h>
#include <app/api/qlumserviceneed.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/devices/qlumdevicedata.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/servicewatch.h>

#include <QStringList>

#include <functional>
#include <string>

/// The namespace of devices has index 2, that of the plant 3.
class DeviceServer : public TableServices
{
public:
    explicit DeviceServer(bool knowsDevices = true) : m_knowsDevices(knowsDevices)
    {
        if (!knowsDevices)
            return;
        stateTypes();
        table.object(di("DeviceSet"), "DeviceSet");
        table.object(pump, "Pump", di("DeviceSet"), plant("PumpType"));
        stateNameplate();
        stateParameters();
        stateModules();
        stateLock();
    }

    const UaNodeId pump = plant("Pump");
    const UaNodeId drive = plant("Drive");
    const UaNodeId speed = plant("Speed");
    const UaNodeId ramp = plant("Ramp");
    const UaNodeId mode = plant("Mode");

    QStringList journal; ///< of the lock's methods, and of writes
    enum Owner { Nobody, Us, Other } owner = Nobody;
    QlumServerRole role = QlumServerRole::Commission;

    static UaNodeId di(const char* name) { return UaNodeId(name, 2); }
    static UaNodeId plant(const char* name) { return UaNodeId(name, 3); }
    [[nodiscard]] std::string order() const { return journal.join(' ').toStdString(); }
    void lockBy(Owner newOwner)
    {
        owner = newOwner;
        table.setValue(di("Locked"), UaVariant(owner != Nobody));
        table.setValue(di("LockingUser"), UaVariant(owner == Other ? "night shift" : ""));
    }

    UaStringArray namespaceTable() const override
    {
        UaStringArray uris(m_knowsDevices ? 4 : 2);
        const char* const all[] = {"http://opcfoundation.org/UA/", "urn:server", qlumDeviceNamespace,
                                   "urn:plant"};
        for (OpcUa_UInt32 i = 0; i < uris.length(); ++i)
            static_cast<void>(UaString(all[i]).copyTo(&uris[i]));
        return uris;
    }
    /// The role is kept as the guard of a session does it.
    UaStatus write(Settings& settings, const UaWriteValues& nodes, UaStatusCodeArray& results) override
    {
        OpcUa_WriteRequest request{};
        request.NoOfNodesToWrite = static_cast<OpcUa_Int32>(nodes.length());
        request.NodesToWrite = const_cast<OpcUa_WriteValue*>(nodes.rawData());
        const UaClientSdk::ServiceCall asked{OpcUa_WriteRequest_EncodeableType, &request, settings.purpose,
                                             nullptr};
        if (qlumNeedOf(asked, {}) > role)
            return qlumRefusal(role);
        journal.append(QStringLiteral("Write%1").arg(nodes.length()));
        return TableServices::write(settings, nodes, results);
    }

private:
    void subtype(const UaNodeId& base, const UaNodeId& type, const char* name)
    {
        table.object(type, name, UaNodeId());
        table.reference(base, UaNodeId(45), type);
    }
    void stateTypes()
    {
        subtype(UaNodeId(58), di("TopologyElementType"), "TopologyElementType");
        subtype(di("TopologyElementType"), di("DeviceType"), "DeviceType");
        subtype(di("DeviceType"), plant("PumpType"), "PumpType");
        subtype(UaNodeId(58), di("ConfigurableObjectType"), "ConfigurableObjectType");
        subtype(UaNodeId(61), di("FunctionalGroupType"), "FunctionalGroupType");
        table.object(di("TypeSet"), "ParameterSet", plant("PumpType"));
        table.variable(plant("TypeSpeed"), "Speed", UaVariant(100.0), di("TypeSet"));
    }
    void stateNameplate()
    {
        const char* const facts[] = {"Manufacturer",   "HardwareRevision", "SoftwareRevision",
                                     "DeviceRevision", "DeviceManual",     "SerialNumber"};
        for (const char* const fact : facts)
            table.variable(di(fact), fact, UaVariant(fact), pump);
        table.variable(di("Model"), "Model", UaVariant(UaLocalizedText(UaString("en"), UaString("P 7"))),
                       pump);
        table.variable(di("Health"), "DeviceHealth", UaVariant(OpcUa_Int32{3}), pump);
    }
    void stateParameters()
    {
        table.object(di("Set"), "ParameterSet", pump);
        table.variable(speed, "Speed", UaVariant(80.0), di("Set"));
        table.variable(ramp, "Ramp", UaVariant(5.0), di("Set"));
        table.variable(mode, "Mode", UaVariant(OpcUa_Int32{1}), di("Set"));
        table.setAttribute(mode, OpcUa_Attributes_UserAccessLevel, UaDataValue(UaVariant(OpcUa_Byte{1})));
        table.object(di("Tuning"), "Tuning", pump, di("FunctionalGroupType"));
        table.object(plant("Motor"), "Motor", pump, di("FunctionalGroupType"));
        for (const UaNodeId& id : {speed, ramp})
            table.reference(di("Tuning"), UaNodeId(35), id);
        table.reference(plant("Motor"), UaNodeId(35), speed);
        table.reference(plant("Motor"), UaNodeId(35), di("Tuning")); // and round again
        table.reference(di("Tuning"), UaNodeId(35), plant("Motor"));
    }
    void stateModules()
    {
        table.object(di("Modules"), "Modules", pump, di("ConfigurableObjectType"));
        table.object(drive, "Drive", di("Modules"), di("TopologyElementType"));
        table.reference(drive, UaNodeId(35), pump); // a device that contains what it is in
    }
    void stateLock()
    {
        table.object(di("Lock"), "Lock", pump);
        for (const char* const text : {"LockingClient", "LockingUser"})
            table.variable(di(text), text, UaVariant(""), di("Lock"));
        table.variable(di("RemainingLockTime"), "RemainingLockTime", UaVariant(0.0), di("Lock"));
        table.variable(di("Locked"), "Locked", UaVariant(false), di("Lock"));
        method(
            "InitLock", 1,
            [this] {
                if (owner != Nobody)
                    return -1;
                lockBy(Us);
                return 0;
            });
        method("RenewLock", 0, [this] { return owner == Us ? 0 : -1; });
        method("ExitLock", 0, [this] {
            const bool isOurs = owner == Us;
            lockBy(isOurs ? Nobody : owner);
            return isOurs ? 0 : -1;
        });
        method("BreakLock", 0, [this] {
            lockBy(Nobody);
            return 0;
        });
    }
    void method(const char* name, std::size_t inputs, const std::function<OpcUa_Int32()>& run)
    {
        NodeTable::Method made;
        made.inputs.assign(inputs, {"in", UaNodeId(12)});
        made.outputs = {{"status", UaNodeId(6)}};
        made.run = [this, name, run](const UaVariantArray&, UaVariantArray& out) {
            journal.append(QLatin1String(name));
            return UaVariant(run()).copyTo(&out[0]);
        };
        table.method(di(name), name, di("Lock"), made);
    }

    const bool m_knowsDevices;
};
