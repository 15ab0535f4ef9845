// The stack's C interface as a client of the responder.
#pragma once

#include <bench/responder.h>
#include <opcua/opcua.h>

#include <string>

namespace opcua::bench {

/// Folders with the server's certificate among the trusted ones.
struct ClientSetup
{
    Identity client;
    Identity server;
    Bytes clientNonce;
    std::string trusted;
};

/// What fails ends the program: there is nothing to measure then.
class StackClient
{
public:
    StackClient(const ClientSetup& setup, const Responder& responder, bool secured);
    ~StackClient();
    StackClient(const StackClient&) = delete;
    StackClient& operator=(const StackClient&) = delete;

    void connect(); ///< the channel
    void openSession();
    void disconnect();

    /// Blocking Reads, one after the other.
    void read(int nodes, int calls);
    /// Reads of one node, so many of them open at a time.
    void readPipelined(int open, int calls);
    /// Publish requests, so many open at a time; looks at every notification.
    void receiveNotifications(int open, int messages);

private:
    const ClientSetup& m_setup;
    const std::string m_url;
    const bool m_secured;
    OpcUa_Channel m_channel = nullptr;
    OpcUa_CryptoProvider m_crypto = nullptr;
};

} // namespace opcua::bench
