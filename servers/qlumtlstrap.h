#pragma once
#include <QByteArray>

#include <mutex>
#include <optional>

/// A TLS certificate (DER) that nobody trusts, and what was found about it.
struct QlumTlsFailure
{
    unsigned int status;
    QByteArray certificate;
};

/// Keeps the TLS certificate that an attempt to connect fails with, the first fault of several. Any thread.
class QlumTlsTrap
{
public:
    /// An attempt begins.
    void set()
    {
        const std::lock_guard lock(m_mutex);
        m_isSet = true;
        m_failure.reset();
    }
    /// Whether an attempt is under way, to which the failure belongs.
    [[nodiscard]] bool take(const QlumTlsFailure& failure)
    {
        const std::lock_guard lock(m_mutex);
        if (m_isSet && !m_failure)
            m_failure = failure;
        return m_isSet;
    }
    /// Whether the attempt has come upon one.
    [[nodiscard]] bool hasFailure() const
    {
        const std::lock_guard lock(m_mutex);
        return m_failure.has_value();
    }
    /// The attempt is over; what it has failed with.
    [[nodiscard]] std::optional<QlumTlsFailure> release()
    {
        const std::lock_guard lock(m_mutex);
        m_isSet = false;
        return m_failure;
    }

private:
    mutable std::mutex m_mutex;
    std::optional<QlumTlsFailure> m_failure;
    bool m_isSet = false;
};
