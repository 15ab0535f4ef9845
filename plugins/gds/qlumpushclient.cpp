// Calls, and what concerns the server's own certificates.
#include <plugins/gds/qlumpushclient.h>

#include <app/api/qlumcallnote.h>
#include <app/api/qlumserviceneed.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_crypto.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/gds/qlumpushwords.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/methodcall.h>
#include <uaclientsdk/secretbytes.h>

#include <QCoreApplication>
#include <QDateTime>

#include <memory>
#include <utility>

namespace {
constexpr int nonceBytes = 32;
constexpr OpcUa_UInt32 keyArgument = 5;

bool isGood(OpcUa_StatusCode status)
{
    return OpcUa_IsGood(status) != 0;
}

// A connection that ends this way has ended because of what was asked.
bool isBrokenConnection(const UaStatus& status)
{
    for (const OpcUa_StatusCode broken :
         {OpcUa_BadConnectionClosed, OpcUa_BadSecureChannelClosed, OpcUa_BadCommunicationError,
          OpcUa_BadSessionClosed, OpcUa_BadSecureChannelIdInvalid, OpcUa_BadConnectionRejected})
        if (status == broken)
            return true;
    return false;
}

bool setArguments(UaVariantArray& inputs, std::initializer_list<UaVariant> values)
{
    OpcUa_UInt32 next = 0;
    if (!inputs.create(static_cast<OpcUa_UInt32>(values.size())))
        return false;
    for (const UaVariant& value : values)
        if (!isGood(value.copyTo(&inputs[next++])))
            return false;
    return true;
}

UaVariant byteStrings(const std::vector<UaByteString>& values)
{
    UaByteStringArray elements(static_cast<OpcUa_UInt32>(values.size()));
    UaVariant variant;
    for (OpcUa_UInt32 i = 0; i < elements.length(); ++i)
        if (!isGood(values[i].copyTo(&elements[i])))
            return variant;
    static_cast<void>(variant.setArray(OpcUaType_ByteString, static_cast<OpcUa_Int32>(elements.length()),
                                       elements.rawData()));
    return variant;
}

// Straight to where it is wiped, with no copy on the way.
bool setSecret(OpcUa_Variant& argument, const UaClientSdk::SecretBytes& secret)
{
    const OpcUa_ByteString view = secret.view();
    argument.Datatype = OpcUaType_ByteString;
    argument.ArrayType = OpcUa_VariantArrayType_Scalar;
    return isGood(OpcUa_ByteString_Copy(&view, &argument.Value.ByteString));
}

UaStatus newNonce(UaByteString& nonce)
{
    OpcUa_ByteString bytes;
    OpcUa_ByteString_Initialize(&bytes);
    const OpcUa_StatusCode status = OpcUa_CryptoProvider_GenerateNonce(nonceBytes, &bytes);
    nonce.attach(&bytes);
    return UaStatus(status);
}

UaStatus boolOf(const UaVariantArray& outputs, bool& value)
{
    bool isThere = false;
    value = outputs.length() > 0 && UaVariant(outputs[0]).toBool(&isThere);
    return UaStatus(isThere ? OpcUa_Good : OpcUa_BadDecodingError);
}
} // namespace

QlumPushClient::QlumPushClient(QlumSessionServices& services, Manner manner)
    : m_services(services), m_manner(std::move(manner))
{
}

std::vector<QlumPushStep> QlumPushClient::takeSteps()
{
    return std::exchange(m_steps, {});
}

// ---- calls

QlumSessionServices::Settings QlumPushClient::settings(const char* purpose, const QString& words) const
{
    QlumSessionServices::Settings settings;
    settings.callTimeout = m_manner.callTimeout;
    settings.purpose = toUaString(qlumPurpose(purpose, words));
    return settings;
}

UaStatus QlumPushClient::call(Call call, UaVariantArray& outputs)
{
    UaStatus status;
    if (call.method.isNull()) {
        status = UaStatus(OpcUa_BadMethodInvalid);
    } else {
        QlumSessionServices::Settings how = settings(call.purpose, call.name);
        if (call.secret >= 0) {
            auto note = std::make_shared<QlumCallNote>();
            note->secretArguments.insert(call.secret);
            how.note = std::move(note);
        }
        UaClientSdk::CallIn in{call.object, call.method, std::move(call.inputs)};
        UaClientSdk::CallOut out;
        status = m_services.call(how, in, out);
        if (call.secret >= 0)
            UaClientSdk::SecretBytes::wipe(
                in.inputArguments[static_cast<OpcUa_UInt32>(call.secret)].Value.ByteString);
        if (status.isNotBad())
            status = out.callResult;
        outputs = std::move(out.outputArguments);
    }
    if (call.isRecorded || status.isBad())
        addStep(call, status);
    return status;
}

