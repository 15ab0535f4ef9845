#include <plugins/devices/qlumdeviceclient.h>

#include <app/api/qlumcallnote.h>
#include <app/api/qlumserviceneed.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/devices/qlumdevicebrowser.h>
#include <plugins/devices/qlumdevicereader.h>
#include <plugins/devices/qlumdevicewords.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/methodcall.h>

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace {
constexpr OpcUa_Int32 bytesPerRead = 8192; // what most servers allow

QString clientWords(const char* text)
{
    return QCoreApplication::translate("QlumDeviceClient", text);
}

// A good call whose method says nothing has not done what was asked.
QlumDeviceAnswer answerOf(const QString& method, const UaStatus& status, const UaVariantArray& outputs,
                          OpcUa_UInt32 place)
{
    QlumDeviceAnswer answer{status, 0, {}};
    if (status.isBad()) {
        answer.words = qlumResultInWords(status);
        return answer;
    }
    bool isNumber = false;
    if (outputs.length() > place)
        answer.output = UaVariant(outputs[place]).toInt32(&isNumber);
    if (!isNumber)
        answer.words = clientWords("the server did not say what it came to");
    else if (answer.output != 0)
        answer.words = qlumDeviceOutputWords(method, answer.output);
    return answer;
}
} // namespace

QlumDeviceClient::QlumDeviceClient(std::shared_ptr<QlumSessionServices> session,
                                   QlumSessionServices::Settings settings, Cancelled isCancelled)
    : m_session(std::move(session)), m_settings(std::move(settings)), m_isCancelled(std::move(isCancelled))
{
}

QlumSessionServices::Settings QlumDeviceClient::settingsFor(const QString& purpose) const
{
    QlumSessionServices::Settings settings = m_settings;
    settings.purpose = toUaString(purpose);
    return settings;
}

UaStatus QlumDeviceClient::call(const UaNodeId& object, const UaNodeId& method, const QString& purpose,
                                std::span<const UaVariant> inputs, UaVariantArray& outputs)
{
    if (object.isNull() || method.isNull())
        return UaStatus(OpcUa_BadMethodInvalid);
    QlumSessionServices::Settings settings = settingsFor(purpose);
    UaClientSdk::CallIn in{object, method, UaVariantArray(static_cast<OpcUa_UInt32>(inputs.size()))};
    for (OpcUa_UInt32 i = 0; i < in.inputArguments.length(); ++i)
        if (OpcUa_IsBad(inputs[i].copyTo(&in.inputArguments[i])))
            return UaStatus(OpcUa_BadOutOfMemory);
    UaClientSdk::CallOut out;
    const UaStatus status = m_session->call(settings, in, out);
    outputs = std::move(out.outputArguments);
    return status.isBad() ? status : out.callResult;
}

// ---- locks

QlumDeviceAnswer QlumDeviceClient::callLock(const QlumDevice& device, const char* method,
                                            std::span<const UaVariant> inputs)
{
    const QString name = QLatin1String(method);
    UaVariantArray outputs;
    const UaStatus status = call(device.parts.value(QStringLiteral("Lock")), device.lockParts.value(name),
                                 name + QStringLiteral(": ") + device.name, inputs, outputs);
    return answerOf(name, status, outputs, 0);
}

QlumDeviceAnswer QlumDeviceClient::initLock(const QlumDevice& device, const QString& context)
{
    const UaVariant input(toUaString(context));
    return callLock(device, "InitLock", std::span(&input, 1));
}

QlumDeviceAnswer QlumDeviceClient::renewLock(const QlumDevice& device)
{
    return callLock(device, "RenewLock", {});
}

QlumDeviceAnswer QlumDeviceClient::exitLock(const QlumDevice& device)
{
    return callLock(device, "ExitLock", {});
}

QlumDeviceAnswer QlumDeviceClient::breakLock(const QlumDevice& device)
{
    return callLock(device, "BreakLock", {});
}

QlumDeviceLockState QlumDeviceClient::readLock(const QlumDevice& device)
{
    const std::array<UaNodeId, 4> ids{device.lockParts.value(QStringLiteral("Locked")),
                                      device.lockParts.value(QStringLiteral("LockingClient")),
                                      device.lockParts.value(QStringLiteral("LockingUser")),
                                      device.lockParts.value(QStringLiteral("RemainingLockTime"))};
    QlumDeviceBrowser browser(*m_session, m_settings, m_isCancelled);
    const std::vector<UaDataValue> values = browser.read(ids, OpcUa_Attributes_Value);
    return qlumDeviceLockState(values[0], values[1], values[2], values[3]);
}

// ---- parameters

