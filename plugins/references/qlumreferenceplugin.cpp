#include <plugins/references/qlumreferenceplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdocksize.h>
#include <uawidgets/qlumemptydocument.h>

#include <QDockWidget>
#include <QMainWindow>
#include <QString>

QlumReferencePlugin::QlumReferencePlugin()
{
    setObjectName(QStringLiteral("QlumReferencePlugin"));
}

void QlumReferencePlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    m_dock = new QDockWidget(tr("References"), app->mainWindow());
    m_dock->setObjectName(QStringLiteral("References Dock Widget"));
    m_dock->setWhatsThis(tr("<b>References</b><br>This window shows the references of the node that is "
                            "selected in the address space window."));
    m_dock->setWidget(new QlumEmptyDocument(tr("References"),
                                            tr("The reference view is not part of this version. Hierarchical "
                                               "references can be followed in the address space.")));
    qlumSetInitialDockSize(m_dock, {0, 140});
    app->mainWindow()->addDockWidget(Qt::RightDockWidgetArea, m_dock);
}

void QlumReferencePlugin::shutdown()
{
    delete m_dock;
    m_app = nullptr;
}

QString QlumReferencePlugin::name()
{
    return QStringLiteral("UA Reference Plugin");
}
