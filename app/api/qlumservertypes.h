#pragma once
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <QString>

#include <optional>
#include <vector>

/// What is known of the types of one server. Any thread; a question may block for a few service calls where
/// it does not say otherwise, so jobs ask and views show what is known. Failures are logged and answered by
/// an empty value.
class QlumServerTypes
{
public:
    QlumServerTypes() = default;
    virtual ~QlumServerTypes() = default;
    QlumServerTypes(const QlumServerTypes&) = delete;
    QlumServerTypes& operator=(const QlumServerTypes&) = delete;

    /// Display name of a type, or the inverse name of a reference type; empty when it cannot be read.
    [[nodiscard]] virtual QString typeName(const UaNodeId& id, bool useInverseName = false) = 0;
    /// The display name when somebody has read it already; never blocks.
    [[nodiscard]] virtual std::optional<QString> knownTypeName(const UaNodeId& id) const = 0;
    /// Null when the type is no enumeration, the id is null or there is no connection.
    [[nodiscard]] virtual UaEnumDefinition getEnumDefinition(const UaNodeId* dataTypeId) = 0;
    /// Whether there is such a definition.
    [[nodiscard]] virtual bool isEnum(const UaNodeId* dataTypeId) = 0;
    /// What values of a data type are sent as: its own for built-in types, Variant for abstract ones, Int32
    /// for enumerations, ExtensionObject for structures; Null when nobody knows.
    [[nodiscard]] virtual OpcUa_BuiltInType builtInType(const UaNodeId& dataTypeId) = 0;
    /// The data types that values of the type may have: itself and all that derive from it, none of them
    /// abstract. Their names are known afterwards.
    [[nodiscard]] virtual std::vector<UaNodeId> concreteTypes(const UaNodeId& dataTypeId) = 0;
    /// Data type, rank, dimensions and names of a variable, read anew; every pointer may be null.
    [[nodiscard]] virtual UaStatus readDataTypeId(const UaNodeId& id, UaNodeId* dataType, int* valueRank,
                                                  UaUInt32Array* arrayDimensions, QString* typeName,
                                                  UaLocalizedText* displayName) = 0;
};
