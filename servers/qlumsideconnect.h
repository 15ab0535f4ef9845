#pragma once
#include <app/api/qlumtoolservices.h>
#include <servers/qlumconnectflow.h>
#include <servers/qlumconnectprompts.h>
#include <servers/qlumdiscoverysetting.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uasession.h>

#include <QObject>

#include <functional>
#include <memory>

class QlumGuardedServer;
class QlumServerNode;

/// One attempt to open a session beside that of the project. The session belongs to whoever is told of it,
/// and disconnects when nobody holds it any more. GUI thread.
class QlumSideConnect : public QObject
{
    Q_OBJECT
public:
    /// Begins it; the session is guarded as that of the project's server. done is called once, at the latest
    /// when this goes; the attempt deletes itself when it has ended. A null identity: as the settings say.
    /// Without prompts the user is asked in dialogs.
    QlumSideConnect(const std::shared_ptr<QlumGuardedServer>& server, const QlumDiscoverySetting& setting,
                    const QlumIdentity& identity, std::unique_ptr<QlumConnectPrompts> prompts,
                    QlumSideSessionDone done, QObject* parent);
    ~QlumSideConnect() override;

private:
    class SideSession;

    void take(QlumConnectFlow::Result result);
    void tell(const std::shared_ptr<UaClientSdk::UaSession>& session, const UaStatus& status);

    QlumSideSessionDone m_done;
    std::shared_ptr<SideSession> m_session;
    const std::unique_ptr<QlumConnectPrompts> m_prompts;
    std::unique_ptr<QlumConnectFlow> m_flow;
};

/// The server of the project with that id; null for none.
using QlumFindServer = std::function<QlumServerNode*(unsigned int serverId)>;
/// The prompts of one more session.
using QlumMakePrompts = std::function<std::unique_ptr<QlumConnectPrompts>()>;

/// Opens sessions beside those of the project's servers, and connects these anew, for the tools that ask for
/// it. A session is cancelled when its server is removed. Without makePrompts users are asked in dialogs.
void qlumTakeServers(QlumToolServices& services, QObject* owner, const QlumFindServer& find,
                     const QlumMakePrompts& makePrompts = nullptr);