UaStatus QlumPushClient::call(Call call)
{
    UaVariantArray outputs;
    return this->call(std::move(call), outputs);
}

void QlumPushClient::addStep(const Call& call, const UaStatus& status)
{
    const QString what = call.what.isEmpty() ? call.name : call.name + QStringLiteral(": ") + call.what;
    m_steps.push_back({QDateTime::currentDateTime(), what, status, qlumPushWords(call.name, status)});
}

QlumPushClient::Call QlumPushClient::serverCall(const QlumPushServer& server, const char* method,
                                                const QString& what) const
{
    const QString name = QLatin1String(method);
    return {server.object, server.methods.value(name), name, what, QlumPurpose::serverConfiguration, {}};
}

// ---- the server's own certificates

UaStatus QlumPushClient::createSigningRequest(const QlumPushServer& server, const QlumSigningWish& wish,
                                              UaByteString& request)
{
    UaByteString nonce;
    if (wish.isNewKey)
        if (const UaStatus status = newNonce(nonce); status.isBad())
            return status;
    Call made = serverCall(server, "CreateSigningRequest", wish.subject);
    const UaString subject = wish.subject.isEmpty() ? UaString() : toUaString(wish.subject);
    if (!setArguments(made.inputs, {UaVariant(wish.group), UaVariant(wish.type), UaVariant(subject),
                                    UaVariant(wish.isNewKey), UaVariant(nonce)}))
        return UaStatus(OpcUa_BadOutOfMemory);
    UaVariantArray outputs;
    const UaStatus status = call(std::move(made), outputs);
    if (status.isBad())
        return status;
    bool isThere = false;
    request = outputs.length() > 0 ? UaVariant(outputs[0]).toByteString(&isThere) : UaByteString();
    return UaStatus(isThere && !request.isEmpty() ? OpcUa_Good : OpcUa_BadDecodingError);
}

UaStatus QlumPushClient::updateCertificate(const QlumPushServer& server, const QlumCertificateUpdate& update,
                                           bool& isApplyRequired)
{
    Call made = serverCall(server, "UpdateCertificate", update.key ? update.keyFormat : QString());
    if (update.key && server.mode != OpcUa_MessageSecurityMode_SignAndEncrypt) {
        const UaStatus refused(OpcUa_BadSecurityModeInsufficient);
        addStep(made, refused);
        return refused;
    }
    if (!setArguments(made.inputs, {UaVariant(update.group), UaVariant(update.type),
                                    UaVariant(update.certificate), byteStrings(update.issuers),
                                    UaVariant(update.key ? toUaString(update.keyFormat) : UaString()),
                                    UaVariant(UaByteString())}))
        return UaStatus(OpcUa_BadOutOfMemory);
    if (update.key) {
        made.secret = keyArgument;
        if (!setSecret(made.inputs[keyArgument], *update.key))
            return UaStatus(OpcUa_BadOutOfMemory);
    }
    UaVariantArray outputs;
    const UaStatus status = call(std::move(made), outputs);
    return status.isBad() ? status : boolOf(outputs, isApplyRequired);
}

UaStatus QlumPushClient::applyChanges(const QlumPushServer& server)
{
    return callLast(serverCall(server, "ApplyChanges", QString()));
}

// The server may take it for a reason to close its connections.
UaStatus QlumPushClient::callLast(Call made)
{
    const UaStatus status = call(std::move(made));
    if (!isBrokenConnection(status))
        return status;
    m_steps.back().words =
        QCoreApplication::translate("QlumPushClient", "the server has closed the connection, as expected");
    return {};
}

UaStatus QlumPushClient::cancelChanges(const QlumPushServer& server)
{
    return call(serverCall(server, "CancelChanges", QString()));
}

UaStatus QlumPushClient::resetToServerDefaults(const QlumPushServer& server)
{
    return callLast(serverCall(server, "ResetToServerDefaults", QString()));
}

UaStatus QlumPushClient::rejectedList(const QlumPushServer& server, std::vector<UaByteString>& certificates)
{
    UaVariantArray outputs;
    const UaStatus status = call(serverCall(server, "GetRejectedList", QString()), outputs);
    if (status.isBad())
        return status;
    certificates.clear();
    const UaVariant list = outputs.length() > 0 ? UaVariant(outputs[0]) : UaVariant();
    if (list.isNull())
        return {};
    if (list.type() != OpcUaType_ByteString || !list.isArray())
        return UaStatus(OpcUa_BadDecodingError);
    for (OpcUa_UInt32 i = 0; i < list.elementCount(); ++i)
        certificates.push_back(list.at(i).toByteString());
    return {};
}
