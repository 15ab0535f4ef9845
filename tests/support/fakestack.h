// A scripted stand-in for the communication stack below the session layer: the dynamic linker takes the test
// program's OpcUa_Channel_* functions before those of the shared library, so every service call ends here.
#pragma once

#include <opcua/opcua.h>
#include <uabase/values/uavariant.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

class FakeStack
{
public:
    /// Fills the initialised response and says how the call ends. Runs on the caller's thread, unlocked.
    using Handler = std::function<OpcUa_StatusCode(const void* request, void* response)>;

    static FakeStack& instance();
    /// Back to a server that says yes: a Running server with one endpoint and an empty address space.
    void reset();

    void on(const OpcUa_EncodeableType& requestType, Handler handler);
    /// What answers now, for one that puts something before it.
    [[nodiscard]] Handler handler(const OpcUa_EncodeableType& requestType);
    /// The next answers, before the handler is asked again.
    void failNext(const OpcUa_EncodeableType& requestType, std::vector<OpcUa_StatusCode> statuses);
    /// Asynchronous calls that the stack does not take, first ones first.
    void refuseNextBegin(const OpcUa_EncodeableType& requestType, std::vector<OpcUa_StatusCode> statuses);
    /// Keeps the answers to asynchronous calls of the kind back until holdAnswers is taken back, the channel
    /// is disconnected or the link is lost.
    void holdAnswers(const OpcUa_EncodeableType& requestType, bool hold);
    /// Lets so many of the answers that are held back go, now or when they are asked for.
    void releaseAnswers(const OpcUa_EncodeableType& requestType, int count);
    /// Asynchronous calls of the kind are answered with an empty structure of another type.
    void answerAs(const OpcUa_EncodeableType& requestType, const OpcUa_EncodeableType& responseType);
    void setConnectResult(OpcUa_StatusCode status);
    /// Connects to https URLs end with BadCertificateUntrusted for that certificate (DER); empty: they do
    /// not.
    void distrustTls(std::string certificate);
    /// Connects that take until somebody cancels them.
    void setConnectHangs(bool hangs);
    /// For a handler: a server that does not answer. Blocks until the channel is disconnected, half a minute
    /// at most, and says how the call ends.
    OpcUa_StatusCode hang();
    /// Whether a handler hangs within the limit.
    [[nodiscard]] bool waitForHang();
    void setServerState(OpcUa_Int32 state);
    void setNamespaces(std::vector<std::string> uris);
    /// What a node of that number reads as; null: BadNodeIdUnknown, as those are that tell the server's
    /// limits.
    void setVariable(OpcUa_UInt32 id, const UaVariant& value);
    void setRevisedSessionTimeout(double milliseconds);

    [[nodiscard]] int calls(const OpcUa_EncodeableType& requestType);
    /// Whether so many calls of the kind come within the limit.
    [[nodiscard]] bool waitForCalls(const OpcUa_EncodeableType& requestType, int count);
    [[nodiscard]] int connects();
    [[nodiscard]] int disconnects();
    /// The server certificates (DER) that channels were connected with, the latest last.
    [[nodiscard]] std::vector<std::string> serverCertificates();
    /// Names of all calls in order: "Connect", "CreateSessionRequest", ...
    [[nodiscard]] std::vector<std::string> journal();
    void loseLink(); ///< the channel's disconnect event

    /// The clock of the code under test, in ms.
    std::atomic<OpcUa_UInt64> ticks{1};
    /// How often it was looked at.
    std::atomic<int> tickReads{0};

    /// Called by the replaced functions.
    OpcUa_StatusCode connect(const OpcUa_ChannelConnectInfo& info, OpcUa_UInt32* revisedLifetime);
    OpcUa_StatusCode disconnect();
    void cancelConnect();
    OpcUa_StatusCode invoke(const OpcUa_EncodeableType& requestType, const void* request, void* response);
    OpcUa_StatusCode beginInvoke(const OpcUa_EncodeableType& requestType, const void* request,
                                 const OpcUa_EncodeableType& responseType,
                                 OpcUa_Channel_PfnRequestComplete callback, void* callbackData);

private:
    /// An asynchronous call that is not answered yet.
    struct Pending
    {
        const OpcUa_EncodeableType* requestType;
        std::shared_ptr<void> request;
        const OpcUa_EncodeableType* responseType;
        OpcUa_Channel_PfnRequestComplete callback;
        void* callbackData;
    };

    FakeStack() = default;
    ~FakeStack();
    OpcUa_StatusCode answer(const OpcUa_EncodeableType& requestType, const void* request, void* response);
    void deliverAnswers(); ///< runs on the thread that stands for the channel's callback thread
    void deliver(const Pending& call, bool aborted);
    std::deque<Pending>::iterator nextToDeliver();
    void endDelivery();
    /// Answers all that is pending with BadConnectionClosed; on return no callback runs.
    void abortPending();
    void installDefaults();
    OpcUa_StatusCode answerRead(const OpcUa_ReadRequest& request, OpcUa_ReadResponse& response);

    std::mutex m_mutex;
    std::condition_variable m_cancelled;
    std::condition_variable m_called;
    std::condition_variable m_pendingChanged;
    std::deque<Pending> m_pending;
    std::set<const OpcUa_EncodeableType*> m_held;
    std::map<const OpcUa_EncodeableType*, int> m_released; ///< of those that are held
    std::map<const OpcUa_EncodeableType*, const OpcUa_EncodeableType*> m_otherTypes;
    std::map<const OpcUa_EncodeableType*, std::deque<OpcUa_StatusCode>> m_refusals;
    std::thread m_delivery;
    bool m_delivering = false;
    bool m_aborting = false;
    bool m_endDelivery = false;
    std::map<const OpcUa_EncodeableType*, Handler> m_handlers;
    std::map<const OpcUa_EncodeableType*, std::deque<OpcUa_StatusCode>> m_failures;
    std::vector<std::string> m_journal;
    std::vector<std::string> m_namespaces;
    std::map<OpcUa_UInt32, UaVariant> m_variables;
    std::vector<std::string> m_serverCertificates;
    std::string m_distrustedTls;
    OpcUa_StatusCode m_connectResult = OpcUa_Good;
    bool m_connectHangs = false;
    int m_hanging = 0;
    unsigned int m_closings = 0;
    bool m_cancelRequested = false;
    OpcUa_Int32 m_serverState = 0;
    double m_revisedSessionTimeout = 1200000.0;
    OpcUa_Channel_PfnEvent m_event = nullptr;
    void* m_eventContext = nullptr;
};
