#pragma once
#include <servers/qlumendpoint.h>

#include <QString>
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
