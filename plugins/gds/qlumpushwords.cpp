#include <plugins/gds/qlumpushwords.h>

#include <app/api/qlumserverrole.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>

#include <QCoreApplication>
#include <QLatin1String>

#define WORDS(text) QT_TRANSLATE_NOOP("QlumPushWords", text)

namespace {
struct PushMeaning
{
    const char* method; // null: any
    OpcUa_StatusCode status;
    const char* words;
};

constexpr PushMeaning pushMeanings[] = {
    {"ApplyChanges", OpcUa_BadNothingToDo, WORDS("there is no change that waits to be applied")},
    {"ApplyChanges", OpcUa_BadTimeout,
     WORDS("the server has not answered; refresh to see which certificate it uses now")},
    {"CancelChanges", OpcUa_BadNothingToDo, WORDS("there is no change that could be cancelled")},
    {"UpdateCertificate", OpcUa_BadInvalidArgument,
     WORDS("the server does not know the certificate group or type")},
    {"UpdateCertificate", OpcUa_BadCertificateInvalid,
     WORDS("the certificate is not valid, or not of the type that is asked for")},
    {"UpdateCertificate", OpcUa_BadNotSupported,
     WORDS("the server does not take private keys of this format, or no keys at all")},
    {"UpdateCertificate", OpcUa_BadSecurityChecksFailed,
     WORDS("the certificate does not pass the checks of the server: it does not belong to its key, or its "
           "issuers are not all there")},
    {"UpdateCertificate", OpcUa_BadCertificateUriInvalid,
     WORDS("the certificate names another application URI than that of the server")},
    {"UpdateCertificate", OpcUa_BadCertificateChainIncomplete,
     WORDS("an issuer of the certificate is missing")},
    {"CreateSigningRequest", OpcUa_BadInvalidArgument,
     WORDS("the server does not accept the certificate group, the type, the subject or the nonce")},
    {"CreateSigningRequest", OpcUa_BadNotSupported,
     WORDS("the server cannot make keys for certificates of this type")},
    {"AddCertificate", OpcUa_BadCertificateInvalid,
     WORDS("the certificate is not valid, or an issuer that it needs is not in the list")},
    {"AddCertificate", OpcUa_BadInvalidState, WORDS("somebody has the trust list open for writing")},
    {"RemoveCertificate", OpcUa_BadInvalidState, WORDS("somebody has the trust list open for writing")},
    {"RemoveCertificate", OpcUa_BadInvalidArgument, WORDS("the list has no such certificate (any more)")},
    {"RemoveCertificate", OpcUa_BadCertificateChainIncomplete,
     WORDS("another certificate of the list needs this one for its chain")},
    {"Open", OpcUa_BadNotWritable, WORDS("somebody has the trust list open already")},
    {"Open", OpcUa_BadInvalidState, WORDS("somebody has the trust list open for writing")},
    {"OpenWithMasks", OpcUa_BadInvalidState, WORDS("somebody has the trust list open for writing")},
    {"OpenWithMasks", OpcUa_BadNotReadable, WORDS("somebody has the trust list open for writing")},
    {"Read", OpcUa_BadInvalidArgument, WORDS("the server does not know the opened file any more")},
    {"Write", OpcUa_BadInvalidArgument, WORDS("the server does not know the opened file any more")},
    {"CloseAndUpdate", OpcUa_BadInvalidArgument, WORDS("the server does not know the opened file any more")},
    {"CloseAndUpdate", OpcUa_BadCertificateInvalid,
     WORDS("the server has found certificates or revocation lists that it does not accept")},
    {nullptr, OpcUa_BadEncodingLimitsExceeded, WORDS("the trust list is larger than the server allows")},
    {nullptr, OpcUa_BadUserAccessDenied,
     WORDS("this user may not configure the server; connect as an administrator")},
    {nullptr, OpcUa_BadSecurityModeInsufficient,
     WORDS("the server allows this on connections with SignAndEncrypt only")},
    {nullptr, OpcUa_BadTransactionPending,
     WORDS("another session has changes there that are not applied yet")},
    {nullptr, OpcUa_BadMethodInvalid, WORDS("the server has no such method")},
    {nullptr, OpcUa_BadNotImplemented, WORDS("the server has the method but does nothing with it")},
    {nullptr, OpcUa_BadNotExecutable, WORDS("the method cannot be called at the moment")},
    {nullptr, OpcUa_BadDecodingError, WORDS("the server has answered something that cannot be read")},
};

const PushMeaning* meaningOf(const QString& method, const UaStatus& status)
{
    for (const PushMeaning& meaning : pushMeanings)
        if (status == meaning.status && (!meaning.method || method == QLatin1String(meaning.method)))
            return &meaning;
    return nullptr;
}
} // namespace

QString qlumPushWords(const QString& method, const UaStatus& status)
{
    // what we did not send the server has not judged
    const PushMeaning* meaning = qlumRefusingRole(status) ? nullptr : meaningOf(method, status);
    if (!meaning)
        return qlumResultInWords(status);
    return qlumResultText(status) + QStringLiteral(": ") +
           QCoreApplication::translate("QlumPushWords", meaning->words);
}

bool qlumPushIsOfServer(const UaStatus& status)
{
    return !qlumRefusingRole(status).has_value();
}
