// Opens and closes the secure channel of a session.
#pragma once

#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/sessioncontext.h>

namespace UaClientSdk {

/// Tries the main URL, then the alternatives, and tells the application when none opens. Blocks; one thread
/// at a time.
class ChannelConnector
{
public:
    explicit ChannelConnector(SessionContext& context) : m_context(context) {}

    UaStatus connectChannel();
    void disconnectChannel();

private:
    UaStatus connectTo(const UaString& url);

    SessionContext& m_context;
};

} // namespace UaClientSdk
