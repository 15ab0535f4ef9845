#pragma once
#include <app/api/qlumjobpool.h>
#include <app/api/qlumsessionservices.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/browsecontext.h>
#include <uaclientsdk/servicesettings.h>

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

/// Browses for a caller on the GUI thread who waits. The call itself is on another thread, so that a window
/// with a Cancel can be shown when the server takes its time. While that window is there an event loop runs:
/// isWaiting() is true, and whoever is told of anything then puts it off. GUI thread.
class QlumBrowseCaller
{
    Q_DECLARE_TR_FUNCTIONS(QlumBrowseCaller)
public:
    /// What a call brings back.
    struct Answer
    {
        UaStatus status;
        UaByteString continuationPoint; ///< empty when there is no more
        UaReferenceDescriptions references;
    };

    /// The services may be null; then nothing may be called.
    QlumBrowseCaller(std::shared_ptr<QlumSessionServices> services, unsigned int serverId);
    ~QlumBrowseCaller();

    /// Begins to browse a node, which the user knows by the name. Without an answer the user has cancelled;
    /// what comes afterwards is given back to the server.
    std::optional<Answer> browse(const UaClientSdk::ServiceSettings& settings, const UaNodeId& nodeId,
                                 const UaClientSdk::BrowseContext& context, const QString& name);
    /// The same for what follows.
    std::optional<Answer> browseNext(const UaClientSdk::ServiceSettings& settings, const UaByteString& point,
                                     const QString& name);

    /// Tells the server, under a wait cursor and not for long, that nobody will continue from the point.
    /// False when it did not take it; it forgets the point with the session.
    bool giveBack(const UaClientSdk::ServiceSettings& settings, const UaByteString& point);

    /// Whether a call is under way that the event loop runs for.
    [[nodiscard]] bool isWaiting() const { return m_waiting; }
    /// Whether the last call let the user wait.
    [[nodiscard]] bool hasWaited() const { return m_hasWaited; }
    /// Called with true when the waiting begins, and with false when it has ended.
    void setObserver(std::function<void(bool waiting)> observer) { m_observer = std::move(observer); }

private:
    struct Call;
    using Function = std::function<void(QlumSessionServices& services, Answer& answer)>;

    std::optional<Answer> run(Function function, const UaClientSdk::ServiceSettings& settings,
                              const UaByteString& point, const QString& name);
    void wait(Call& call, const QString& name);

    const std::shared_ptr<QlumSessionServices> m_services;
    const unsigned int m_serverId;
    bool m_waiting = false;
    bool m_hasWaited = false;
    std::function<void(bool)> m_observer;
    QlumJobPool m_pool;
};
