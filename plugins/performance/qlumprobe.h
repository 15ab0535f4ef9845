// One service as a run calls it again and again.
#pragma once
#include <app/api/qlumsessionservices.h>
#include <plugins/performance/qlummeasurement.h>
#include <uabase/values/uastatus.h>

#include <memory>

/// The calls of one lane of a run. Requests are made ready before, so that a call is the service and nothing
/// else. Used by one thread; the services outlive it.
class QlumProbe
{
public:
    virtual ~QlumProbe() = default;

    /// Makes ready what the calls need, also on the server. Not measured.
    virtual UaStatus prepare(QlumSessionServices::Settings&) { return {}; }
    /// What is measured.
    virtual UaStatus call(QlumSessionServices::Settings& settings) = 0;
    /// Between two calls: what the last one has left on the server. How many of its values were bad.
    virtual quint32 settle(QlumSessionServices::Settings& settings) = 0;
    /// Takes back what prepare() has done.
    virtual void finish(QlumSessionServices::Settings&) {}
    /// Nodes in a call.
    [[nodiscard]] quint32 size() const { return m_size; }

protected:
    /// With so many nodes a call.
    explicit QlumProbe(quint32 size) : m_size(size) {}

private:
    const quint32 m_size;
};

/// For that plan; null for what is not measured by calls, and where the services are not those of a session
/// but are needed so.
[[nodiscard]] std::unique_ptr<QlumProbe> qlumMakeProbe(const QlumMeasurementPlan& plan,
                                                       QlumSessionServices& services);
