#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <plugins/attributes/qlumattributenode.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluepath.h>

#include <QCoreApplication>
#include <QString>

class QlumApplicationInterface;

/// Builds the rows of values. Arrays get theirs later, in portions; the builder must live as long as its
/// rows.
class QlumAttributeRows
{
    Q_DECLARE_TR_FUNCTIONS(QlumAttributeRows)
public:
    /// The application must outlive it.
    explicit QlumAttributeRows(QlumApplicationInterface& application);

    /// What the next rows are built with; the dictionary may be null.
    void setServer(unsigned int serverId, UaDataTypeDictionary* dictionary);
    /// May be null.
    [[nodiscard]] UaDataTypeDictionary* dictionary() const { return m_dictionary; }

    /// Each adds one row below parent, with what belongs under it, and answers it. This one: value, status
    /// and timestamps.
    QlumAttributeNode& addDataValue(QlumAttributeNode& parent, const QString& name, const UaDataValue& value,
                                    const QlumTypeHint& hint, QlumValueStep step = {});
    /// By the type of the value; arrays with a row for each element.
    QlumAttributeNode& addVariant(QlumAttributeNode& parent, const QString& name, const UaVariant& value,
                                  const QlumTypeHint& hint, QlumValueStep step = {});
    /// The parts of the id are details.
    QlumAttributeNode& addNodeId(QlumAttributeNode& parent, const QString& name, const UaNodeId& nodeId,
                                 QlumValueStep step = {});
    /// As is the node id in it.
    QlumAttributeNode& addExpandedNodeId(QlumAttributeNode& parent, const QString& name,
                                         const UaExpandedNodeId& nodeId, QlumValueStep step = {});
    /// With a row for each part that is there.
    QlumAttributeNode& addDiagnosticInfo(QlumAttributeNode& parent, const QString& name,
                                         const UaDiagnosticInfo& info, QlumValueStep step = {});
    /// With its fields when somebody has a definition of the structure, else as bytes.
    QlumAttributeNode& addExtensionObject(QlumAttributeNode& parent, const QString& name,
                                          const UaExtensionObject& object, const QlumTypeHint& hint,
                                          QlumValueStep step = {});
    /// The text of a scalar that has no rows of its own.
    [[nodiscard]] QString scalarText(const UaVariant& value, const QlumTypeHint& hint) const;

private:
    class ArrayRows;

    QlumAttributeNode& addScalar(QlumAttributeNode& parent, const QString& name, const UaVariant& value,
                                 const QlumTypeHint& hint, QlumValueStep step);
    [[nodiscard]] bool addFields(QlumAttributeNode& row, const UaByteString& body,
                                 const UaStructureDefinition& definition);
    [[nodiscard]] bool addSelectedField(QlumAttributeNode& row, const UaByteString& body,
                                        const UaStructureDefinition& definition);
    void addUndecoded(QlumAttributeNode& row, const UaExtensionObject& object);
    void addTimestamp(QlumAttributeNode& parent, const QString& name, OpcUa_DateTime value);
    [[nodiscard]] QString typeName(OpcUa_BuiltInType type) const;

    QlumApplicationInterface& m_application;
    UaDataTypeDictionary* m_dictionary = nullptr;
    unsigned int m_serverId = qlumNoServer;
};
