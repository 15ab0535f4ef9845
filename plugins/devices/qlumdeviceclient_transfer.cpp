// Parameters that travel between a device and the server, and what the device says of each.
#include <plugins/devices/qlumdeviceclient.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/devices/qlumdevicewords.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluefacts.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QCoreApplication>
#include <QStringList>
#include <QThread>

#include <array>
#include <chrono>
#include <utility>

namespace {
constexpr std::chrono::minutes longestSilence(1);
constexpr int betweenFetches = 100; // ms; a server answers at once, whether there is something new or not

QString transferWords(const char* text)
{
    return QCoreApplication::translate("QlumDeviceClient", text);
}

QString nodePathText(const UaVariant& path)
{
    QStringList names;
    for (OpcUa_UInt32 i = 0; i < path.elementCount(); ++i)
        names.append(toQString(path.at(i).toQualifiedName().name()));
    return names.join(QLatin1Char('/'));
}
} // namespace

QlumTransferOutcome QlumDeviceClient::transfer(const QlumDevice& device, bool isToDevice,
                                               const Progress& progress)
{
    QlumTransferOutcome outcome;
    const QString method =
        isToDevice ? QStringLiteral("TransferToDevice") : QStringLiteral("TransferFromDevice");
    UaVariantArray outputs;
    const UaStatus status =
        call(device.parts.value(QStringLiteral("Transfer")), device.transferParts.value(method),
             method + QStringLiteral(": ") + device.name, {}, outputs);
    bool isNumber = false;
    const OpcUa_Int32 id = outputs.length() > 0 ? UaVariant(outputs[0]).toInt32(&isNumber) : 0;
    const OpcUa_Int32 begun = outputs.length() > 1 ? UaVariant(outputs[1]).toInt32(&isNumber) : 0;
    if (status.isBad())
        outcome.fault = qlumResultInWords(status);
    else if (!isNumber || outputs.length() < 2)
        outcome.fault = transferWords("the server did not say what it came to");
    else if (begun != 0)
        outcome.fault = qlumDeviceOutputWords(method, begun);
    if (!outcome.fault.isEmpty())
        return outcome;
    OpcUa_Int32 sequence = 0;
    std::size_t known = 0;
    auto heard = std::chrono::steady_clock::now();
    while (fetch(device, id, sequence, outcome)) {
        if (progress)
            progress(static_cast<int>(outcome.rows.size()));
        if (m_isCancelled && m_isCancelled()) {
            outcome.fault = transferWords("you have cancelled; the device may go on by itself");
            break;
        }
        const auto now = std::chrono::steady_clock::now();
        if (std::exchange(known, outcome.rows.size()) != outcome.rows.size())
            heard = now;
        if (now - heard >= longestSilence) {
            outcome.fault = transferWords("no result has come for a minute; the device may go on by itself");
            break;
        }
        QThread::msleep(betweenFetches);
    }
    return outcome;
}

// True while more has to be fetched.
bool QlumDeviceClient::fetch(const QlumDevice& device, OpcUa_Int32 id, OpcUa_Int32& sequence,
                             QlumTransferOutcome& outcome)
{
    const QString method = QStringLiteral("FetchTransferResultData");
    const std::array<UaVariant, 4> inputs{UaVariant(id), UaVariant(sequence), UaVariant(rowsPerFetch),
                                          UaVariant(false)};
    UaVariantArray outputs;
    const UaStatus status =
        call(device.parts.value(QStringLiteral("Transfer")), device.transferParts.value(method),
             method + QStringLiteral(": ") + device.name, inputs, outputs);
    const UaVariant answer = outputs.length() > 0 ? UaVariant(outputs[0]) : UaVariant();
    const UaExtensionObject object = answer.toExtensionObject();
    QlumContextReader reader(m_session, m_settings, m_isCancelled);
    reader.learn(answer);
    const QlumValueContext context = reader.of({});
    const UaStructureDefinition definition = qlumStructureDefinition(object, {}, context.dictionary.get());
    UaGenericStructureValue result;
    if (status.isBad())
        outcome.fault = qlumResultInWords(status);
    else if (definition.isNull() || result.decode(object, definition, context.dictionary.get()).isBad())
        outcome.fault = transferWords("the server's answer could not be read");
    if (!outcome.fault.isEmpty())
        return false;
    bool isError = false;
    const OpcUa_Int32 failed = result.value(UaString("Status")).toInt32(&isError);
    if (isError && !result.value(UaString("Status")).isNull()) {
        outcome.fault = qlumDeviceOutputWords(method, failed);
        return false;
    }
    sequence = result.value(UaString("SequenceNumber")).toInt32();
    if (!takeRows(result, context.dictionary.get(), outcome)) {
        outcome.fault = transferWords("there are more results than are kept");
        return false;
    }
    return !result.value(UaString("EndOfResults")).toBool();
}

bool QlumDeviceClient::takeRows(const UaGenericStructureValue& result, UaDataTypeDictionary* dictionary,
                                QlumTransferOutcome& outcome) const
{
    for (int field = 0; field < result.fieldCount(); ++field) {
        if (toQString(result.definition().field(field).name()) != QLatin1String("ParameterDefs"))
            continue;
        const auto count = static_cast<int>(result.value(field).elementCount());
        for (int i = 0; i < count; ++i) {
            if (outcome.rows.size() >= mostTransferRows)
                return false;
            const UaGenericStructureValue row = result.structure(field, i, dictionary);
            outcome.rows.push_back({nodePathText(row.value(UaString("NodePath"))),
                                    UaStatus(row.value(UaString("StatusCode")).toStatusCode())});
        }
    }
    return true;
}
