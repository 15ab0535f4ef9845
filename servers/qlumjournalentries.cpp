#include <servers/qlumjournalentries.h>

#include <app/api/qlumcallnote.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumsecretfields.h>
#include <app/api/qlumserviceneed.h>
#include <app/api/qlumstructuretree.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <QByteArray>
#include <QCryptographicHash>
#include <QLatin1String>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <span>
#include <utility>

namespace {
using UaClientSdk::ServiceCall;
using Entries = std::vector<QlumJournalEntry>;

template <typename Item>
std::span<const Item> itemsOf(OpcUa_Int32 count, const Item* items)
{
    return {items, static_cast<std::size_t>(std::max(count, 0))};
}

QString idText(const OpcUa_NodeId& id)
{
    return qlumCutText(qlumSingleLine(toQString(UaNodeId(id).toString())));
}

const QlumCallNote* noteOf(const ServiceCall& call)
{
    return dynamic_cast<const QlumCallNote*>(call.note);
}

// Items of large calls come in blocks, so their place says nothing; the next one is mostly where it was
// found.
class ShownValues
{
public:
    explicit ShownValues(const QlumCallNote* note)
        : m_shown(note ? std::span(note->shown) : std::span<const QlumCallNote::Shown>())
    {
    }

    const QlumCallNote::Shown* find(const OpcUa_WriteValue& item)
    {
        const UaNodeId id(item.NodeId);
        for (std::size_t i = 0; i < m_shown.size(); ++i) {
            const QlumCallNote::Shown& candidate = m_shown[(m_next + i) % m_shown.size()];
            if (candidate.attributeId == item.AttributeId && candidate.nodeId == id) {
                m_next += i + 1;
                return &candidate;
            }
        }
        return nullptr;
    }

private:
    const std::span<const QlumCallNote::Shown> m_shown;
    std::size_t m_next = 0;
};

Entries writes(const ServiceCall& call)
{
    const auto& request = *static_cast<const OpcUa_WriteRequest*>(call.request);
    const QlumCallNote* note = noteOf(call);
    ShownValues shown(note);
    Entries entries;
    for (const OpcUa_WriteValue& item : itemsOf(request.NoOfNodesToWrite, request.NodesToWrite)) {
        QlumJournalEntry entry;
        const QlumCallNote::Shown* before = shown.find(item);
        const QString name = before && !before->name.isEmpty() ? before->name + QLatin1Char(' ') : QString();
        entry.what =
            QStringLiteral("%1%2, %3")
                .arg(name, idText(item.NodeId), QLatin1String(OpcUa_AttributeId_Name(item.AttributeId)));
        if (item.IndexRange.Length > 0)
            entry.what += QStringLiteral(" [%1]").arg(toQString(UaString(item.IndexRange)));
        const bool isSecret = qlumIsSecretNode(item.NodeId, note);
        entry.after = isSecret ? qlumBlanked() : qlumBlankedText(item.Value.Value);
        if (before && !before->value.isNull())
            entry.before = isSecret ? qlumBlanked() : qlumBlankedText(*before->value.get());
        entries.push_back(std::move(entry));
    }
    return entries;
}

Entries calls(const ServiceCall& call)
{
    const auto& request = *static_cast<const OpcUa_CallRequest*>(call.request);
    Entries entries;
    for (const OpcUa_CallMethodRequest& method : itemsOf(request.NoOfMethodsToCall, request.MethodsToCall)) {
        QStringList arguments;
        for (OpcUa_Int32 i = 0; i < method.NoOfInputArguments; ++i)
            arguments.append(qlumIsSecretArgument(method, i, call.purpose, noteOf(call))
                                 ? qlumBlanked()
                                 : qlumBlankedText(method.InputArguments[i]));
        QlumJournalEntry entry;
        entry.what = QStringLiteral("%1 @ %2").arg(idText(method.MethodId), idText(method.ObjectId));
        entry.after = qlumCutText(arguments.join(QLatin1String(", ")), 1000);
        entries.push_back(std::move(entry));
    }
    return entries;
}

// Of the services whose items are told by their fields: the first array of the request.
Entries fields(const ServiceCall& call)
{
    Entries entries;
    for (const QlumFieldText& field :
         qlumFieldTexts(call.type, call.request, {call.purpose, noteOf(call)}).children) {
        if (!field.type.contains(QLatin1Char('[')))
            continue;
        for (const QlumFieldText& item : field.children) {
            QlumJournalEntry entry;
            entry.what = qlumFieldLine(item);
            entries.push_back(std::move(entry));
        }
        if (!entries.empty())
            break;
    }
    return entries;
}

template <typename Response>
std::vector<OpcUa_StatusCode> codesOf(const void* response)
{
    const auto& answer = *static_cast<const Response*>(response);
    std::vector<OpcUa_StatusCode> codes;
    for (OpcUa_Int32 i = 0; i < answer.NoOfResults; ++i)
        if constexpr (requires { answer.Results[0].StatusCode; })
            codes.push_back(answer.Results[i].StatusCode);
        else
            codes.push_back(answer.Results[i]);
    return codes;
}

std::vector<OpcUa_StatusCode> resultsOf(const OpcUa_EncodeableType& type, const void* response)
{
    switch (type.TypeId) {
    case OpcUaId_WriteResponse:
        return codesOf<OpcUa_WriteResponse>(response);
    case OpcUaId_CallResponse:
        return codesOf<OpcUa_CallResponse>(response);
    case OpcUaId_HistoryUpdateResponse:
        return codesOf<OpcUa_HistoryUpdateResponse>(response);
    case OpcUaId_AddNodesResponse:
        return codesOf<OpcUa_AddNodesResponse>(response);
    case OpcUaId_AddReferencesResponse:
        return codesOf<OpcUa_AddReferencesResponse>(response);
    case OpcUaId_DeleteNodesResponse:
        return codesOf<OpcUa_DeleteNodesResponse>(response);
    case OpcUaId_DeleteReferencesResponse:
        return codesOf<OpcUa_DeleteReferencesResponse>(response);
    default:
        return {};
    }
}
} // namespace

