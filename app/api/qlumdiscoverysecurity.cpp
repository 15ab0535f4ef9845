#include <app/api/qlumdiscoverysecurity.h>

#include <mutex>
#include <utility>

namespace {
struct Registered
{
    std::mutex mutex;
    QlumDiscoverySecurity security;
};

Registered& registered()
{
    static Registered one;
    return one;
}
} // namespace

void qlumSetDiscoverySecurity(QlumDiscoverySecurity security)
{
    const std::lock_guard lock(registered().mutex);
    registered().security = std::move(security);
}

UaClientSdk::ClientSecurityInfo qlumDiscoverySecurity(const QString& url)
{
    QlumDiscoverySecurity security;
    {
        const std::lock_guard lock(registered().mutex);
        security = registered().security;
    }
    return security ? security(url) : UaClientSdk::ClientSecurityInfo();
}
