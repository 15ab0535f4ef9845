// A channel as the application holds it: connects, carries calls, disconnects, and connects again.
#pragma once

#include <opcua/opcua_channel.h>
#include <stack/core/endpointurl.h>
#include <stack/core/secret.h>
#include <stack/core/securitypolicy.h>
#include <stack/security/certificatecheck.h>
#include <stack/transport/callbackqueue.h>
#include <stack/transport/messagetransport.h>
#include <stack/transport/runtime.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace opcua {

enum class TransportProfile { UaTcp, Https };

struct ConnectParameters
{
    TransportProfile profile = TransportProfile::UaTcp;
    std::string url;
    std::string securityPolicyUri;
    OpcUa_MessageSecurityMode securityMode = OpcUa_MessageSecurityMode_None;
    OpcUa_UInt32 requestedLifetime = 0; ///< ms
    bool basic128Rsa15Allowed = false;
    Milliseconds timeout{0};
    /// Empty with policy None. The server's certificate may bring its chain along. Not for HTTPS, where the
    /// certificate is the TLS session's.
    Bytes clientCertificate;
    Secret clientPrivateKey;
    Bytes serverCertificate;
    std::optional<PkiFolders> pki; ///< nothing: the server's certificate is taken as it is
    /// Both may be empty.
    std::function<void(OpcUa_Channel_Event, OpcUa_StatusCode)> onEvent;
    FindingJudge onCertificateFinding; ///< runs on a thread of the channel's own
};

class Channel final : public ConnectionObserver, public std::enable_shared_from_this<Channel>
{
public:
    explicit Channel(std::shared_ptr<Runtime> runtime) : m_runtime(std::move(runtime)) {}

    /// Blocks until the channel is open, the time is over or somebody ends it. Good; BadInvalidState when
    /// connected, connecting or on a callback of this channel; else why it did not open. A question about a
    /// certificate may outlive it.
    [[nodiscard]] OpcUa_StatusCode connect(const ConnectParameters& parameters,
                                           OpcUa_UInt32& revisedLifetime);
    void cancelConnect();
    /// Calls complete with BadConnectionClosed, and all callbacks but questions about certificates have run
    /// when it returns. Good also when the peer had gone; BadInvalidState when there was no connection, or on
    /// a callback of this channel. Ends a connect that runs.
    [[nodiscard]] OpcUa_StatusCode disconnect();
    /// Ends a connect or a connection, whichever there is, and waits for every callback. False on a callback
    /// of this channel.
    [[nodiscard]] bool shutdown();
    [[nodiscard]] bool isConnected() const;

    /// As the functions of MessageTransport; BadInvalidState when there was no connection.
    [[nodiscard]] OpcUa_StatusCode send(std::shared_ptr<Call> call, ByteView body, TimePoint deadline,
                                        bool mayWait);
    [[nodiscard]] OpcUa_StatusCode fetch(const std::shared_ptr<AwaitedCall>& call, ByteView body,
                                         TimePoint deadline);
    [[nodiscard]] CallbackQueue& callbacks() { return m_callbacks; }
    [[nodiscard]] const Runtime& runtime() const { return *m_runtime; }

private:
    enum class State { Idle, Connecting, Connected, Disconnecting };
    class ConnectScope;
    struct Question;

    void onOpened(OpcUa_UInt32 revisedLifetime) override;
    void onRenewed() override;
    void onLost(OpcUa_StatusCode status) override;

    [[nodiscard]] OpcUa_StatusCode establish(const ConnectParameters& parameters, TimePoint deadline,
                                             const std::shared_ptr<Cancellation>& attempt);
    [[nodiscard]] OpcUa_StatusCode secure(const ConnectParameters& parameters, TimePoint deadline,
                                          const std::shared_ptr<Cancellation>& attempt,
                                          std::unique_ptr<SecurityPolicy>& policy);
    [[nodiscard]] OpcUa_StatusCode judge(const std::vector<CertificateFinding>& findings,
                                         const ConnectParameters& parameters, ByteView chain,
                                         TimePoint deadline, const std::shared_ptr<Cancellation>& attempt);
    [[nodiscard]] OpcUa_StatusCode askAbout(const CertificateFinding& finding, const FindingJudge& asked,
                                            TimePoint deadline, const std::shared_ptr<Cancellation>& attempt);
    [[nodiscard]] OpcUa_StatusCode openChannel(const ConnectParameters& parameters, UniqueFd socket,
                                               std::unique_ptr<SecurityPolicy> policy, TimePoint deadline,
                                               const std::shared_ptr<Cancellation>& attempt);
    [[nodiscard]] OpcUa_StatusCode openHttps(const ConnectParameters& parameters, const EndpointUrl& url,
                                             UniqueFd socket, TimePoint deadline,
                                             const std::shared_ptr<Cancellation>& attempt);
    [[nodiscard]] OpcUa_StatusCode openTransport(std::shared_ptr<MessageTransport> transport,
                                                 TimePoint deadline, Cancellation& attempt);
    [[nodiscard]] bool isOwnThread() const { return m_callbacks.isOwnThread() || m_questions.isOwnThread(); }
    [[nodiscard]] bool beginConnect(const std::shared_ptr<Cancellation>& attempt);
    [[nodiscard]] std::shared_ptr<MessageTransport> connection() const; ///< null when there was none
    void flush();
    void endConnection();
    void postEvent(OpcUa_Channel_Event event, OpcUa_StatusCode status);
    void setState(State state);

    const std::shared_ptr<Runtime> m_runtime;
    mutable std::mutex m_mutex;
    std::condition_variable m_stateChanged;
    State m_state = State::Idle;
    std::shared_ptr<MessageTransport> m_connection;
    std::shared_ptr<Cancellation> m_attempt; ///< of the connect that runs
    /// Of the connection that is there; set while there is none. m_opening guards the two behind it.
    std::shared_ptr<Cancellation> m_opening;
    std::optional<OpcUa_StatusCode> m_opened; ///< what connect answers, or answered
    OpcUa_UInt32 m_revisedLifetime = 0;
    std::function<void(OpcUa_Channel_Event, OpcUa_StatusCode)> m_onEvent;
    CallbackQueue m_callbacks{[this] { flush(); }};
    /// About certificates. Apart from the others, for the application may put them to its user, who comes
    /// back to them when the connect is long over; nothing but shutdown waits for them.
    CallbackQueue m_questions;
};

} // namespace opcua
