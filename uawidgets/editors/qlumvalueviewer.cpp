#include <uawidgets/editors/qlumvalueviewer.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumtoolservices.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluedialog.h>
#include <uawidgets/editors/qlumvaluefacts.h>

#include <QMainWindow>
#include <QObject>
#include <QString>

#include <memory>
#include <utility>

namespace {
class ValueViewers : public QObject
{
public:
    ValueViewers(QObject* owner, QlumSessionServicesProvider provider)
        : QObject(owner), m_provider(std::move(provider))
    {
    }

    void show(unsigned int serverId, const UaVariant& value, const UaNodeId& dataType)
    {
        const std::shared_ptr<QlumSessionServices> server = m_provider(serverId);
        if (!server || !server->isConnected())
            return open(value, withoutServer(value, dataType), serverId);
        m_pool.add({QObject::tr("Reading the types of a value"), serverId}, [=](QlumJob& job) {
            QlumContextReader reader(server, job);
            QlumValueFacts facts;
            facts.dataType = dataType;
            const QlumValueContext context = reader.of(facts);
            reader.learn(value);
            job.post([=] { open(value, context, serverId); });
        });
    }

private:
    static QlumValueContext withoutServer(const UaVariant& value, const UaNodeId& dataType)
    {
        QlumValueContext context;
        context.dataType = dataType;
        context.builtInType = value.type();
        return context;
    }

    static void open(const UaVariant& value, QlumValueContext context, unsigned int serverId)
    {
        QlumApplicationInterface* application = QlumApplicationInterface::instance();
        context.accessFault.clear(); // nobody writes here
        if (context.builtInType == OpcUaType_Null)
            context.builtInType = value.type();
        auto* viewer = new QlumValueDialog(context, application ? application->mainWindow() : nullptr,
                                           QStringLiteral("QlumValueViewer"));
        viewer->setAttribute(Qt::WA_DeleteOnClose);
        viewer->setModal(false);
        viewer->setHeading(application ? application->serverName(serverId) : QString());
        viewer->setReadOnly(true);
        viewer->setValue(value);
        viewer->show();
    }

    const QlumSessionServicesProvider m_provider;
    QlumJobPool m_pool;
};
} // namespace

void qlumTakeValues(QlumToolServices& services, QObject* owner, QlumSessionServicesProvider provider)
{
    auto* viewers = new ValueViewers(owner, std::move(provider));
    services.takeShowValue(owner,
                           [viewers](unsigned int serverId, const UaVariant& value,
                                     const UaNodeId& dataType) { viewers->show(serverId, value, dataType); });
}
