#include <plugins/datalogger/qlumdataloggerplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/datalogger/qlumloggersettings.h>
#include <plugins/datalogger/qlumloggerview.h>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <span>
#include <utility>

namespace {
const QString dataLoggerView = QStringLiteral("Data Logger View");
}

QlumDataLoggerPlugin::QlumDataLoggerPlugin()
    : QlumDataLoggerPlugin(qlumApplicationServices(), qlumApplicationMonitoring())
{
}

QlumDataLoggerPlugin::QlumDataLoggerPlugin(QlumSessionServicesProvider services,
                                           QlumMonitoringProvider monitoring)
    : m_services(std::move(services)), m_monitoring(std::move(monitoring))
{
    setObjectName(QStringLiteral("QlumDataLoggerPlugin"));
}

void QlumDataLoggerPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    qlumRegisterLoggerSettings();
    if (QlumToolServices* tools = QlumToolServices::instance()) {
        QlumNodeTaker taker;
        taker.documentType = dataLoggerView;
        taker.add = [](QWidget* document, std::span<const QlumToolNode> nodes) {
            if (auto* view = qobject_cast<QlumLoggerView*>(document))
                view->addNodes(nodes);
        };
        tools->takeNodes(this, taker);
    }
}

void QlumDataLoggerPlugin::shutdown()
{
    m_views.clear(); // they belong to the application's window, and have gone with the project
    m_app = nullptr;
}

QString QlumDataLoggerPlugin::name()
{
    return QStringLiteral("Data Logger Plugin");
}

// ---- documents

QStringList QlumDataLoggerPlugin::documentTypes()
{
    return {dataLoggerView};
}

QWidget* QlumDataLoggerPlugin::createDocument(const QString& type)
{
    if (type != dataLoggerView || m_app == nullptr)
        return nullptr;
    auto* view = new QlumLoggerView(*m_app, m_services, m_monitoring);
    for (auto status = m_status.cbegin(); status != m_status.cend(); ++status)
        view->sessionStatusChanged(status.key(), status.value());
    m_views.append(view);
    return view;
}

QString QlumDataLoggerPlugin::description(const QString& type)
{
    return type == dataLoggerView
               ? tr("<b>Data Logger View</b><br>Records the values of variables of one or more servers "
                    "in files, and says where something is missing.")
               : QString();
}

QList<QlumLoggerView*> QlumDataLoggerPlugin::views() const
{
    QList<QlumLoggerView*> result;
    for (const QPointer<QlumLoggerView>& view : m_views)
        if (view)
            result.append(view);
    return result;
}

// A view that is opened later has to know how the servers stand.
void QlumDataLoggerPlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                                const NamespaceMap&)
{
    m_status.insert(serverId, status == QlumConnectionStatus::NewSessionCreated
                                  ? QlumConnectionStatus::Connected
                                  : status);
    for (QlumLoggerView* view : views())
        view->sessionStatusChanged(serverId, status);
}

void QlumDataLoggerPlugin::sessionRemoved(unsigned int serverId)
{
    m_status.remove(serverId);
    for (QlumLoggerView* view : views())
        view->sessionRemoved(serverId);
}
