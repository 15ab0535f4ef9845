#pragma once
#include <uabase/values/uaarrays.h>

#include <QByteArray>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVector>

struct OpcUa_EndpointDescription;

/// One way in which a user may prove who he is (OPC 10000-4, 7.42).
struct QlumUserTokenPolicy
{
    QString policyId;
    int tokenType = 0; ///< OpcUa_UserTokenType
    QString issuedTokenType;
    QString issuerEndpointUrl;
    QString securityPolicyUri; ///< empty: that of the channel

    friend bool operator==(const QlumUserTokenPolicy&, const QlumUserTokenPolicy&) = default;
};

/// An endpoint as a server describes it (OPC 10000-4, 7.14). A value: it may cross threads.
struct QlumEndpoint
{
    QString url;
    QString applicationUri;
    QString productUri;
    QString applicationNameLocale;
    QString applicationName;
    int applicationType = 0; ///< OpcUa_ApplicationType
    QString gatewayServerUri;
    QString discoveryProfileUri;
    QStringList discoveryUrls;
    QByteArray serverCertificate; ///< DER, may be a chain
    int securityMode = 1;         ///< OpcUa_MessageSecurityMode; 0 is invalid and matches no endpoint
    QString securityPolicyUri;
    QVector<QlumUserTokenPolicy> userTokens;
    QString transportProfileUri;
    int securityLevel = 0; ///< 0 to 255, higher is better

    friend bool operator==(const QlumEndpoint&, const QlumEndpoint&) = default;
};
Q_DECLARE_METATYPE(QVector<QlumEndpoint>)

/// Bounds for what servers and files may say of an endpoint.
namespace QlumEndpointLimits {
inline constexpr int endpoints = 1000;
inline constexpr int discoveryUrls = 100;
inline constexpr int userTokens = 100;
inline constexpr int textLength = 4096; // the longest URL of the protocol
inline constexpr int certificateSize = 256 * 1024;
} // namespace QlumEndpointLimits

/// The stack's structure as a value, cut to the limits.
[[nodiscard]] QlumEndpoint qlumEndpoint(const OpcUa_EndpointDescription& description);
/// The scheme in lower case, static; empty when it is none of those that the stack knows.
[[nodiscard]] QLatin1String qlumSchemeOf(const QString& url);
/// What of endpoints a session compares with those that the server names later; empty for want of memory.
[[nodiscard]] UaEndpointDescriptions qlumEndpointDescriptions(const QVector<QlumEndpoint>& endpoints);
/// "None", "Basic256Sha256"...: what follows the '#' of a policy URI, else the URI itself.
[[nodiscard]] QString qlumPolicyName(const QString& securityPolicyUri);
/// "None", "Sign", "SignAndEncrypt"; "Invalid" otherwise.
[[nodiscard]] QString qlumSecurityModeName(int securityMode);
/// What its messages are protected against, and how well.
enum class QlumEndpointProtection {
    None,
    Deprecated, ///< by algorithms that are no longer thought safe
    SignedOnly, ///< who records them can read them
    Full
};
[[nodiscard]] QlumEndpointProtection qlumEndpointProtection(const QlumEndpoint& endpoint);
/// "TCP", "HTTPS"..., by the profile, else by the URL; for the user.
[[nodiscard]] QString qlumTransportName(const QlumEndpoint& endpoint);
/// "Anonymous, User name": the kinds of users that it takes, each once; for the user.
[[nodiscard]] QString qlumTokenNames(const QlumEndpoint& endpoint);
/// The URI of the policy that secures nothing.
[[nodiscard]] QString qlumPolicyNone();
/// URI of the policy by which a password would be encrypted at that endpoint; None when it would not be.
[[nodiscard]] QString qlumPasswordPolicy(const QlumEndpoint& endpoint);
/// Whether a password would go to the server as clear text: neither encrypted itself nor on a connection that
/// encrypts everything.
[[nodiscard]] bool qlumSendsClearPassword(const QlumEndpoint& endpoint);
/// Whether whoever answers in the server's place could read a password: it would be clear text, or encrypted
/// with a certificate that nobody has seen before.
[[nodiscard]] bool qlumSendsUnprotectedPassword(const QlumEndpoint& endpoint);
