#include <plugins/serverdiagnostics/qlumserverdiagnosticplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <uawidgets/qlumemptydocument.h>

#include <QString>
#include <QStringList>
#include <QWidget>

namespace {
const auto documentType = QStringLiteral("Server Diagnostics View");
}

QlumServerDiagnosticPlugin::QlumServerDiagnosticPlugin()
{
    setObjectName(QStringLiteral("QlumServerDiagnosticPlugin"));
}

void QlumServerDiagnosticPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
}

void QlumServerDiagnosticPlugin::shutdown()
{
    m_app = nullptr;
}

QString QlumServerDiagnosticPlugin::name()
{
    return QStringLiteral("Server Diagnostic Plugin");
}

QStringList QlumServerDiagnosticPlugin::documentTypes()
{
    return {documentType};
}

QWidget* QlumServerDiagnosticPlugin::createDocument(const QString& type)
{
    if (type != documentType)
        return nullptr;
    return new QlumEmptyDocument(type, tr("The server diagnostics view is not part of this version. Its "
                                          "values are below Server in the address space."));
}

QString QlumServerDiagnosticPlugin::description(const QString& type)
{
    return type == documentType ? tr("<b>Server Diagnostics View</b><br>Shows what a server tells of "
                                     "itself: its status, sessions and subscriptions.")
                                : QString();
}