std::vector<QlumJournalEntry> qlumJournalEntries(const ServiceCall& call)
{
    Entries entries;
    if (call.type.TypeId == OpcUaId_WriteRequest)
        entries = writes(call);
    else if (call.type.TypeId == OpcUaId_CallRequest)
        entries = calls(call);
    else
        entries = fields(call);
    if (entries.empty())
        entries.emplace_back();
    for (QlumJournalEntry& entry : entries) {
        entry.service = qlumServiceName(call.type);
        entry.purpose = qlumPurposeWords(toQString(call.purpose));
    }
    return entries;
}

void qlumTakeOutcome(std::vector<QlumJournalEntry>& entries, const UaClientSdk::ServiceOutcome& outcome)
{
    std::vector<OpcUa_StatusCode> results;
    if (outcome.response && outcome.status.isNotBad())
        results = resultsOf(*outcome.type, outcome.response);
    for (std::size_t i = 0; i < entries.size(); ++i)
        entries[i].status = qlumStatusText(i < results.size() ? results[i] : outcome.status.statusCode());
}

QString qlumUserOf(const OpcUa_ActivateSessionRequest& request)
{
    const OpcUa_ExtensionObject& token = request.UserIdentityToken;
    if (token.Encoding != OpcUa_ExtensionObjectEncoding_EncodeableObject)
        return {};
    const void* object = token.Body.EncodeableObject.Object;
    switch (token.Body.EncodeableObject.Type->TypeId) {
    case OpcUaId_UserNameIdentityToken:
        return toQString(UaString(static_cast<const OpcUa_UserNameIdentityToken*>(object)->UserName));
    case OpcUaId_X509IdentityToken: {
        const OpcUa_ByteString& der = static_cast<const OpcUa_X509IdentityToken*>(object)->CertificateData;
        const QByteArray bytes(reinterpret_cast<const char*>(der.Data), std::max(der.Length, 0));
        return QLatin1String(QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex());
    }
    case OpcUaId_IssuedIdentityToken:
        return QStringLiteral("token");
    default:
        return {};
    }
}
