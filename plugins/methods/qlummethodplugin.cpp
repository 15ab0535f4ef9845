#include <plugins/methods/qlummethodplugin.h>

#include <app/api/qlumapplicationinterface.h>

#include <QString>

QlumMethodPlugin::QlumMethodPlugin()
{
    setObjectName(QStringLiteral("QlumMethodPlugin"));
}

void QlumMethodPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
}

void QlumMethodPlugin::shutdown()
{
    m_app = nullptr;
}

QString QlumMethodPlugin::name()
{
    return QStringLiteral("UA Method Plugin");
}
