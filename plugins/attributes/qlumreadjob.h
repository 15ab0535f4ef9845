#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlummetatypes.h>
#include <app/api/qlumsessionservices.h>
#include <uabase/values/uanodeid.h>

#include <QList>
#include <QObject>
#include <QString>

class QlumAttributeModel;

/// Reads all attributes of a node and hands them to the model on the GUI thread.
class QlumReadJob : public QObject, public QlumJob
{
    Q_OBJECT
public:
    QlumReadJob(unsigned int serverId, const UaNodeId& nodeId, OpcUa_NodeClass nodeClass,
                QlumAttributeModel* model, QlumSessionServicesProvider services = qlumApplicationServices());
    ~QlumReadJob() override;

    void run() override;

signals:
    /// The results change owner with the signal.
    void newData(unsigned int serverId, const UaNodeId& nodeId, OpcUa_NodeClass nodeClass, int count,
                 const QList<int>& attributeIds, OpcUa_DataValue* results);

private:
    UaReadValueIds nodesToRead(const QList<int>& attributeIds) const;
    void prepareDefinitions(QlumSessionServices& session, const UaDataValues& values) const;
    void log(int level, const QString& text) const;

    const unsigned int m_serverId;
    const UaNodeId m_nodeId;
    const OpcUa_NodeClass m_nodeClass;
    const QlumSessionServicesProvider m_services;
};
