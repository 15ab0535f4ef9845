#include <servers/qlumendpointmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <opcua/opcua_endpointurl.h>
#include <servers/qlumendpointchoice.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariant>

#include <algorithm>

namespace {
// Servers and users may call one host by different names.
QString withoutHost(const QString& text)
{
    const QUrl url(text);
    return QStringLiteral("%1|%2|%3").arg(url.scheme()).arg(url.port(OPCUA_DEFAULT_PORT)).arg(url.path());
}
} // namespace

QlumEndpointModel::QlumEndpointModel(QObject* parent)
    : QlumTableModel({tr("Security Policy"), tr("Security Mode"), tr("Level"), tr("Transport"),
                      tr("User Tokens"), tr("Remarks"), tr("Endpoint URL")},
                     parent)
{
}

void QlumEndpointModel::setEndpoints(const QVector<QlumEndpoint>& endpoints, int proposed)
{
    m_proposed = proposed;
    reset({endpoints.begin(), endpoints.end()});
}

int QlumEndpointModel::rowOf(const QString& url, const QString& securityPolicyUri, int securityMode) const
{
    const auto isWanted = [&](const QlumEndpoint& endpoint) {
        return withoutHost(endpoint.url) == withoutHost(url) &&
               endpoint.securityPolicyUri == securityPolicyUri && endpoint.securityMode == securityMode;
    };
    const auto found = std::find_if(rows().begin(), rows().end(), isWanted);
    return found == rows().end() ? -1 : static_cast<int>(found - rows().begin());
}

Qt::ItemFlags QlumEndpointModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags usual = QlumTableModel::flags(index);
    return index.isValid() && !qlumWhyUnsupported(rowAt(index.row())).isEmpty()
               ? usual & ~(Qt::ItemIsEnabled | Qt::ItemIsSelectable)
               : usual;
}

QVariant QlumEndpointModel::cell(const QlumEndpoint& endpoint, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return qlumCutText(qlumSingleLine(text(endpoint, column)));
    case Qt::ToolTipRole:
        return qlumPlainToolTip(toolTip(endpoint));
    case sortRole:
        if (column == Level)
            return endpoint.securityLevel;
        return column == Mode ? QVariant(endpoint.securityMode) : QVariant(text(endpoint, column));
    default:
        break;
    }
    if (column != Remark || !qlumWhyUnsupported(endpoint).isEmpty())
        return {};
    switch (qlumEndpointProtection(endpoint)) {
    case QlumEndpointProtection::None:
        return qlumStatusCell(QlumStatusLevel::Bad, role);
    case QlumEndpointProtection::Deprecated:
    case QlumEndpointProtection::SignedOnly:
        return qlumStatusCell(QlumStatusLevel::Uncertain, role);
    case QlumEndpointProtection::Full:
        break;
    }
    return {};
}

QString QlumEndpointModel::text(const QlumEndpoint& endpoint, int column) const
{
    switch (column) {
    case Policy:
        return qlumWhyUnsupported(endpoint).isEmpty()
                   ? qlumPolicyName(endpoint.securityPolicyUri)
                   : tr("%1 (not supported)").arg(qlumPolicyName(endpoint.securityPolicyUri));
    case Mode:
        return qlumSecurityModeName(endpoint.securityMode);
    case Level:
        return QString::number(endpoint.securityLevel);
    case Transport:
        return qlumTransportName(endpoint);
    case Users:
        return qlumTokenNames(endpoint);
    case Remark:
        return remark(endpoint);
    case Url:
        return endpoint.url;
    default:
        return {};
    }
}

QString QlumEndpointModel::remark(const QlumEndpoint& endpoint) const
{
    QStringList said;
    if (m_proposed >= 0 && m_proposed < rowCount() && &rowAt(m_proposed) == &endpoint)
        said.append(tr("Proposed"));
    if (const QString reason = qlumWhyUnsupported(endpoint); !reason.isEmpty())
        return reason;
    switch (qlumEndpointProtection(endpoint)) {
    case QlumEndpointProtection::None:
        said.append(tr("Not secured"));
        break;
    case QlumEndpointProtection::Deprecated:
        said.append(tr("Deprecated policy"));
        break;
    case QlumEndpointProtection::SignedOnly:
        said.append(tr("Not encrypted"));
        break;
    case QlumEndpointProtection::Full:
        break;
    }
    return said.join(QLatin1String(", "));
}

QString QlumEndpointModel::toolTip(const QlumEndpoint& endpoint)
{
    const QString reason = qlumWhyUnsupported(endpoint);
    const QString first = reason.isEmpty() ? QString() : reason + QLatin1Char('\n');
    return first + tr("%1\n%2\nApplication: %3\nApplication URI: %4")
                       .arg(qlumCutText(endpoint.url), qlumCutText(endpoint.securityPolicyUri),
                            qlumCutText(endpoint.applicationName), qlumCutText(endpoint.applicationUri));
}
