// What the cells of a data access view show.
#include <plugins/dataaccess/qlumdamodel.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlummetatypes.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <plugins/dataaccess/qlumdapart.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumdatafield.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QDate>
#include <QDateTime>
#include <QLocale>
#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

namespace {

constexpr double ticksOfSecond = 1e7;

QString shortTime(OpcUa_DateTime time)
{
    const QDateTime local = qlumDateTime(time);
    if (!local.isValid())
        return {};
    const bool isToday = qlumTimeLook().isUtc ? local.toUTC().date() == QDateTime::currentDateTimeUtc().date()
                                              : local.date() == QDate::currentDate();
    return isToday ? qlumShowTime(local) : qlumShowDateTime(local);
}

QString longTime(OpcUa_DateTime time)
{
    return qlumShowDateTime(time);
}

bool isDoubtful(QlumStatusLevel level)
{
    return level == QlumStatusLevel::Bad || level == QlumStatusLevel::Uncertain;
}

QVariant numberOrNothing(double number)
{
    return std::isnan(number) ? QVariant() : QVariant(number);
}

} // namespace

QString qlumDaSpan(OpcUa_DateTime span)
{
    constexpr double minute = 60, hour = 3600, day = 86400, tenths = 10;
    const double seconds = std::max(0.0, static_cast<double>(span) / ticksOfSecond);
    const QLocale locale;
    if (seconds < tenths)
        return QlumDaModel::tr("%1 s").arg(locale.toString(seconds, 'f', 1));
    if (seconds < minute)
        return QlumDaModel::tr("%1 s").arg(locale.toString(seconds, 'f', 0));
    if (seconds < hour)
        return QlumDaModel::tr("%1 min %2 s").arg(int(seconds / minute)).arg(int(std::fmod(seconds, minute)));
    if (seconds < day)
        return QlumDaModel::tr("%1 h %2 min")
            .arg(int(seconds / hour))
            .arg(int(std::fmod(seconds, hour) / minute));
    return QlumDaModel::tr("%1 d %2 h").arg(int(seconds / day)).arg(int(std::fmod(seconds, day) / hour));
}

bool QlumDaModel::isOffline(const QlumDataItem& item) const
{
    return item.state != QlumDataState::Unresolved && item.state != QlumDataState::NoServer &&
           server(item.serverId).status != QlumConnectionStatus::Connected;
}

// ---- status

QString QlumDaModel::statusText(const QlumDataItem& item) const
{
    const QlumDaServer server = this->server(item.serverId);
    switch (item.state) {
    case QlumDataState::Unresolved:
        return item.problem;
    case QlumDataState::NoServer:
        return tr("Its server is not in the project");
    case QlumDataState::NamespaceGone:
        return isOffline(item) ? tr("Offline; its namespace \"%1\" is not known yet").arg(item.namespaceUri)
                               : tr("The server has no namespace \"%1\" now").arg(item.namespaceUri);
    default:
        break;
    }
    if (isOffline(item))
        return server.since == 0 ? tr("Offline") : tr("Offline since %1").arg(shortTime(server.since));
    if (item.state == QlumDataState::Refused)
        return tr("Refused: %1").arg(qlumResultText(UaStatus(item.reason.code())));
    if (item.received == 0)
        return item.state == QlumDataState::Waiting ? tr("Waiting for its turn") : tr("No value yet");
    QString text = qlumStatusText(item.value.statusCode().code());
    if (item.state == QlumDataState::Read)
        text = tr("%1, read every %2").arg(text, qlumDaInterval(settingsOf(item).readInterval));
    constexpr OpcUa_DateTime worthTelling = 60 * 10'000'000LL;
    return m_clock() - server.recovered < worthTelling ? tr("%1, %2").arg(text, recoveryText(server)) : text;
}

QString QlumDaModel::recoveryText(const QlumDaServer& server)
{
    switch (server.recovery) {
    case QlumDaServer::Recovery::Resumed:
        return tr("resumed at %1: the server had kept it").arg(shortTime(server.recovered));
    case QlumDaServer::Recovery::Renewed:
        return tr("created again at %1 in a new session").arg(shortTime(server.recovered));
    case QlumDaServer::Recovery::None:
        break;
    }
    return tr("never interrupted");
}

