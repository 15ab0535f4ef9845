#pragma once
#include <app/api/qlumjobpool.h>
#include <app/api/qlumserverpools.h>

/// The threads of all event views. Histories have threads of their own: they take long, and an acknowledge or
/// what was lost of the live events must not wait for them. GUI thread.
class QlumEventPools : public QlumServerPools
{
public:
    /// That of its histories.
    [[nodiscard]] QlumJobPool& ofHistory(unsigned int serverId) { return m_history.of(serverId); }
    /// Ends both.
    void endServer(unsigned int serverId)
    {
        m_history.endServer(serverId);
        QlumServerPools::endServer(serverId);
    }

private:
    QlumServerPools m_history;
};
