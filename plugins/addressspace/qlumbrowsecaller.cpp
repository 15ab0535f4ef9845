#include <plugins/addressspace/qlumbrowsecaller.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <opcua/opcua_statuscodes.h>
#include <uaclientsdk/browseprogress.h>
#include <uawidgets/qlumwaitcursor.h>

#include <QApplication>
#include <QEventLoop>
#include <QLabel>
#include <QObject>
#include <QProgressDialog>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace {
constexpr std::chrono::milliseconds patience(500); // most servers answer by then
constexpr int maximumThreads = 4;                  // calls that were cancelled keep theirs for a while

bool release(QlumSessionServices& services, const UaClientSdk::ServiceSettings& settings, UaByteString point)
{
    if (point.isEmpty() || !services.isConnected())
        return false;
    UaClientSdk::ServiceSettings releasing = UaClientSdk::settingsOfRelease(settings);
    UaReferenceDescriptions references;
    return !services.browseNext(releasing, true, point, references).isBad();
}
} // namespace

namespace {
struct AtEnd
{
    ~AtEnd() { tell(); }
    std::function<void()> tell; // also when the call throws
};

// A call that failed brings none back, but the server may still keep the one that was sent.
UaByteString pointLeft(const QlumBrowseCaller::Answer& answer, const UaByteString& sent)
{
    return answer.continuationPoint.isEmpty() && answer.status.isBad() &&
                   UaClientSdk::keepsContinuationPoint(answer.status)
               ? sent
               : answer.continuationPoint;
}
} // namespace

struct QlumBrowseCaller::Call
{
    // False when nobody wants the answer any more. Worker thread.
    bool finish()
    {
        const std::lock_guard lock(mutex);
        isDone = true;
        done.notify_all();
        return !isGivenUp;
    }
    bool waitFor(std::chrono::milliseconds time)
    {
        std::unique_lock lock(mutex);
        return done.wait_for(lock, time, [this] { return isDone; });
    }
    // False when the answer has come just before.
    bool giveUp()
    {
        const std::lock_guard lock(mutex);
        isGivenUp = !isDone;
        return isGivenUp;
    }

    std::mutex mutex;
    std::condition_variable done;
    bool isDone = false;
    bool isGivenUp = false;
    Answer answer;              // the worker's until it is done
    QEventLoop* loop = nullptr; // GUI thread only
};

QlumBrowseCaller::QlumBrowseCaller(std::shared_ptr<QlumSessionServices> services, unsigned int serverId)
    : m_services(std::move(services)), m_serverId(serverId), m_pool(maximumThreads)
{
}

QlumBrowseCaller::~QlumBrowseCaller() = default;

std::optional<QlumBrowseCaller::Answer> QlumBrowseCaller::browse(const UaClientSdk::ServiceSettings& settings,
                                                                 const UaNodeId& nodeId,
                                                                 const UaClientSdk::BrowseContext& context,
                                                                 const QString& name)
{
    return run(
        [settings, nodeId, context](QlumSessionServices& services, Answer& answer) {
            UaClientSdk::ServiceSettings own = settings;
            answer.status =
                services.browse(own, nodeId, context, answer.continuationPoint, answer.references);
        },
        settings, UaByteString(), name);
}

std::optional<QlumBrowseCaller::Answer>
QlumBrowseCaller::browseNext(const UaClientSdk::ServiceSettings& settings, const UaByteString& point,
                             const QString& name)
{
    return run(
        [settings, point](QlumSessionServices& services, Answer& answer) {
            UaClientSdk::ServiceSettings own = settings;
            answer.continuationPoint = point;
            answer.status = services.browseNext(own, false, answer.continuationPoint, answer.references);
        },
        settings, point, name);
}

bool QlumBrowseCaller::giveBack(const UaClientSdk::ServiceSettings& settings, const UaByteString& point)
{
    const QlumWaitCursor wait;
    return release(*m_services, settings, point);
}

std::optional<QlumBrowseCaller::Answer> QlumBrowseCaller::run(Function function,
                                                              const UaClientSdk::ServiceSettings& settings,
                                                              const UaByteString& point, const QString& name)
{
    const auto call = std::make_shared<Call>();
    call->answer.status = UaStatus(OpcUa_BadInternalError); // of a call that throws
    const QlumJobPool::Ticket ticket =
        m_pool.add({QString(), m_serverId}, [call, services = m_services, function = std::move(function),
                                             settings, point](QlumJob& job) {
            const AtEnd atEnd{[&] {
                if (!call->finish())
                    release(*services, settings, pointLeft(call->answer, point));
                job.post([call] {
                    if (call->loop)
                        call->loop->quit();
                });
            }};
            function(*services, call->answer);
        });
    {
        const QlumWaitCursor cursor;
        m_hasWaited = !call->waitFor(patience);
        if (!m_hasWaited)
            return std::move(call->answer);
    }
    wait(*call, name);
    if (!call->giveUp())
        return std::move(call->answer);
    m_pool.giveUp(ticket);
    return std::nullopt;
}

// Until the answer is there or the user wants it no more.
void QlumBrowseCaller::wait(Call& call, const QString& name)
{
    m_waiting = true;
    if (m_observer)
        m_observer(true);
    QProgressDialog dialog(QString(), tr("Cancel"), 0, 0, QApplication::activeWindow());
    dialog.setObjectName(QStringLiteral("browseWaiting"));
    dialog.setWindowTitle(tr("Browsing"));
    dialog.setMinimumWidth(360);
    dialog.setWindowModality(Qt::ApplicationModal); // nobody shall change what the answer belongs to
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText); // the name is the server's
    dialog.setLabel(label);
    dialog.setLabelText(
        tr("Browsing '%1': waiting for the server to answer.").arg(qlumCutText(qlumSingleLine(name), 60)));
    QEventLoop loop;
    QObject::connect(&dialog, &QProgressDialog::canceled, &loop, &QEventLoop::quit);
    call.loop = &loop;
    dialog.show();
    loop.exec();
    call.loop = nullptr;
    m_waiting = false;
    if (m_observer)
        m_observer(false);
}
