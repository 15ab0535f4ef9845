#include <app/api/qlumapplicationinterface.h>

#include <atomic>

namespace {
std::atomic<QlumApplicationInterface*> g_application{nullptr};
}

QlumApplicationInterface::~QlumApplicationInterface()
{
    QlumApplicationInterface* self = this;
    g_application.compare_exchange_strong(self, nullptr);
}

QlumApplicationInterface* QlumApplicationInterface::instance() noexcept
{
    return g_application.load();
}

void QlumApplicationInterface::setInstance(QlumApplicationInterface* application) noexcept
{
    g_application.store(application);
}
