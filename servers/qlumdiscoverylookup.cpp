#include <servers/qlumdiscoverylookup.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <opcua/opcua_types.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumpkifolders.h>
#include <servers/qlumserviceguard.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/sessionconnectinfo.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uaclientsdk/uadiscovery.h>

#include <QString>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <memory>
#include <utility>

namespace {
using UaClientSdk::UaDiscovery;

QString toldText(const OpcUa_String& text, int longest)
{
    return toQString(UaString(text)).left(longest);
}

QString joinedText(const OpcUa_String* texts, int count)
{
    QStringList parts;
    for (int i = 0; i < std::min(count, QlumDiscoveryLimits::urlsOfServer); ++i)
        parts.append(toldText(texts[i], QlumDiscoveryLimits::nameLength));
    return parts.join(QLatin1String(", "));
}

bool hasRoom(const QlumDiscoveryAnswer& answer)
{
    return answer.servers.size() < QlumDiscoveryLimits::servers;
}

// A server with several URLs is a row for each: which of them can be reached from here is what the user
// tries.
void takeApplication(const OpcUa_ApplicationDescription& application, QlumDiscoveryAnswer& answer)
{
    const QString name = toldText(application.ApplicationName.Text, QlumDiscoveryLimits::nameLength);
    const QString uri = toldText(application.ApplicationUri, QlumDiscoveryLimits::nameLength);
    const int count = std::min(application.NoOfDiscoveryUrls, QlumDiscoveryLimits::urlsOfServer);
    for (int i = 0; i < count && hasRoom(answer); ++i)
        answer.servers.append(
            {name, toldText(application.DiscoveryUrls[i], QlumEndpointLimits::textLength), uri});
    if (count <= 0 && hasRoom(answer))
        answer.servers.append({name, QString(), uri});
}

QlumDiscoveryAnswer answerOf(const UaStatus& status, const UaServerOnNetworks& servers)
{
    QlumDiscoveryAnswer answer;
    answer.status = status.statusCode();
    answer.told = static_cast<int>(servers.length());
    for (const OpcUa_ServerOnNetwork& server : servers)
        if (hasRoom(answer))
            answer.servers.append({toldText(server.ServerName, QlumDiscoveryLimits::nameLength),
                                   toldText(server.DiscoveryUrl, QlumEndpointLimits::textLength),
                                   joinedText(server.ServerCapabilities, server.NoOfServerCapabilities)});
    return answer;
}

QlumDiscoveryAnswer answerOf(const UaStatus& status, const UaApplicationDescriptions& applications)
{
    QlumDiscoveryAnswer answer;
    answer.status = status.statusCode();
    answer.told = static_cast<int>(applications.length());
    for (const OpcUa_ApplicationDescription& application : applications)
        takeApplication(application, answer);
    return answer;
}

QlumDiscoveryAnswer askServers(QlumJob& job, QlumDiscoveryQuestion question, const QString& url,
                               int milliseconds)
{
    const auto discovery = std::make_shared<UaDiscovery>();
    job.whenCancelled([discovery] { discovery->cancel(); });
    qlumWatchDiscovery(*discovery, qlumAuthority(QUrl(url)));
    UaClientSdk::ServiceSettings settings = job.serviceSettings();
    settings.callTimeout = static_cast<OpcUa_UInt32>(std::max(milliseconds, 1));
    UaClientSdk::SessionSecurityInfo security;
    qlumFillPkiFolders(security);
    const UaString address = toUaString(url);
    // one more than is shown tells that there are more
    constexpr OpcUa_UInt32 most = QlumDiscoveryLimits::servers + 1;
    UaDateTime lastReset;
    UaServerOnNetworks heard;
    if (question == QlumDiscoveryQuestion::Network) {
        const UaStatus status =
            discovery->findServersOnNetwork(settings, address, security, 0, most, lastReset, heard);
        return answerOf(status, heard);
    }
    if (question == QlumDiscoveryQuestion::Directory) {
        UaClientSdk::SessionConnectInfo info;
        info.connectTimeout = settings.callTimeout;
        info.sessionName = toUaString(QStringLiteral("Tavelin: look at the directory"));
        info.automaticReconnect = false;
        const UaStatus status =
            discovery->queryDirectory(settings, address, info, security, 0, most, UaString(), UaString(),
                                      UaString(), UaStringArray(), lastReset, heard);
        return answerOf(status, heard);
    }
    UaApplicationDescriptions servers;
    const UaStatus status = discovery->findServers(settings, address, security, servers);
    return answerOf(status, servers);
}
} // namespace

QlumDiscoveryLookup::QlumDiscoveryLookup(Asker asker, QObject* parent)
    : QObject(parent), m_asker(asker ? std::move(asker) : Asker(askServers)),
      m_pool(QlumDiscoveryLimits::lookUps)
{
    qRegisterMetaType<QlumDiscoveryAnswer>();
}

QlumDiscoveryLookup::~QlumDiscoveryLookup()
{
    cancel();
}

QlumDiscoveryLookup::Ticket QlumDiscoveryLookup::ask(QlumDiscoveryQuestion question, const QString& url)
{
    const Ticket ticket = ++m_last;
    const int limit = static_cast<int>(QlumSettings::connectTimeout.value());
    m_pending.insert(ticket);
    m_pool.add(
        {tr("Looking for servers at %1").arg(qlumCutText(qlumSingleLine(url)))},
        [this, ticket, question, url, limit](QlumJob& job) {
            const QlumDiscoveryAnswer answer = m_asker(job, question, url, limit);
            if (!job.isCancelled())
                job.post([this, ticket, answer] { deliver(ticket, answer); });
        },
        [this, ticket](QlumWorkEnd end) {
            QlumDiscoveryAnswer none;
            none.status =
                end == QlumWorkEnd::Cancelled ? OpcUa_BadRequestCancelledByClient : OpcUa_BadInternalError;
            deliver(ticket, none); // unless it has been answered
        });
    return ticket;
}

void QlumDiscoveryLookup::cancel()
{
    m_pending.clear();
    m_pool.cancelAll();
}

void QlumDiscoveryLookup::deliver(Ticket ticket, const QlumDiscoveryAnswer& answer)
{
    if (m_pending.erase(ticket) > 0)
        emit answered(ticket, answer);
}
