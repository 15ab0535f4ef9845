// Opens and closes the secure channel of a session.
#pragma once

#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/sessioncontext.h>

namespace UaClientSdk {

/// One for a session. connectChannel blocks, one thread at a time.
class ChannelConnector
{
public:
    explicit ChannelConnector(SessionContext& context) : m_context(context) {}

    /// Tries the main URL, then the alternatives, and tells the application when none opens.
    /// BadConnectionClosed when a disconnect has begun.
    UaStatus connectChannel();
    /// Closes the channel, upon which every call that runs ends with BadConnectionClosed; a connect that is
    /// under way ends, too. Any thread, at any time.
    void disconnectChannel();
    [[nodiscard]] bool isOpen() const;

private:
    /// Guarded by the session's mutex.
    enum class Use { Free, Opening, Open };

    UaStatus connectTo(const UaString& url);
    [[nodiscard]] bool beginOpening();

    SessionContext& m_context;
    Use m_use = Use::Free;
};

} // namespace UaClientSdk
