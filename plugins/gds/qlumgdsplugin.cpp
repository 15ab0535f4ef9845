#include <plugins/gds/qlumgdsplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <certificates/qlumcertificates.h>
#include <plugins/gds/qlumpushplandialog.h>
#include <plugins/gds/qlumpushsigning.h>

#include <QDialog>

namespace {
const QString gdsPushView = QStringLiteral("GDS View (Push Model)");

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
{
    setObjectName(QStringLiteral("QlumGDSPlugin"));
}

QlumGDSPlugin::~QlumGDSPlugin() = default;

void QlumGDSPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    m_pools = std::make_shared<QlumServerPools>();
}

void QlumGDSPlugin::shutdown()
{
    m_documents.destroy();
    m_pools.reset();
    m_app = nullptr;
}

QString QlumGDSPlugin::name()
{
    return QStringLiteral("GDS Plugin");
}

// ---- documents

QStringList QlumGDSPlugin::documentTypes()
{
    return {gdsPushView};
}

QWidget* QlumGDSPlugin::createDocument(const QString& type)
{
    if (type != gdsPushView || !m_app)
        return nullptr;
    auto* document = new QlumPushView(*m_app, m_pools, qlumApplicationServices(), pushWorld());
    m_documents.add(document);
    return document;
}

QString QlumGDSPlugin::description(const QString& type)
{
    return type == gdsPushView
               ? tr("<b>GDS View (Push Model)</b><br>Manages the certificates and trust lists that a server "
                    "keeps, through its configuration objects.")
               : QString();
}

// ---- servers

void QlumGDSPlugin::serverSelectionChanged(unsigned int serverId)
{
    m_documents.serverSelectionChanged(serverId);
}

void QlumGDSPlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                         const NamespaceMap&)
{
    m_documents.sessionStatusChanged(serverId, status);
}

void QlumGDSPlugin::sessionRemoved(unsigned int serverId)
{
    m_documents.sessionRemoved(serverId);
    m_pools->endServer(serverId);
}
