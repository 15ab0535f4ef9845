#include <plugins/gds/qlumgdsplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <certificates/qlumcertificates.h>
#include <plugins/gds/qlumpushplandialog.h>
#include <plugins/gds/qlumpushsigning.h>

#include <QDialog>
#include <QWidget>

namespace {
QlumPushWorld pushWorld()
{
    return {[] { return QlumCertificates::instance()->certificate(); }, &qlumAuthorityFolder,
            [](QWidget* parent, const QlumPushPlan& plan) {
                QlumPushPlanDialog dialog(plan, parent);
                return dialog.exec() == QDialog::Accepted;
            }};
}
} // namespace

QlumGDSPlugin::QlumGDSPlugin()
    : QlumDocumentPlugin(QStringLiteral("QlumGDSPlugin"), QStringLiteral("GDS Plugin"),
                         QStringLiteral("GDS View (Push Model)"))
{
}

QlumGDSPlugin::~QlumGDSPlugin() = default;

void QlumGDSPlugin::begin()
{
    m_pools = std::make_shared<QlumServerPools>();
}

void QlumGDSPlugin::end()
{
    m_pools.reset();
}

QlumPushView* QlumGDSPlugin::makeDocument(QlumApplicationInterface& app)
{
    return new QlumPushView(app, m_pools, qlumApplicationServices(), pushWorld());
}

QString QlumGDSPlugin::documentText() const
{
    return tr("Manages the certificates and trust lists that a server "
              "keeps, through its configuration objects.");
}

void QlumGDSPlugin::sessionRemoved(unsigned int serverId)
{
    QlumDocumentPlugin::sessionRemoved(serverId);
    m_pools->endServer(serverId);
}
