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
#include <plugins/attributes/qlumattributewriter.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/models/qlumtreemodel.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QList>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <map>
#include <memory>
#include <optional>
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
        FaultRole = Qt::UserRole + 5,      ///< QString: why the row's value was not written; null for none
        PartRole = Qt::UserRole + 6        ///< UaVariant, to be set only: the new value of the row's own part
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
    /// as it is. PartRole: a UaVariant in the place of what the row shows. Writes at once, under a wait
    /// cursor; true when the server took it. Elements of the Value are written alone where the server takes
    /// that, fields of a structure and parts of other attributes with the whole, unless that has changed
    /// since it was shown.
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
    /// Below which node one was found that is shown, or will be. Methods are called on it.
    void setFoundBelow(unsigned int serverId, const UaNodeId& nodeId, const UaNodeId& parentId)
    {
        m_found = {serverId, nodeId, OpcUa_NodeClass_Method, parentId, {}};
    }
    /// What the row shows, and what is known of its type; a null value for rows that are no part of the Value
    /// or only a detail of one.
    [[nodiscard]] QlumTypedValue rowValue(const QModelIndex& index) const;
    /// Of what the row has a place for: of its value, or of the one that an empty Value should get. Null
    /// where that is not known.
    [[nodiscard]] OpcUa_BuiltInType rowType(const QModelIndex& index) const;
    /// Why the row's value cannot be edited now, in words; empty when it can, and for rows that only describe
    /// another one or could not be read.
    [[nodiscard]] QString lock(const QModelIndex& index) const;
    /// The whole Value, or other attribute, with the row's part replaced.
    [[nodiscard]] UaStatusCode valueWithRow(const QModelIndex& index, const UaVariant& part,
                                            UaVariant& whole) const;
    /// Whether something was written that undo() can take back.
    [[nodiscard]] bool canUndo() const { return !m_undo.empty(); }
    /// Writes what was there before the last write that succeeded; true when the server took it.
    bool undo();
    /// Shows a newer Value in the place of the one that is there; nothing when another node is shown.
    void showValue(unsigned int serverId, const UaNodeId& nodeId, const UaDataValue& value);
    /// What an editor has to know of the row's value; without ranges and lengths until the details are there.
    [[nodiscard]] QlumValueContext editContext(const QModelIndex& index) const;
    /// What the row's value is part of, to be written when the rows may be others. It answers why that was
    /// not done, in words; empty when it was. What belongs together with other fields is refused once when
    /// the Value is not any more what it is now. Empty itself for rows that have none.
    [[nodiscard]] std::function<QString(const UaVariant& part)> partWriter(const QModelIndex& index);
    /// What was read of an attribute; null for those that were not, or badly.
    [[nodiscard]] UaVariant attribute(int attributeId) const;

signals:
    /// Rows became reliable, or ceased to be.
    void standingChanged();
    /// A value that the user edited did not get into the node, for that reason in words.
    void writeFailed(const QString& why);
    /// The server has taken one.
    void written();
    /// What is shown may not be what the server has any more, and somebody should read it. With isSelected
    /// who hears of it has heard by the application, too, that the node is selected.
    void shownIsOld(bool isSelected);
    /// One was written, but not quite as the user may think, for that reason in words.
    void remarked(const QString& what);
    /// canUndo() says something else now.
    void undoChanged();

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
    QlumAttributeNode& addDetail(int attributeId, const UaDataValue& result);
    void takeWritable(QlumAttributeNode& row, int attributeId) const;
    [[nodiscard]] QlumTypeHint valueHint() const;

    /// What can be written: an attribute or a part of it.
    struct Place
    {
        int attributeId = 0;
        std::vector<QlumValueStep> steps;

        friend bool operator==(const Place&, const Place&) = default;
    };
    /// What was at a place, or is to be there.
    struct Placed
    {
        Place place;
        UaVariant value;
    };

    [[nodiscard]] QString maskLock(int attributeId) const;
    [[nodiscard]] QString maskFault(OpcUa_UInt32 bit, const QString& name) const;
    [[nodiscard]] static int attributeOf(const QlumAttributeNode& node);
    [[nodiscard]] bool placeOf(const QlumAttributeNode& node, Place& place) const;
    [[nodiscard]] QlumTypedValue wholeOf(int attributeId) const;
    [[nodiscard]] QlumTypedValue valueAt(const Place& place) const;
    [[nodiscard]] bool convertText(const QModelIndex& index, const QString& text, UaVariant& part);
    QlumWriteOutcome write(const Placed& placed, const UaVariant& shown, bool isUndo,
                           const QModelIndex& index);
    [[nodiscard]] QlumWriteOutcome send(QlumAttributeWriter& writer, const Placed& placed,
                                        const UaVariant& shown) const;
    [[nodiscard]] static QlumWriteOutcome sendTogether(QlumAttributeWriter& writer, const Placed& placed,
                                                       const UaVariant& shown);
    [[nodiscard]] QlumWriteOutcome sendWhole(QlumAttributeWriter& writer, const Placed& placed,
                                             const UaVariant& shown, bool isElement) const;
    [[nodiscard]] QString sentText(const Placed& placed, OpcUa_StatusCode code) const;
    void finish(const Placed& placed, const QlumWriteOutcome& outcome, const QModelIndex& index);
    void writeRefused(const Place& place, const QString& why, const QModelIndex& index);
    void compareWithWritten(const QList<int>& attributeIds);
    void forgetWrites();
    void takeLock();
    [[nodiscard]] QString faultOf(const QlumAttributeNode& node) const;
    [[nodiscard]] QString remarkOn(const QlumAttributeNode& node) const;
    [[nodiscard]] QString writePart(unsigned int serverId, const UaNodeId& nodeId, const Placed& placed,
                                    std::optional<UaVariant>& shown);
    void rememberUndo(const Place& place, const UaVariant& before);
    QlumAttributeNode& addValueRow(const UaDataValue& value);
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
    QlumToolNode m_found; ///< the last one of which it is known where it is
    UaVariant m_value;
    UaNodeId m_dataTypeId;
    QlumValueContext m_context;                     ///< of the Value, once its details were read
    QString m_lock;                                 ///< why the Value may not be written
    QString m_fault;                                ///< of the last write; stays when the node is read again
    Place m_faultPlace;                             ///< what was to be written then
    std::map<int, UaVariant> m_attributes;          ///< those besides the Value that were read well
    std::optional<OpcUa_UInt32> m_writeMask;        ///< of the attributes besides the Value
    std::vector<Placed> m_undo;                     ///< what was there before each write; the last one first
    std::optional<Placed> m_expected;               ///< was written and not read again yet
    std::shared_ptr<QlumSessionServices> m_session; ///< whose dictionary and names the rows use
};
