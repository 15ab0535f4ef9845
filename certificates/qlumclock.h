// The time by which certificates are judged.
#pragma once
#include <QDateTime>

/// Where "now" comes from when validity is looked at; the system's clock unless another source is set.
class QlumClock
{
public:
    /// Called on any thread.
    using Source = QDateTime (*)();

    QlumClock() = delete;

    /// Any thread.
    [[nodiscard]] static QDateTime now();
    /// Null gives the system's clock back.
    static void setSource(Source source);
};
