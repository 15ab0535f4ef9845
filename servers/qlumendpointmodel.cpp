#include <servers/qlumendpointmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumguithread.h>
#include <opcua/opcua_endpointurl.h>

#include <QModelIndex>
#include <QString>
#include <QUrl>
#include <QVariant>
#include <QVector>

namespace {
// Servers and users may call one host by different names.
QString withoutHost(const QString& text)
{
    const QUrl url(text);
    return QStringLiteral("%1|%2|%3").arg(url.scheme()).arg(url.port(OPCUA_DEFAULT_PORT)).arg(url.path());
}
} // namespace

void QlumEndpointModel::setEndpoints(const QVector<QlumEndpoint>& endpoints)
{
    qlumAssertGuiThread();
    beginResetModel();
    m_endpoints = endpoints;
    endResetModel();
}

int QlumEndpointModel::rowOf(const QString& url, const QString& securityPolicyUri, int securityMode) const
{
    for (int row = 0; row < m_endpoints.size(); ++row) {
        const QlumEndpoint& endpoint = m_endpoints.at(row);
        if (withoutHost(endpoint.url) == withoutHost(url) &&
            endpoint.securityPolicyUri == securityPolicyUri && endpoint.securityMode == securityMode)
            return row;
    }
    return -1;
}

int QlumEndpointModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_endpoints.size();
}

int QlumEndpointModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant QlumEndpointModel::data(const QModelIndex& index, int role) const
{
    qlumAssertGuiThread();
    if (!index.isValid())
        return {};
    const QlumEndpoint& endpoint = m_endpoints.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return qlumCutText(qlumSingleLine(text(endpoint, index.column())));
    case Qt::ToolTipRole:
        return qlumPlainToolTip(toolTip(endpoint));
    case sortRole:
        if (index.column() == Level)
            return endpoint.securityLevel;
        return index.column() == Mode ? QVariant(endpoint.securityMode)
                                      : QVariant(text(endpoint, index.column()));
    default:
        return {};
    }
}

QString QlumEndpointModel::text(const QlumEndpoint& endpoint, int column)
{
    switch (column) {
    case Policy:
        return qlumPolicyName(endpoint.securityPolicyUri);
    case Mode:
        return qlumSecurityModeName(endpoint.securityMode);
    case Url:
        return endpoint.url;
    case Level:
        return QString::number(endpoint.securityLevel);
    default:
        return {};
    }
}

QString QlumEndpointModel::toolTip(const QlumEndpoint& endpoint)
{
    return tr("%1\n%2\nApplication: %3\nApplication URI: %4")
        .arg(qlumCutText(endpoint.url), qlumCutText(endpoint.securityPolicyUri),
             qlumCutText(endpoint.applicationName), qlumCutText(endpoint.applicationUri));
}

QVariant QlumEndpointModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Policy:
        return tr("Security Policy");
    case Mode:
        return tr("Security Mode");
    case Url:
        return tr("Endpoint URL");
    case Level:
        return tr("Level");
    default:
        return {};
    }
}
