#include <plugins/devices/qlumdevicesplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <plugins/devices/qlumdevicelist.h>

#include <QDesktopServices>
#include <QDialog>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QStandardPaths>

#include <utility>
#include <vector>

namespace {
const QString devicesViewType = QStringLiteral("Devices View");

std::vector<QlumParameterDifference> chooseDifferences(QWidget* parent, const QString& heading,
                                                       const QString& otherTitle,
                                                       std::vector<QlumParameterDifference> differences,
                                                       const QStringList& remarks)
{
    const QPointer<QWidget> stillThere = parent;
    const QPointer<QlumDeviceDifferenceDialog> dialog =
        new QlumDeviceDifferenceDialog(heading, otherTitle, std::move(differences), remarks, parent);
    const bool isTaken = dialog->exec() == QDialog::Accepted && dialog && stillThere;
    const std::vector<QlumParameterDifference> chosen =
        isTaken ? dialog->wanted() : std::vector<QlumParameterDifference>();
    delete dialog;
    return chosen;
}

QlumDeviceWorld deviceWorld()
{
    return {[](QWidget* parent, const QString& question) {
                return QMessageBox::question(parent, QlumDevicesView::tr("Devices View"), question,
                                             QMessageBox::Yes | QMessageBox::No,
                                             QMessageBox::No) == QMessageBox::Yes;
            },
            &chooseDifferences,
            [](QWidget* parent, const QString& proposed, const QString& filter) {
                return QFileDialog::getSaveFileName(parent, QlumDevicesView::tr("Save"), proposed, filter);
            },
            [](QWidget* parent, const QString& filter) {
                return QFileDialog::getOpenFileName(
                    parent, QlumDevicesView::tr("Load Parameter Set"),
                    QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), filter);
            },
            &QDesktopServices::openUrl};
}
} // namespace

QlumDevicesPlugin::QlumDevicesPlugin() : m_selected(qlumNoServer)
{
    setObjectName(QStringLiteral("QlumDevicesPlugin"));
}

QlumDevicesPlugin::~QlumDevicesPlugin() = default;

void QlumDevicesPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    m_pools = std::make_shared<QlumDevicePools>();
}

void QlumDevicesPlugin::shutdown()
{
    for (QlumDevicesView* const document : documents())
        delete document; // whoever has kept one: what it calls ends here
    m_pools.reset();
    m_app = nullptr;
}

QString QlumDevicesPlugin::name()
{
    return QStringLiteral("UA Devices Plugin");
}

// ---- documents

QStringList QlumDevicesPlugin::documentTypes()
{
    return {devicesViewType};
}

QWidget* QlumDevicesPlugin::createDocument(const QString& type)
{
    if (type != devicesViewType || !m_app)
        return nullptr;
    auto* document = new QlumDevicesView(*m_app, m_pools, qlumApplicationServices(),
                                         qlumApplicationMonitoring(), deviceWorld());
    for (auto state = m_states.cbegin(); state != m_states.cend(); ++state)
        document->sessionStatusChanged(state.key(), state.value());
    document->serverSelectionChanged(m_selected);
    m_documents.append(document);
    return document;
}

QString QlumDevicesPlugin::description(const QString& type)
{
    return type == devicesViewType
               ? tr("<b>Devices View</b><br>Shows the devices of a server with their health, nameplates, "
                    "parameters, methods and documents, and configures them.")
               : QString();
}

QList<QlumDevicesView*> QlumDevicesPlugin::documents()
{
    m_documents.removeAll(QPointer<QlumDevicesView>());
    QList<QlumDevicesView*> open;
    for (const QPointer<QlumDevicesView>& document : qAsConst(m_documents))
        open.append(document);
    return open;
}

// ---- servers

void QlumDevicesPlugin::serverSelectionChanged(unsigned int serverId)
{
    m_selected = serverId;
    for (QlumDevicesView* const document : documents())
        document->serverSelectionChanged(serverId);
}

void QlumDevicesPlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                             const NamespaceMap&)
{
    m_states.insert(serverId, status == QlumConnectionStatus::NewSessionCreated
                                  ? QlumConnectionStatus::Connected
                                  : status);
    for (QlumDevicesView* const document : documents())
        document->sessionStatusChanged(serverId, status);
}

void QlumDevicesPlugin::sessionRemoved(unsigned int serverId)
{
    m_states.remove(serverId);
    if (m_selected == serverId)
        m_selected = qlumNoServer;
    for (QlumDevicesView* const document : documents())
        document->sessionRemoved(serverId);
    m_pools->work.endServer(serverId);
    m_pools->locks.endServer(serverId);
}