QlumStatusLevel QlumDaModel::level(const QlumDataItem& item) const
{
    switch (item.state) {
    case QlumDataState::Unresolved:
    case QlumDataState::NoServer:
    case QlumDataState::NamespaceGone:
        return QlumStatusLevel::Bad;
    default:
        break;
    }
    if (isOffline(item))
        return QlumStatusLevel::Inactive;
    if (item.state == QlumDataState::Refused)
        return QlumStatusLevel::Bad;
    return item.received == 0 ? QlumStatusLevel::Inactive : qlumStatusLevel(item.value.statusCode().code());
}

// ---- texts

QVariant QlumDaModel::timeText(const QlumDataItem& item, int column) const
{
    if (item.received == 0)
        return {};
    switch (column) {
    case SourceTime:
        return shortTime(item.value.sourceTimestamp().value());
    case ServerTime:
        return shortTime(item.value.serverTimestamp().value());
    case Received:
        return shortTime(item.received);
    default:
        return qlumDaSpan(m_clock() - item.received);
    }
}

QVariant QlumDaModel::settingText(const QlumDataItem& item, int column) const
{
    const QlumDataSettings& settings = settingsOf(item);
    const bool isWatched = item.state == QlumDataState::Watched;
    switch (column) {
    case SamplingAsked:
        return qlumDaInterval(settings.samplingInterval < 0 ? settings.publishingInterval
                                                            : settings.samplingInterval);
    case SamplingRevised:
        return isWatched ? qlumDaInterval(item.revisedSampling) : QVariant();
    default:
        return !isWatched || item.revisedQueue == settings.queueSize
                   ? QString::number(settings.queueSize)
                   : tr("%1 (asked %2)").arg(item.revisedQueue).arg(settings.queueSize);
    }
}

QVariant QlumDaModel::text(const QlumDataItem& item, int column) const
{
    switch (column) {
    case Number:
        return rowOf(item.key) + 1;
    case Server:
        return qlumSingleLine(m_application.serverName(item.serverId));
    case NodeId:
        return qlumSingleLine(item.nodeId.isNull() ? QString() : toQString(item.nodeId.toXmlString())) +
               (item.indexRange.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(item.indexRange));
    case DisplayName:
        return qlumSingleLine(item.fieldPath.isEmpty() ? item.displayName
                              : item.fieldPath.startsWith(QLatin1Char('['))
                                  ? item.displayName + item.fieldPath
                                  : item.displayName + QLatin1Char('.') + item.fieldPath);
    case BrowsePath:
        return qlumSingleLine(item.browsePath);
    case Value:
        return valueText(item);
    case DataType:
        return qlumSingleLine(item.dataTypeName);
    case Unit:
        return qlumSingleLine(item.unit);
    case Status:
        return qlumSingleLine(statusText(item));
    case Verdict:
        return verdict(item).word;
    case Changes:
        return item.changes;
    case Minimum:
        return numberOrNothing(item.minimum);
    case Maximum:
        return numberOrNothing(item.maximum);
    case SamplingAsked:
    case SamplingRevised:
    case Queue:
        return settingText(item, column);
    default:
        return timeText(item, column);
    }
}

QVariant QlumDaModel::sortKey(const QlumDataItem& item, int column) const
{
    switch (column) {
    case Value:
        if (const std::optional<double> number = qlumDaNumber(shownValue(item)))
            return *number;
        return valueText(item);
    case SourceTime:
        return static_cast<qlonglong>(item.value.sourceTimestamp().value());
    case ServerTime:
        return static_cast<qlonglong>(item.value.serverTimestamp().value());
    case Received:
        return static_cast<qlonglong>(item.received);
    case Age:
        return -static_cast<qlonglong>(item.received);
    case SamplingAsked:
        return settingsOf(item).samplingInterval < 0 ? settingsOf(item).publishingInterval
                                                     : settingsOf(item).samplingInterval;
    case SamplingRevised:
        return item.revisedSampling;
    case Queue:
        return item.revisedQueue;
    default:
        return text(item, column);
    }
}

