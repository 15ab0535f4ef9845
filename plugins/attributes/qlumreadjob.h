#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumlog.h>
#include <app/api/qlummetatypes.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/attributes/qlumattributedetails.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluefacts.h>

#include <QList>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

/// Reads all attributes of a node on a pool thread, and then what the server has besides. What fails is
/// logged.
class QlumReadJob : public QObject, public QlumJob
{
    Q_OBJECT
public:
    /// Without a node class that is read first.
    QlumReadJob(unsigned int serverId, const UaNodeId& nodeId, std::optional<OpcUa_NodeClass> nodeClass,
                QlumSessionServicesProvider services = qlumApplicationServices());
    ~QlumReadJob() override;

    void run() override;

signals:
    /// Sent before newData when the node class was not known.
    void nodeClassRead(unsigned int serverId, const UaNodeId& nodeId, OpcUa_NodeClass nodeClass);
    /// The results change owner with the signal; connect it once.
    void newData(unsigned int serverId, const UaNodeId& nodeId, OpcUa_NodeClass nodeClass, int count,
                 const QList<int>& attributeIds, OpcUa_DataValue* results);

    /// Sent after newData when the server has more to say.
    void detailsRead(unsigned int serverId, const UaNodeId& nodeId, const QlumAttributeDetails& details);

    /// Nothing could be read, for that reason; not sent once the job is cancelled.
    void failed(unsigned int serverId, const UaNodeId& nodeId, const QString& why);

private:
    void tellFailure(const QString& why);
    bool readNodeClass(QlumSessionServices& session);
    void readAttributes(const std::shared_ptr<QlumSessionServices>& session);
    void takeFacts(const QList<int>& attributeIds, const UaDataValues& values);
    void readDetails(const std::shared_ptr<QlumSessionServices>& session);
    void readProperties(QlumSessionServices& session, QlumAttributeDetails& details) const;
    void prepareType(QlumSessionServices& session, const UaVariant& value, const UaVariant& dataType) const;
    void prepareEncodings(QlumSessionServices& session, const UaVariant& value) const;

    const unsigned int m_serverId;
    const QlumLog m_log;
    const UaNodeId m_nodeId;
    std::optional<OpcUa_NodeClass> m_nodeClass;
    const QlumSessionServicesProvider m_services;
    QlumValueFacts m_facts; ///< of the Value
    UaVariant m_value;
};
