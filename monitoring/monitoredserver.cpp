#include <monitoring/monitoredserver.h>

#include <monitoring/monitoredserver_p.h>
#include <uaclientsdk/uasession.h>

namespace monitoring {

MonitoredServer::MonitoredServer() : d(std::make_unique<MonitoredServerPrivate>()) {}

MonitoredServer::~MonitoredServer()
{
    d->close();
}

void MonitoredServer::setSession(UaClientSdk::UaSession* session)
{
    d->setSession(session);
}

void MonitoredServer::statusChanged(UaClientSdk::UaClient::ServerStatus status,
                                    const NamespaceMap& namespaces)
{
    d->statusChanged(status, namespaces);
}

void MonitoredServer::noteLink(UaClientSdk::UaClient::ServerStatus status)
{
    d->noteLink(status);
}

void MonitoredServer::close()
{
    d->close();
}

std::vector<ItemId> MonitoredServer::add(const std::shared_ptr<Sink>& sink, const ItemSettings& settings,
                                         std::span<const ItemWish> wishes)
{
    return d->add(sink, settings, wishes);
}

void MonitoredServer::modify(std::span<const ItemId> items, const ItemSettings& settings)
{
    d->modify(items, settings);
}

void MonitoredServer::remove(std::span<const ItemId> items)
{
    d->remove(items);
}

void MonitoredServer::retry(std::span<const ItemId> items)
{
    d->retry(items);
}

void MonitoredServer::retryRefused()
{
    d->retryRefused();
}

std::optional<ItemInfo> MonitoredServer::info(ItemId item) const
{
    return d->info(item);
}

std::vector<SubscriptionInfo> MonitoredServer::subscriptions() const
{
    return d->subscriptions();
}

} // namespace monitoring
