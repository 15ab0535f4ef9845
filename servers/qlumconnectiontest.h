#pragma once
#include <app/api/qlumjobpool.h>
#include <servers/qlumconnectflow.h>
#include <servers/qlumconnectprompts.h>
#include <servers/qlumdiscoverysetting.h>
#include <uabase/values/uastatus.h>

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class QlumSideConnect;
namespace UaClientSdk {
class UaSession;
}

/// Tries settings out: connects as the project's server would, with a session of its own that is closed
/// again, and tells what has come of it. One test at a time; what is under way ends with this object. GUI
/// thread.
class QlumConnectionTest : public QObject
{
    Q_OBJECT
public:
    /// Makes what asks the user during one test.
    using MakePrompts = std::function<std::unique_ptr<QlumConnectPrompts>()>;

    QlumConnectionTest(MakePrompts makePrompts, QObject* parent = nullptr);
    ~QlumConnectionTest() override;

    void start(const QlumDiscoverySetting& setting);
    /// finished() tells when.
    void cancel();
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// The host that the user wants to be ignored from now on; empty for none.
    [[nodiscard]] QString ignoredHost() const { return m_ignoredHost; }

signals:
    void stepChanged(const QString& text);
    /// What has come of it, and what else there is to say or do.
    void finished(bool isGood, const QString& what, const QString& why);

private:
    void takeStep(QlumConnectFlow::Step step, bool isAsking);
    void takeSession(const std::shared_ptr<UaClientSdk::UaSession>& session, const UaStatus& status);
    void lookAt(std::shared_ptr<UaClientSdk::UaSession> session);
    void finish(bool isGood, const QString& what, const QString& why);

    const MakePrompts m_makePrompts;
    QlumDiscoverySetting m_setting;
    QPointer<QlumSideConnect> m_connect;
    QElapsedTimer m_timer;
    qint64 m_askedAt = -1;  ///< by the timer; the user is being asked since then
    qint64 m_answering = 0; ///< ms that the user has taken
    QString m_ignoredHost;
    bool m_isRunning = false;
    QlumJobPool m_pool; ///< last: joined first
};
