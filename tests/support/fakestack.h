// A scripted stand-in for the communication stack below the session layer: the dynamic linker takes the test
// program's OpcUa_Channel_* functions before those of the shared library, so every service call ends here.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include <opcua/opcua.h>

class FakeStack
{
public:
    // Fills the initialised response and says how the call ends. Runs on the caller's thread, unlocked.
    using Handler = std::function<OpcUa_StatusCode(const void* request, void* response)>;

    static FakeStack& instance();
    // Back to a server that says yes: a Running server with one endpoint and an empty address space.
    void reset();

    void on(const OpcUa_EncodeableType& requestType, Handler handler);
    // The next answers, before the handler is asked again.
    void failNext(const OpcUa_EncodeableType& requestType, std::vector<OpcUa_StatusCode> statuses);
    void setConnectResult(OpcUa_StatusCode status);
    // Connects that take until somebody cancels them.
    void setConnectHangs(bool hangs);
    void setServerState(OpcUa_Int32 state);
    void setNamespaces(std::vector<std::string> uris);
    void setRevisedSessionTimeout(double milliseconds);

    [[nodiscard]] int calls(const OpcUa_EncodeableType& requestType);
    // Whether so many calls of the kind come within the limit.
    [[nodiscard]] bool waitForCalls(const OpcUa_EncodeableType& requestType, int count);
    [[nodiscard]] int connects();
    [[nodiscard]] int disconnects();
    // Names of all calls in order: "Connect", "CreateSessionRequest", ...
    [[nodiscard]] std::vector<std::string> journal();
    void loseLink(); // the channel's disconnect event

    // The clock of the code under test, in ms.
    std::atomic<OpcUa_UInt64> ticks{1};
    // How often it was looked at.
    std::atomic<int> tickReads{0};

    // Called by the replaced functions.
    OpcUa_StatusCode connect(const OpcUa_ChannelConnectInfo& info, OpcUa_UInt32* revisedLifetime);
    OpcUa_StatusCode disconnect();
    void cancelConnect();
    OpcUa_StatusCode invoke(const OpcUa_EncodeableType& requestType, const void* request, void* response);

private:
    void installDefaults();
    OpcUa_StatusCode answerRead(const OpcUa_ReadRequest& request, OpcUa_ReadResponse& response);

    std::mutex m_mutex;
    std::condition_variable m_cancelled;
    std::condition_variable m_called;
    std::map<const OpcUa_EncodeableType*, Handler> m_handlers;
    std::map<const OpcUa_EncodeableType*, std::deque<OpcUa_StatusCode>> m_failures;
    std::vector<std::string> m_journal;
    std::vector<std::string> m_namespaces;
    OpcUa_StatusCode m_connectResult = OpcUa_Good;
    bool m_connectHangs = false;
    bool m_cancelRequested = false;
    OpcUa_Int32 m_serverState = 0;
    double m_revisedSessionTimeout = 1200000.0;
    OpcUa_Channel_PfnEvent m_event = nullptr;
    void* m_eventContext = nullptr;
};
