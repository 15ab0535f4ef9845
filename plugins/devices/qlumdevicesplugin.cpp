#include <plugins/devices/qlumdevicesplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <plugins/devices/qlumdevicelist.h>

#include <QDesktopServices>
#include <QDialog>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>
#include <QStandardPaths>
#include <QStringList>
#include <QWidget>

#include <utility>
#include <vector>

namespace {
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

QlumDevicesPlugin::QlumDevicesPlugin()
    : QlumDocumentPlugin(QStringLiteral("QlumDevicesPlugin"), QStringLiteral("UA Devices Plugin"),
                         QStringLiteral("Devices View"))
{
}

QlumDevicesPlugin::~QlumDevicesPlugin() = default;

void QlumDevicesPlugin::begin()
{
    m_pools = std::make_shared<QlumDevicePools>();
}

void QlumDevicesPlugin::end()
{
    m_pools.reset();
}

QlumDevicesView* QlumDevicesPlugin::makeDocument(QlumApplicationInterface& app)
{
    return new QlumDevicesView(app, m_pools, qlumApplicationServices(), qlumApplicationMonitoring(),
                               deviceWorld());
}

QString QlumDevicesPlugin::documentText() const
{
    return tr("Shows the devices of a server with their health, nameplates, "
              "parameters, methods and documents, and configures them.");
}

void QlumDevicesPlugin::sessionRemoved(unsigned int serverId)
{
    QlumDocumentPlugin::sessionRemoved(serverId);
    m_pools->work.endServer(serverId);
    m_pools->locks.endServer(serverId);
}