QlumParameterOutcomes QlumDeviceClient::write(const QlumDevice* lockDevice, bool isHeld,
                                              std::span<const QlumParameterWrite> writes)
{
    QlumParameterOutcomes outcomes;
    // a lock that has ended unnoticed may be somebody else's by now
    if (lockDevice && isHeld) {
        const QlumDeviceAnswer renewed = renewLock(*lockDevice);
        outcomes.isLockLost = renewed.status.isNotBad() && renewed.output < 0;
        if (!renewed.isDone()) {
            outcomes.refusal = clientWords("The lock of %1 could not be renewed: %2. Nothing was written.")
                                   .arg(lockDevice->name, renewed.words);
            return outcomes;
        }
    } else if (lockDevice) {
        if (const QlumDeviceLockState lock = readLock(*lockDevice); lock.isLocked) {
            outcomes.refusal = clientWords("%1 is locked by %2. Nothing was written.")
                                   .arg(lockDevice->name, qlumDeviceOwnerText(lock));
            return outcomes;
        }
    }
    UaWriteValues values(static_cast<OpcUa_UInt32>(writes.size()));
    std::vector<QlumCallNote::Shown> shown;
    for (OpcUa_UInt32 i = 0; i < values.length(); ++i) {
        values[i].AttributeId = OpcUa_Attributes_Value;
        static_cast<void>(writes[i].id.copyTo(&values[i].NodeId));
        static_cast<void>(writes[i].value.copyTo(&values[i].Value.Value));
        outcomes.cells.push_back({writes[i].id, {}, {}});
        shown.push_back({writes[i].id, OpcUa_Attributes_Value, writes[i].shown, writes[i].name});
    }
    QlumSessionServices::Settings settings = settingsFor(clientWords("Writing parameters"));
    qlumTellShown(settings, std::move(shown));
    UaStatusCodeArray results;
    const UaStatus status = m_session->write(settings, values, results);
    for (OpcUa_UInt32 i = 0; i < outcomes.cells.size(); ++i) {
        // of a service that broke off, what it has carried out already counts
        if (i < results.length())
            outcomes.cells[i].status = UaStatus(results[i]);
        else
            outcomes.cells[i].status = status.isBad() ? status : UaStatus(OpcUa_BadUnknownResponse);
    }
    readBack(outcomes);
    return outcomes;
}

void QlumDeviceClient::readBack(QlumParameterOutcomes& outcomes)
{
    std::vector<UaNodeId> ids;
    for (const QlumParameterOutcome& cell : outcomes.cells)
        ids.push_back(cell.id);
    QlumDeviceBrowser browser(*m_session, settingsFor(clientWords("Reading parameters back")), {});
    const std::vector<UaDataValue> values = browser.read(ids, OpcUa_Attributes_Value);
    for (std::size_t i = 0; i < values.size(); ++i)
        outcomes.cells[i].back = values[i];
}

// ---- documents

UaStatus QlumDeviceClient::readContent(const QlumDeviceDocument& document, UaVariant& value,
                                       UaNodeId& dataType)
{
    if (document.isFile)
        return readFile(document.id, value);
    QlumDeviceBrowser browser(*m_session, m_settings, m_isCancelled);
    const UaDataValue content = browser.read(std::span(&document.id, 1), OpcUa_Attributes_Value).front();
    const UaDataValue type = browser.read(std::span(&document.id, 1), OpcUa_Attributes_DataType).front();
    value = content.value();
    dataType = type.value().toNodeId();
    return UaStatus(content.statusCode());
}

// Opened for reading, and closed on every way.
UaStatus QlumDeviceClient::readFile(const UaNodeId& file, UaVariant& value)
{
    QlumDeviceBrowser browser(*m_session, m_settings, m_isCancelled);
    QlumDeviceParts methods;
    for (const QlumDeviceChild& child : browser.children(file))
        if (child.nodeClass == OpcUa_NodeClass_Method && child.namespaceIndex == 0)
            methods.insert(child.browseName, child.id);
    const QString purpose = qlumPurpose(QlumPurpose::fileReading, clientWords("Reading a document"));
    const UaVariant readMode(OpcUa_Byte{1});
    UaVariantArray outputs;
    UaStatus status =
        call(file, methods.value(QStringLiteral("Open")), purpose, std::span(&readMode, 1), outputs);
    if (status.isBad() || outputs.length() < 1)
        return status.isBad() ? status : UaStatus(OpcUa_BadDecodingError);
    const UaVariant handle(outputs[0]);
    const std::array<UaVariant, 2> piece{handle, UaVariant(bytesPerRead)};
    std::string content;
    for (bool isMore = true; isMore && status.isNotBad();) {
        status = call(file, methods.value(QStringLiteral("Read")), purpose, piece, outputs);
        const UaByteString bytes =
            outputs.length() > 0 && status.isNotBad() ? UaVariant(outputs[0]).toByteString() : UaByteString();
        content += bytes.view();
        isMore = bytes.length() > 0;
        if (content.size() > mostContentBytes)
            status = UaStatus(OpcUa_BadEncodingLimitsExceeded);
        else if (m_isCancelled && m_isCancelled())
            status = UaStatus(OpcUa_BadRequestCancelledByClient);
    }
    static_cast<void>(
        call(file, methods.value(QStringLiteral("Close")), purpose, std::span(&handle, 1), outputs));
    value = UaVariant(UaByteString(static_cast<OpcUa_Int32>(content.size()),
                                   reinterpret_cast<const OpcUa_Byte*>(content.data())));
    return status;
}
