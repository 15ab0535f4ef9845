#include <certificates/qlumclock.h>

#include <atomic>

namespace {
std::atomic<QlumClock::Source> s_source{nullptr};
}

QDateTime QlumClock::now()
{
    const Source source = s_source.load();
    return source ? source() : QDateTime::currentDateTime();
}

void QlumClock::setSource(Source source)
{
    s_source.store(source);
}
