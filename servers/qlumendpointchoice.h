#pragma once
#include <servers/qlumendpoint.h>

#include <QString>
#include <QUrl>
#include <QVector>

/// Which of a server's endpoints a connection will use.
struct QlumEndpointChoice
{
    enum Match {
        NoMatch,  ///< none has the wanted scheme, policy and mode
        OtherUrl, ///< none fits the URL; the first with scheme, policy and mode stands in
        Exact
    };
    Match match = NoMatch;
    int index = -1;         ///< of the chosen endpoint
    QVector<int> qualified; ///< those with scheme, policy and mode that were looked at, in order
};

/// Host names are not compared: servers often name themselves otherwise than their users do.
[[nodiscard]] QlumEndpointChoice qlumChooseEndpoint(const QVector<QlumEndpoint>& endpoints,
                                                    const QString& url, const QString& securityPolicyUri,
                                                    int securityMode);
/// URI of the policy at the endpoint with that scheme and mode that the server thinks most of; empty for
/// none.
[[nodiscard]] QString qlumBestPolicy(const QVector<QlumEndpoint>& endpoints, const QString& url,
                                     int securityMode);
/// Asks for another security than the endpoint has. A mode of 0 keeps that; an empty policy keeps the
/// endpoint's where that goes with the mode, else it becomes empty: the best for the mode.
void qlumSetSecurity(QlumEndpoint& endpoint, int securityMode, const QString& securityPolicyUri);

/// What the user means: "server", "server:4841" and "opc.tcp://server" are all addresses; the scheme in lower
/// case.
[[nodiscard]] QString qlumCompleteUrl(const QString& text);
/// Whether it can be dialled: a host, over TCP or HTTPS.
[[nodiscard]] bool qlumIsUsableUrl(const QString& url);
/// Where to reach an endpoint that was listed under the asked URL. The server may call itself by a name that
/// nobody knows here, and by a port or path that are others outside of its network: what none of the
/// endpoints has of the asked URL stands for what they have.
[[nodiscard]] QString qlumDialledUrl(const QVector<QlumEndpoint>& endpoints, const QString& chosenUrl,
                                     const QString& askedUrl);
/// "plc:4840": host and port, the default port where the URL has none; empty for one without a host.
[[nodiscard]] QString qlumAuthority(const QUrl& url);
/// Whether the text is such a host, the port being optional.
[[nodiscard]] bool qlumIsAuthority(const QString& text);
/// The URL with that host and port instead of its own; unchanged when the text is none.
[[nodiscard]] QString qlumUrlAtHost(const QString& url, const QString& authority);
/// The one to propose: at the asked scheme, host and port, then of the best level, then with the stronger
/// mode; -1 when none can be used.
[[nodiscard]] int qlumPreferredEndpoint(const QVector<QlumEndpoint>& endpoints, const QString& askedUrl);
/// Why this program cannot connect to it, for the user; empty when it can.
[[nodiscard]] QString qlumWhyUnsupported(const QlumEndpoint& endpoint);
