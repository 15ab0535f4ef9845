#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumplugininterface.h>

#include <QObject>
#include <QString>
#include <QStringList>
#include <QWidget>

class QlumDataLoggerPlugin : public QObject,
                             public QlumPluginInterface,
                             public QlumDocumentInterface,
                             public QlumAppEventAdapter
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumDataLoggerPlugin();

    void init(QlumApplicationInterface* app) override;
    void shutdown() override;
    QString name() override;

    QStringList documentTypes() override;
    QWidget* createDocument(const QString& type) override;
    QString description(const QString& type) override;

private:
    QlumApplicationInterface* m_app = nullptr;
};
