// From an order to a certificate on the server: the conversation and our authority together.
#pragma once
#include <app/api/qlumsecret.h>
#include <certificates/qlumcertificatestoreconfiguration.h>
#include <plugins/gds/qlumpushclient.h>
#include <plugins/gds/qlumpushdata.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>

#include <QString>

#include <functional>

/// What came of it.
struct QlumPushSigned
{
    UaByteString certificate; ///< as it was sent; empty when it came not so far
    bool isApplyRequired = false;
    QString fault; ///< in words; empty when the server has taken it
};

/// Folder of the authority of this computer, apart from the stores.
[[nodiscard]] QString qlumAuthorityFolder();

/// False when the file cannot be written.
[[nodiscard]] bool qlumWriteDer(const QString& path, const UaByteString& der);
/// Writes the certificate and the revocation list of the authority to a folder. False when that fails.
[[nodiscard]] bool qlumWriteAuthority(const QString& authority, const QString& folder);
/// Puts both among the issuers of a store: chains with them are complete then, and nobody is trusted by that.
[[nodiscard]] bool qlumKnowAuthority(const QString& authority,
                                     const QlumCertificateStoreConfiguration& store);

/// Has our authority sign what was ordered, and sends it with the authority's certificate as its chain.
/// current: the certificate that the server uses now, which tells its names. For a job.
[[nodiscard]] QlumPushSigned qlumSignForServer(QlumPushClient& client, const QlumPushServer& server,
                                               const QlumPushOrder& order, const UaPkiCertificate& current,
                                               const QString& folder, const QlumSecretText& password,
                                               const std::function<bool()>& isCancelled);
/// Why the certificate of that file can hardly be meant for the server, in a sentence; empty when nothing
/// speaks against it. Not every server looks, and one with a certificate that is not of its key cannot be
/// reached any more. The request is the last one that the server has made, empty for none.
[[nodiscard]] QString qlumAnswerDoubt(const QString& path, const UaByteString& request,
                                      const UaPkiCertificate& current);
/// Sends a certificate of a file, with those that follow it there as its chain.
[[nodiscard]] QlumPushSigned qlumSendAnswer(QlumPushClient& client, const QlumPushServer& server,
                                            const QlumPushOrder& order, const QString& path);
