#include <plugins/dataaccess/qlumdaplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <uawidgets/qlumemptydocument.h>

#include <QString>
#include <QStringList>
#include <QWidget>

namespace {
const auto documentType = QStringLiteral("Data Access View");
}

QlumDaPlugin::QlumDaPlugin()
{
    setObjectName(QStringLiteral("QlumDaPlugin"));
}

void QlumDaPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
}

void QlumDaPlugin::shutdown()
{
    m_app = nullptr;
}

QString QlumDaPlugin::name()
{
    return QStringLiteral("Data Access Plugin");
}

QStringList QlumDaPlugin::documentTypes()
{
    return {documentType};
}

QWidget* QlumDaPlugin::createDocument(const QString& type)
{
    if (type != documentType)
        return nullptr;
    return new QlumEmptyDocument(type, tr("The data access view is not part of this version. Single values "
                                          "can be read in the attribute view."));
}

QString QlumDaPlugin::description(const QString& type)
{
    return type == documentType ? tr("<b>Data Access View</b><br>Watches the values of variables of one or "
                                     "more servers and writes them.")
                                : QString();
}
