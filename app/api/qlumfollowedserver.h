// The one server that a document shows, which is as a rule the one that is selected in the project.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>

#include <QHash>
#include <QString>
#include <QWidget>

/// Which server it is and how its connection stands. The application outlives it.
class QlumFollowedServer
{
public:
    /// Follows none at first.
    explicit QlumFollowedServer(QlumApplicationInterface& application) : m_application(application) {}

    /// What a selection means: where no server is selected, the only one of the project is.
    [[nodiscard]] unsigned int meant(unsigned int selected) const;
    /// qlumNoServer for none.
    [[nodiscard]] unsigned int id() const { return m_id; }
    /// Whether there is one.
    [[nodiscard]] bool isAny() const { return m_id != qlumNoServer; }
    /// For the user; empty for none.
    [[nodiscard]] QString name() const;
    /// Disconnected for none, and for one of which nothing was told.
    [[nodiscard]] QlumConnectionStatus status() const;
    /// Whether its session can be used.
    [[nodiscard]] bool isUp() const;

    /// From now on it is that one; the document's tab is told.
    void follow(QWidget& document, unsigned int serverId);
    /// Of any server. True when a session has begun on which the followed one is to be read anew.
    [[nodiscard]] bool setStatus(unsigned int serverId, QlumConnectionStatus status);
    /// The project has the server no more.
    void forget(unsigned int serverId) { m_status.remove(serverId); }

private:
    QlumApplicationInterface& m_application;
    QHash<unsigned int, QlumConnectionStatus> m_status;
    unsigned int m_id = qlumNoServer;
};
