// Every service call of the sessions, as long as somebody wants to see them.
#pragma once
#include <app/api/qlumcallnote.h>
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/servicewatch.h>

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QtGlobal>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

/// A copy of a request or response, without passwords and tokens of sessions.
class QlumServiceMessage
{
public:
    /// Empty when there is not enough memory.
    QlumServiceMessage(const OpcUa_EncodeableType& type, const void* message);
    ~QlumServiceMessage();
    QlumServiceMessage(const QlumServiceMessage&) = delete;
    QlumServiceMessage& operator=(const QlumServiceMessage&) = delete;

    /// Of the request or response.
    [[nodiscard]] const OpcUa_EncodeableType& type() const { return m_type; }
    /// Null when it could not be copied.
    [[nodiscard]] const void* message() const { return m_object; }

private:
    const OpcUa_EncodeableType& m_type;
    void* m_object = nullptr;
};

/// One call, as far as it has come. A value; what it points to never changes.
struct QlumServiceRecord
{
    /// Nanoseconds since the call was let through; -1 where it has not got to, or nobody measured.
    struct Times
    {
        qint64 encoded = -1;   ///< the request is encoded
        qint64 sent = -1;      ///< and with the system
        qint64 firstByte = -1; ///< the answer begins to come
        qint64 decoded = -1;   ///< and is decoded
        qint64 ended = -1;     ///< the caller has it
    };

    quint64 number = 0;                                 ///< unique in the running program, rising
    unsigned int serverId = 0;                          ///< of the project
    QString server;                                     ///< the name of the session's server
    QString service;                                    ///< "Read"
    QString purpose;                                    ///< the command or view that called
    QDateTime begun;                                    ///< when it was let through
    qint64 passed = 0;                                  ///< the same by a clock that only rises, ns
    bool hasEnded = false;                              ///< below is known
    UaStatus status;                                    ///< what it came to
    Times times;                                        ///< how it went
    quint32 bytesOut = 0;                               ///< the whole request on the wire
    quint32 bytesIn = 0;                                ///< the whole response
    UaString callPurpose;                               ///< as the caller gave it
    std::shared_ptr<const QlumCallNote> note;           ///< what is secret, as the caller said; may be null
    std::shared_ptr<const QlumServiceMessage> request;  ///< null when it is too large to be kept
    std::shared_ptr<const QlumServiceMessage> response; ///< null without an answer, too
};

/// Sees the calls of all sessions that have one of its observers, while it is switched on; off, they cost the
/// calls one look at a flag. Records wait here until they are taken, the oldest of them make way. Any thread,
/// but for setOn().
class QlumServiceRecorder : public QObject, public std::enable_shared_from_this<QlumServiceRecorder>
{
    Q_OBJECT
public:
    /// As many records may wait to be taken.
    static constexpr std::size_t maximumWaiting = 20000;
    /// Messages of more bytes than that are not kept.
    static constexpr quint32 maximumMessage = 1024 * 1024;

    QlumServiceRecorder();
    ~QlumServiceRecorder() override;

    /// That of the application.
    [[nodiscard]] static const std::shared_ptr<QlumServiceRecorder>& ofApplication();

    /// For one session of a server; the name is asked for with each call, on its thread.
    [[nodiscard]] std::shared_ptr<UaClientSdk::ServiceObserver>
    observerOf(unsigned int serverId, std::function<QString()> serverName);
    /// Whether calls are seen.
    [[nodiscard]] bool isOn() const { return m_isOn.load(); }
    /// Calls that have begun before it is switched off still end here. GUI thread.
    void setOn(bool isOn);
    /// What has come since the last time, oldest first: a record twice, when its call has begun and ended.
    [[nodiscard]] std::vector<QlumServiceRecord> take();
    /// How many records had to make way since the last time.
    [[nodiscard]] int takeDropped() { return m_dropped.exchange(0); }

signals:
    /// There is something to be taken; once until it is taken. From any thread.
    void recorded();
    /// It was switched on or off.
    void switched(bool isOn);

private:
    class Tap;

    /// One without a number gets the next.
    void add(QlumServiceRecord& record);

    std::atomic<bool> m_isOn{false};
    quint64 m_next = 1;
    std::atomic<int> m_dropped{0};
    std::mutex m_mutex;
    std::vector<QlumServiceRecord> m_waiting;
    std::vector<std::weak_ptr<Tap>> m_taps;
};