QString QlumDaModel::toolTip(const QlumDataItem& item, int column) const
{
    switch (column) {
    case Verdict:
        return verdict(item).reason;
    case Status:
        return item.state == QlumDataState::Refused
                   ? qlumResultInWords(UaStatus(item.reason.code()))
                   : QStringLiteral("%1 (%2)").arg(statusText(item), recoveryText(server(item.serverId)));
    case SourceTime:
        return longTime(item.value.sourceTimestamp().value());
    case ServerTime:
        return longTime(item.value.serverTimestamp().value());
    case Value:
        if (const QString fault = writeFault(item); !fault.isEmpty())
            return tr("Not written: %1").arg(fault);
        return isDoubtful(level(item)) ? QStringLiteral("%1 (%2)").arg(valueText(item), statusText(item))
                                       : valueText(item);
    case Received:
    case Age:
        return item.received == 0 ? QString() : longTime(item.received);
    case SamplingRevised:
        return tr("What the server has made of the sampling interval that was asked for.");
    case NodeId:
        return item.namespaceUri.isEmpty() ? QString() : tr("Namespace: %1").arg(item.namespaceUri);
    default:
        return text(item, column).toString();
    }
}

// What the server has revised is marked by icon and colour as well as by its number.
QVariant QlumDaModel::look(const QlumDataItem& item, int column, int role) const
{
    if (column == Status)
        return qlumStatusCell(level(item), role);
    if (column == Verdict)
        return qlumStatusCell(verdict(item).level, role);
    if (column == Value && !writeFault(item).isEmpty())
        return qlumStatusCell(QlumStatusLevel::Bad, role);
    if (column == Value && isDoubtful(level(item))) // the column of the status may be out of sight
        return qlumStatusCell(level(item), role);
    const bool isRevised =
        item.state == QlumDataState::Watched &&
        ((column == Queue && item.revisedQueue != settingsOf(item).queueSize) ||
         (column == SamplingRevised && item.revisedSampling > sortKey(item, SamplingAsked).toDouble()));
    if (isRevised)
        return qlumStatusCell(QlumStatusLevel::Uncertain, role);
    const bool isGrey = isOffline(item) || item.state == QlumDataState::NamespaceGone ||
                        item.state == QlumDataState::NoServer;
    return isGrey && role == Qt::ForegroundRole ? qlumStatusCell(QlumStatusLevel::Inactive, role)
                                                : QVariant();
}

// A field has the type that its structure gives it.
QVariant QlumDaModel::typedValue(const QlumDataItem& item, int role) const
{
    const std::shared_ptr<const QlumValueContext> known = typeContext(item);
    QlumValueContext context = known ? *known : QlumValueContext();
    context.dataType = item.dataType;
    if (role == DictionaryRole)
        return QVariant::fromValue(context.dictionary.get());
    const UaVariant value = item.fieldPath.isEmpty()
                                ? shownValue(item)
                                : qlumFieldOf(item.value.value(), item.fieldPath, context);
    return role == ValueRole ? QVariant::fromValue(value) : QVariant::fromValue(context.dataType);
}

QVariant QlumDaModel::cell(const QlumDataItem& item, int column, int role) const
{
    if (role == KeyRole)
        return item.key;
    if (column == Value && (role == ValueRole || role == DictionaryRole || role == DataTypeRole))
        return typedValue(item, role);
    if (column == NewValue)
        return m_newValues != nullptr
                   ? m_newValues->newValueCell(item, role == SortRole ? int(Qt::DisplayRole) : role)
                   : QVariant();
    switch (role) {
    case Qt::DisplayRole:
        return text(item, column);
    case SortRole:
        return sortKey(item, column);
    case Qt::ToolTipRole:
        return qlumPlainToolTip(toolTip(item, column));
    case Qt::TextAlignmentRole:
        return column == Number || (column >= Changes && column <= Age)
                   ? QVariant(int(Qt::AlignRight | Qt::AlignVCenter))
                   : QVariant();
    default:
        return look(item, column, role);
    }
}

Qt::ItemFlags QlumDaModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QlumTableModel::flags(index);
    const bool isEditable = index.column() == Value || (index.column() == NewValue && m_newValues != nullptr);
    return isEditable ? flags | Qt::ItemIsEditable : flags;
}
