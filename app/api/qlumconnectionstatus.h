#pragma once
#include <QMap>
#include <QMetaType>

/// State of a server's connection as the project tree and the plugins see it.
enum class QlumConnectionStatus {
    Disconnected = 0,     ///< no session, or closed by the user
    Connecting = 1,       ///< a session is being opened
    Connected = 2,        ///< the session works
    ConnectFailed = 3,    ///< no session could be opened
    ConnectionError = 4,  ///< watchdog warning, reconnecting or server shut down
    NewSessionCreated = 5 ///< a lost session was replaced by a new one
};

/// True while the session exists on the server, be it interrupted at the moment.
[[nodiscard]] constexpr bool qlumIsConnected(QlumConnectionStatus status) noexcept
{
    return status == QlumConnectionStatus::Connected || status == QlumConnectionStatus::ConnectionError;
}

/// Namespace index stored in a project -> current index on the server.
using NamespaceMap = QMap<unsigned short, unsigned short>;

Q_DECLARE_METATYPE(QlumConnectionStatus)
