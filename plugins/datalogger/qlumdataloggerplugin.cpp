#include <plugins/datalogger/qlumdataloggerplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <uawidgets/qlumemptydocument.h>

#include <QString>
#include <QStringList>
#include <QWidget>

namespace {
const auto documentType = QStringLiteral("Data Logger View");
}

QlumDataLoggerPlugin::QlumDataLoggerPlugin()
{
    setObjectName(QStringLiteral("QlumDataLoggerPlugin"));
}

void QlumDataLoggerPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
}

void QlumDataLoggerPlugin::shutdown()
{
    m_app = nullptr;
}

QString QlumDataLoggerPlugin::name()
{
    return QStringLiteral("Data Logger Plugin");
}

QStringList QlumDataLoggerPlugin::documentTypes()
{
    return {documentType};
}

QWidget* QlumDataLoggerPlugin::createDocument(const QString& type)
{
    if (type != documentType)
        return nullptr;
    return new QlumEmptyDocument(type, tr("The data logger view is not part of this version."));
}

QString QlumDataLoggerPlugin::description(const QString& type)
{
    return type == documentType ? tr("<b>Data Logger View</b><br>Records the values of variables in files.")
                                : QString();
}
