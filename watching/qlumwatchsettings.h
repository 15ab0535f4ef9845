// How values are watched, as the user asks for it.
#pragma once
#include <monitoring/watch.h>
#include <opcua/opcua_types.h>

#include <QString>
#include <QStringList>

/// Changes below which a server is not to report a value.
enum class QlumDeadband : unsigned char {
    None,     ///< all are reported
    Absolute, ///< in units of the value
    Percent   ///< of the range that the node says it has
};

/// What counts as a change.
enum class QlumDataTrigger : unsigned char {
    Status,              ///< another status
    StatusValue,         ///< or another value
    StatusValueTimestamp ///< or another time of the source
};

/// How a row is watched, as the user asks for it.
struct QlumDataSettings
{
    double publishingInterval = 1000.0; ///< ms
    double samplingInterval = -1.0;     ///< ms; -1: as often as published, 0: as fast as the server can
    quint32 queueSize = 1;              ///< values kept at the server between two notifications
    bool discardOldest = true;          ///< when that is full
    QlumDeadband deadband = QlumDeadband::None;
    double deadbandValue = 0.0; ///< in the unit of the deadband
    QlumDataTrigger trigger = QlumDataTrigger::StatusValue;
    OpcUa_TimestampsToReturn timestamps = OpcUa_TimestampsToReturn_Both;
    OpcUa_MonitoringMode mode = OpcUa_MonitoringMode_Reporting;
    quint8 priority = 0;          ///< of its subscription; higher ones are sent first
    quint32 lifetimeCount = 1200; ///< publishing intervals
    double readInterval = 0.0;    ///< ms; above 0 the value is read so often instead of being watched

    /// Equal in all.
    bool operator==(const QlumDataSettings&) const = default;
};

/// In the order of QlumDeadband, as they are stored.
[[nodiscard]] QStringList qlumDaDeadbands();
/// In the order of QlumDataTrigger.
[[nodiscard]] QStringList qlumDaTriggers();
/// In the order of OpcUa_TimestampsToReturn.
[[nodiscard]] QStringList qlumDaTimestamps();
/// In the order of OpcUa_MonitoringMode.
[[nodiscard]] QStringList qlumDaModes();
/// One of these lists as the user reads it, in the same order.
[[nodiscard]] QStringList qlumDaWords(const QStringList& stored);
/// One line for the project: what differs from a fresh QlumDataSettings.
[[nodiscard]] QString qlumStoredDaSettings(const QlumDataSettings& settings);
/// The reverse; what makes no sense stays as in a fresh one.
[[nodiscard]] QlumDataSettings qlumRestoredDaSettings(const QString& line);

/// "500 ms", "1 s", "fastest" for an interval as a setting has it.
[[nodiscard]] QString qlumDaInterval(double milliseconds);
/// The settings as monitoring has them.
[[nodiscard]] monitoring::ItemSettings qlumMonitoringSettings(const QlumDataSettings& settings);
