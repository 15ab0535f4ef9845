// A server with a configuration object, as a table whose methods note each call.
#pragma once
#include <app/api/qlumserverrole.h>
#include <app/api/qlumserviceneed.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/gds/qlumtrustlist.h>
#include <tests/support/tableservices.h>
#include <tests/support/testcertificates.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/servicewatch.h>

#include <QString>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

inline UaByteString pushDer(const testcertificates::Der& der)
{
    return UaByteString(std::span<const OpcUa_Byte>(der.data(), der.size()));
}

/// A certificate of that name, signed by itself or by the issuer, with a key of its own.
inline UaByteString pushCertificate(const std::string& name, const std::string& issuer = {},
                                    bool isAuthority = false)
{
    testcertificates::Recipe recipe;
    recipe.name = name;
    recipe.pair = testcertificates::key(2048, name);
    recipe.authority = isAuthority;
    if (!issuer.empty()) {
        recipe.issuer = issuer;
        recipe.issuerPair = testcertificates::key(2048, issuer);
    }
    return pushDer(testcertificates::make(recipe));
}

/// What is called stands in journal, with what tells one call from the next; a method that is to fail answers
/// the status that failures has for it. The methods have ids of the server's own.
class PushWorld : public TableServices
{
public:
    PushWorld()
    {
        table.object(configuration, "ServerConfiguration", UaNodeId(OpcUaId_Server));
        stateFacts();
        method(configuration, "GetRejectedList", 0, 1,
               [this](const UaVariantArray&, UaVariantArray& out) { return set(out[0], rejected); });
        method(configuration, "CreateSigningRequest", 5, 1,
               [this](const UaVariantArray& in, UaVariantArray& out) {
                   nonce = UaVariant(in[4]).toByteString();
                   return UaVariant(UaByteString::fromHex("3003020101")).copyTo(&out[0]);
               });
        method(configuration, "UpdateCertificate", 6, 1,
               [this](const UaVariantArray& in, UaVariantArray& out) {
                   update = UaVariant(in[2]).toByteString();
                   issuers.clear();
                   for (OpcUa_UInt32 i = 0; i < UaVariant(in[3]).elementCount(); ++i)
                       issuers.push_back(UaVariant(in[3]).at(i).toByteString());
                   key = UaVariant(in[5]).toByteString();
                   return UaVariant(isApplyRequired).copyTo(&out[0]);
               });
        for (const char* const name : {"ApplyChanges", "CancelChanges", "ResetToServerDefaults"})
            method(configuration, name, 0, 0, [](auto&, auto&) { return OpcUa_Good; });
        const UaNodeId groups = below(configuration, "CertificateGroups");
        table.object(groups, "CertificateGroups", configuration);
        table.object(group, "DefaultApplicationGroup", groups);
        stateTypes();
        table.object(trustList, "TrustList", group);
        table.variable(below(trustList, "LastUpdateTime"), "LastUpdateTime",
                       UaVariant(UaDateTime::fromTime_t(1'700'000'000)), trustList);
        trustListMethods();
    }

    const UaNodeId configuration = UaNodeId("Configuration", 2);
    const UaNodeId group = UaNodeId("Group", 2);
    const UaNodeId trustList = UaNodeId("TrustList", 2);
    const UaNodeId type = UaNodeId(OpcUaId_RsaSha256ApplicationCertificateType);

    QStringList journal;
    std::map<std::string, OpcUa_StatusCode> failures;
    std::map<std::string, int> failsFrom; ///< the failure begins with that call of the method
    QlumServerRole role = QlumServerRole::Commission;
    QlumTrustList list;
    std::vector<UaByteString> rejected;
    UaByteString nonce;
    UaByteString update;
    std::vector<UaByteString> issuers; ///< that came with it
    UaByteString key;
    UaByteString written;
    bool isApplyRequired = true;

    /// The role is kept as the guard of a session does it.
    UaStatus call(Settings& settings, const UaClientSdk::CallIn& callIn,
                  UaClientSdk::CallOut& callOut) override
    {
        OpcUa_CallMethodRequest method{};
        method.ObjectId = *callIn.objectId.get();
        method.MethodId = *callIn.methodId.get();
        method.NoOfInputArguments = static_cast<OpcUa_Int32>(callIn.inputArguments.length());
        method.InputArguments = const_cast<OpcUa_Variant*>(callIn.inputArguments.rawData());
        OpcUa_CallRequest request{};
        request.NoOfMethodsToCall = 1;
        request.MethodsToCall = &method;
        const UaClientSdk::ServiceCall asked{OpcUa_CallRequest_EncodeableType, &request, settings.purpose,
                                             nullptr};
        if (qlumNeedOf(asked, {}) > role)
            return qlumRefusal(role);
        return TableServices::call(settings, callIn, callOut);
    }
    /// Each call once, in its order, with how often it came in a row.
    [[nodiscard]] std::string order() const { return journal.join(QStringLiteral(" ")).toStdString(); }

    static UaNodeId below(const UaNodeId& object, const char* name)
    {
        return UaNodeId((object.toXmlString().toStdString() + '.' + name).c_str(), 2);
    }
    static OpcUa_StatusCode set(OpcUa_Variant& out, const std::vector<UaByteString>& values)
    {
        UaByteStringArray strings(static_cast<OpcUa_UInt32>(values.size()));
        for (OpcUa_UInt32 i = 0; i < strings.length(); ++i)
            if (OpcUa_IsBad(values[i].copyTo(&strings[i])))
                return OpcUa_BadOutOfMemory;
        UaVariant value;
        static_cast<void>(value.setArray(OpcUaType_ByteString, static_cast<OpcUa_Int32>(strings.length()),
                                         strings.rawData()));
        return value.copyTo(&out);
    }

private:
    using Run = std::function<OpcUa_StatusCode(const UaVariantArray&, UaVariantArray&)>;

    void method(const UaNodeId& object, const char* name, std::size_t inputs, std::size_t outputs, Run run,
                bool isNoted = true)
    {
        NodeTable::Method made;
        made.inputs.assign(inputs, {"in", UaNodeId(24)});
        made.outputs.assign(outputs, {"out", UaNodeId(24)});
        made.run = [this, name = std::string(name), run, isNoted](const UaVariantArray& in,
                                                                  UaVariantArray& out) {
            if (isNoted)
                journal.append(QString::fromStdString(name));
            const int number = ++m_calls[name];
            if (const auto failure = failures.find(name); failure != failures.end())
                if (const auto from = failsFrom.find(name); from == failsFrom.end() || number >= from->second)
                    return failure->second;
            return run(in, out);
        };
        table.method(below(object, name), name, object, made);
    }
    void stateFacts()
    {
        const auto state = [this](const char* name, const UaVariant& value) {
            table.variable(below(configuration, name), name, value, configuration);
        };
        UaStringArray texts(1);
        static_cast<void>(UaString("PEM").copyTo(&texts[0]));
        UaVariant formats;
        formats.setStringArray(texts);
        state("SupportedPrivateKeyFormats", formats);
        state("ServerCapabilities", formats);
        state("MaxTrustListSize", UaVariant(OpcUa_UInt32{100'000}));
        state("MulticastDnsEnabled", UaVariant(false));
        table.variable(UaNodeId(OpcUaId_Server_ServerCapabilities_MaxByteStringLength), "MaxByteStringLength",
                       UaVariant(OpcUa_UInt32{700}), UaNodeId());
    }
    void stateTypes()
    {
        UaNodeIdArray ids(1);
        static_cast<void>(type.copyTo(&ids[0]));
        UaVariant value;
        static_cast<void>(value.setArray(OpcUaType_NodeId, 1, ids.rawData()));
        table.variable(below(group, "CertificateTypes"), "CertificateTypes", value, group);
    }
    void trustListMethods()
    {
        method(trustList, "OpenWithMasks", 1, 1, [this](const UaVariantArray& in, UaVariantArray& out) {
            QlumTrustList asked = list;
            asked.lists = UaVariant(in[0]).toUInt32();
            m_at = 0;
            return qlumEncodeTrustList(asked, m_content).isGood() ? UaVariant(handle).copyTo(&out[0])
                                                                  : OpcUa_BadInternalError;
        });
        method(trustList, "Open", 1, 1, [this](const UaVariantArray& in, UaVariantArray& out) {
            m_received.clear();
            return UaVariant(in[0]).toByte() == 6 ? UaVariant(handle).copyTo(&out[0]) : OpcUa_BadNotSupported;
        });
        method(trustList, "Read", 2, 1, [this](const UaVariantArray& in, UaVariantArray& out) {
            const std::string_view rest = m_content.view().substr(m_at);
            const std::size_t length =
                std::min(rest.size(), static_cast<std::size_t>(UaVariant(in[1]).toInt32()));
            m_at += length;
            const UaByteString piece(static_cast<OpcUa_Int32>(length),
                                     reinterpret_cast<const OpcUa_Byte*>(rest.data()));
            return UaVariant(in[0]).toUInt32() == handle ? UaVariant(piece).copyTo(&out[0])
                                                         : OpcUa_BadInvalidArgument;
        });
        method(trustList, "Write", 2, 0, [this](const UaVariantArray& in, UaVariantArray&) {
            m_received += UaVariant(in[1]).toByteString().view();
            return UaVariant(in[1]).toByteString().length() <= 700 ? OpcUa_Good : OpcUa_BadRequestTooLarge;
        });
        method(
            trustList, "CloseAndUpdate", 1, 1,
            [this](const UaVariantArray&, UaVariantArray& out) {
                written = UaByteString(static_cast<OpcUa_Int32>(m_received.size()),
                                       reinterpret_cast<const OpcUa_Byte*>(m_received.data()));
                return UaVariant(isApplyRequired).copyTo(&out[0]);
            });
        method(trustList, "Close", 1, 0, [](auto&, auto&) { return OpcUa_Good; });
        method(
            trustList, "AddCertificate", 2, 0,
            [this](const UaVariantArray& in, UaVariantArray&) {
                list[UaVariant(in[1]).toBool() ? QlumTrustPart::Trusted : QlumTrustPart::Issuers].push_back(
                    UaVariant(in[0]).toByteString());
                return OpcUa_Good;
            });
        method(trustList, "RemoveCertificate", 2, 0, [this](const UaVariantArray& in, UaVariantArray&) {
            auto& part = list[UaVariant(in[1]).toBool() ? QlumTrustPart::Trusted : QlumTrustPart::Issuers];
            return std::erase_if(part,
                                 [&](const UaByteString& der) {
                                     return UaPkiCertificate::fromDER(der).thumbPrint().toHex() ==
                                            UaVariant(in[0]).toString();
                                 }) > 0
                       ? OpcUa_Good
                       : OpcUa_BadInvalidArgument;
        });
    }

    static constexpr OpcUa_UInt32 handle = 41;
    UaByteString m_content;
    std::size_t m_at = 0;
    std::string m_received;
    std::map<std::string, int> m_calls;
};
