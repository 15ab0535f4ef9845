#include <plugins/attributes/qlumattributeplugin.h>

#include <QDockWidget>
#include <QMainWindow>
#include <app/api/qlumapplicationinterface.h>
#include <uawidgets/qlumemptydocument.h>

QlumAttributePlugin::QlumAttributePlugin()
{
    setObjectName(QStringLiteral("QlumAttributePlugin"));
}

void QlumAttributePlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    m_dock = new QDockWidget(tr("Attributes"), app->mainWindow());
    m_dock->setObjectName(QStringLiteral("Attributes Dock Widget"));
    m_dock->setWhatsThis(tr("<b>Attributes</b><br>This window shows the attributes of the selected node. You "
                            "can change the selection in the address space window."));
    m_dock->setWidget(
        new QlumEmptyDocument(tr("Attributes"), tr("Select a node in the address space window.")));
    app->mainWindow()->addDockWidget(Qt::RightDockWidgetArea, m_dock);
}

void QlumAttributePlugin::shutdown()
{
    delete m_dock;
    m_app = nullptr;
}

QString QlumAttributePlugin::name()
{
    return QStringLiteral("UA Attribute Plugin");
}
