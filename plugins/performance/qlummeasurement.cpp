#include <plugins/performance/qlummeasurement.h>

#include <QCoreApplication>

namespace {
class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumMeasurement)
};
} // namespace

QString qlumMeasuredName(QlumMeasuredKind kind)
{
    switch (kind) {
    case QlumMeasuredKind::Read:
        return Text::tr("Read");
    case QlumMeasuredKind::Write:
        return Text::tr("Write");
    case QlumMeasuredKind::Browse:
        return Text::tr("Browse");
    case QlumMeasuredKind::TranslatePaths:
        return Text::tr("TranslateBrowsePathsToNodeIds");
    case QlumMeasuredKind::ReadRegistered:
        return Text::tr("Read of registered nodes");
    case QlumMeasuredKind::Call:
        return Text::tr("Call");
    case QlumMeasuredKind::Session:
        return Text::tr("CreateSession and CloseSession");
    case QlumMeasuredKind::MonitoredItems:
        return Text::tr("CreateMonitoredItems and DeleteMonitoredItems");
    case QlumMeasuredKind::Notifications:
        return Text::tr("Delay of notifications");
    }
    return {};
}
