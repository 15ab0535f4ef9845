#include <plugins/datalogger/qlumdataloggerplugin.h>

#include <uawidgets/qlumemptydocument.h>

namespace {
const auto kDocumentType = QStringLiteral("Data Logger View");
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
    return {kDocumentType};
}

QWidget* QlumDataLoggerPlugin::createDocument(const QString& type)
{
    if (type != kDocumentType)
        return nullptr;
    return new QlumEmptyDocument(type, tr("The data logger view is not part of this version."));
}

QString QlumDataLoggerPlugin::description(const QString& type)
{
    return type == kDocumentType ? tr("<b>Data Logger View</b><br>Records the values of variables in files.")
                                 : QString();
}
