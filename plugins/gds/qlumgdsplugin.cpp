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

QlumGDSPlugin::QlumGDSPlugin() : m_selected(qlumNoServer)
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
    for (QlumPushView* const document : documents())
        delete document; // whoever has kept one: what it calls ends here
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
    for (auto state = m_states.cbegin(); state != m_states.cend(); ++state)
        document->sessionStatusChanged(state.key(), state.value());
    document->serverSelectionChanged(m_selected);
    m_documents.append(document);
    return document;
}

QString QlumGDSPlugin::description(const QString& type)
{
    return type == gdsPushView
               ? tr("<b>GDS View (Push Model)</b><br>Manages the certificates and trust lists that a server "
                    "keeps, through its configuration objects.")
               : QString();
}

QList<QlumPushView*> QlumGDSPlugin::documents()
{
    m_documents.removeAll(QPointer<QlumPushView>());
    QList<QlumPushView*> open;
    for (const QPointer<QlumPushView>& document : qAsConst(m_documents))
        open.append(document);
    return open;
}

// ---- servers

void QlumGDSPlugin::serverSelectionChanged(unsigned int serverId)
{
    m_selected = serverId;
    for (QlumPushView* const document : documents())
        document->serverSelectionChanged(serverId);
}

void QlumGDSPlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                         const NamespaceMap&)
{
    m_states.insert(serverId, status);
    for (QlumPushView* const document : documents())
        document->sessionStatusChanged(serverId, status);
}

void QlumGDSPlugin::sessionRemoved(unsigned int serverId)
{
    m_states.remove(serverId);
    if (m_selected == serverId)
        m_selected = qlumNoServer;
    for (QlumPushView* const document : documents())
        document->sessionRemoved(serverId);
    m_pools->endServer(serverId);
}
