// State of a server's connection as the project tree and the plugins see it.
#pragma once
#include <QMap>
#include <QMetaType>

enum class QlumConnectionStatus {
    Disconnected = 0,
    Connecting = 1,
    Connected = 2,
    ConnectFailed = 3,
    ConnectionError = 4, ///< watchdog warning, reconnecting or server shut down
    NewSessionCreated = 5
};

/// True while the session exists on the server, be it interrupted at the moment.
[[nodiscard]] constexpr bool qlumIsConnected(QlumConnectionStatus status) noexcept
{
    return status == QlumConnectionStatus::Connected || status == QlumConnectionStatus::ConnectionError;
}

/// Namespace index stored in a project -> current index on the server.
using NamespaceMap = QMap<unsigned short, unsigned short>;

Q_DECLARE_METATYPE(QlumConnectionStatus)
