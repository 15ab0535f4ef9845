#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumlog.h>
#include <app/api/qlummetatypes.h>
#include <app/api/qlummodelinterface.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/attributes/qlumattributedetails.h>
#include <plugins/attributes/qlumattributenode.h>
#include <plugins/attributes/qlumattributerows.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/models/qlumtreemodel.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QList>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>
#include <vector>

class QlumApplicationInterface;

/// The attributes of one node as rows, values expanded; writes edited values to the server.
class QlumAttributeModel : public QlumTreeModel<QlumAttributeNode>, public QlumModelInterface
{
    Q_OBJECT
public:
    enum Column { NameColumn, ValueColumn, ColumnCount };
    /// How far the rows can be relied on.
    enum class Standing {
        Current,  ///< as last read; values can be written
        Outdated, ///< of the selected node, but its server cannot be asked, or has not answered
        Left      ///< of a node that is no longer selected; the next one is being read
    };
    enum Role {
        ValueRole = Qt::UserRole,          ///< UaVariant: the whole Value of a writable row
        DictionaryRole = Qt::UserRole + 2, ///< UaDataTypeDictionary*
        DataTypeRole = Qt::UserRole + 4,   ///< UaNodeId: of the Value
        FaultRole = Qt::UserRole + 5       ///< QString: why the row's value was not written; null for none
    };

    /// Shows data types with those of the names that are known when a node is shown.
    explicit QlumAttributeModel(QlumApplicationInterface& application, QObject* parent = nullptr,
                                QlumSessionServicesProvider services = qlumApplicationServices());
    ~QlumAttributeModel() override;

    [[nodiscard]] bool hasChildren(const QModelIndex& parent = QModelIndex()) const override;
    [[nodiscard]] bool canFetchMore(const QModelIndex& parent) const override;
    /// The next thousand elements of an array.
    void fetchMore(const QModelIndex& parent) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Edit role: a text, converted to the type of what the row shows. ValueRole: a UaVariant, the new Value
    /// as it is. Writes at once, under a wait cursor; true when the server took it.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// What is not Current is grey and cannot be written. A result that is shown is Current.
    void setStanding(Standing standing);
    [[nodiscard]] Standing standing() const { return m_standing; }

    /// qlumNoServer while no node is shown.
    [[nodiscard]] unsigned int serverId() const { return m_serverId; }
    /// Null while no node is shown.
    [[nodiscard]] const UaNodeId& nodeId() const { return m_nodeId; }
    /// The node that the row names, or is a detail of: the node itself, its data type, a node id in its
    /// Value. With a null id for rows that name none of this server, and for those of a node that was left.
    [[nodiscard]] QlumToolNode nodeIn(const QModelIndex& index) const;
    /// What the row shows, and what is known of its type; a null value for rows that are no part of the Value
    /// or only a detail of one.
    [[nodiscard]] QlumTypedValue rowValue(const QModelIndex& index) const;
    /// Of what the row has a place for: of its value, or of the one that an empty Value should get. Null
    /// where that is not known.
    [[nodiscard]] OpcUa_BuiltInType rowType(const QModelIndex& index) const;
    /// Why the row's value cannot be edited now, in words; empty when it can, and for rows that have no
    /// value.
    [[nodiscard]] QString lock(const QModelIndex& index) const;
    /// The whole Value with the row's part replaced.
    [[nodiscard]] UaStatusCode valueWithRow(const QModelIndex& index, const UaVariant& part,
                                            UaVariant& whole) const;

signals:
    /// Rows became reliable, or ceased to be.
    void standingChanged();
    /// A value that the user edited did not get into the node, for that reason in words.
    void writeFailed(const QString& why);
    /// The server has taken one.
    void written();

public slots:
    /// Shows what was read; takes the results.
    void setData(unsigned int serverId, const UaNodeId& nodeId, OpcUa_NodeClass nodeClass, int count,
                 const QList<int>& attributeIds, OpcUa_DataValue* results);
    /// Shows more of the node behind what is there; nothing when another one is shown by now.
    void addDetails(unsigned int serverId, const UaNodeId& nodeId, const QlumAttributeDetails& details);
    /// Shows nothing.
    void clear();

protected:
    [[nodiscard]] QVariant cell(const QlumAttributeNode& node, int column, int role) const override;

private:
    [[nodiscard]] QVariant text(const QlumAttributeNode& node, int column, int role) const;
    [[nodiscard]] static QString withRemark(const QlumAttributeNode& node);
    [[nodiscard]] UaNodeId nodeIdIn(const QModelIndex& index) const;
    [[nodiscard]] QlumStatusLevel levelOf(const QlumAttributeNode& node) const;
    void forget();

    void build(const QList<int>& attributeIds, UaDataValues& results);
    void takeDataType(const QList<int>& attributeIds, const UaDataValues& results);
    QlumAttributeNode& addAttribute(int attributeId, OpcUa_DataValue& result);
    QlumAttributeNode& addValue(OpcUa_DataValue& result);
    QlumAttributeNode& addCode(int attributeId, const UaVariant& value);
    QlumAttributeNode& addDataType(const UaVariant& value);
    QlumAttributeNode& addMistyped(int attributeId, const char* expected, const UaVariant& value);
    void addDetail(int attributeId, const UaDataValue& result);
    [[nodiscard]] QlumTypeHint valueHint() const;

    [[nodiscard]] bool stepsTo(const QlumAttributeNode& node, std::vector<QlumValueStep>& steps) const;
    [[nodiscard]] bool convertText(const QModelIndex& index, const QString& text, UaVariant& whole);
    bool write(const QModelIndex& index, const UaVariant& value);
    bool writeRefused(const QModelIndex& index, const UaStatus& status);
    void takeLock(const QList<int>& attributeIds, const UaDataValues& results);
    [[nodiscard]] QString faultOf(const QlumAttributeNode& node) const;
    [[nodiscard]] QString remarkOn(const QlumAttributeNode& node) const;
    [[nodiscard]] QlumLog log() const;

    QlumApplicationInterface& m_application;
    const QlumSessionServicesProvider m_services;
    QlumAttributeRows m_rows;
    std::unique_ptr<QlumAttributeNode> m_root;
    QlumAttributeNode* m_valueRow = nullptr; ///< carries the Value
    Standing m_standing = Standing::Current;
    unsigned int m_serverId = qlumNoServer;
    UaNodeId m_nodeId;
    OpcUa_NodeClass m_nodeClass = OpcUa_NodeClass_Unspecified;
    UaVariant m_value;
    UaNodeId m_dataTypeId;
    QString m_lock;                                 ///< why the Value may not be written
    QString m_fault;                                ///< of the last write; stays when the node is read again
    std::vector<QlumValueStep> m_faultSteps;        ///< to what was to be written
    std::shared_ptr<QlumSessionServices> m_session; ///< whose dictionary and names the rows use
};
