#include <plugins/gds/qlumgdsplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <uawidgets/qlumemptydocument.h>

#include <QString>
#include <QStringList>
#include <QWidget>

namespace {
const auto documentType = QStringLiteral("GDS View (Push Model)");
}

QlumGDSPlugin::QlumGDSPlugin()
{
    setObjectName(QStringLiteral("QlumGDSPlugin"));
}

void QlumGDSPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
}

void QlumGDSPlugin::shutdown()
{
    m_app = nullptr;
}

QString QlumGDSPlugin::name()
{
    return QStringLiteral("GDS Plugin");
}

QStringList QlumGDSPlugin::documentTypes()
{
    return {documentType};
}

QWidget* QlumGDSPlugin::createDocument(const QString& type)
{
    if (type != documentType)
        return nullptr;
    return new QlumEmptyDocument(type, tr("Server certificates can not be managed from this version."));
}

QString QlumGDSPlugin::description(const QString& type)
{
    return type == documentType ? tr("<b>GDS View (Push Model)</b><br>Manages the certificates and trust "
                                     "lists that a server keeps, through its configuration objects.")
                                : QString();
}
