#pragma once
#include <opcua/opcua_types.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/values/uanodeid.h>

#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QWidget;
class QlumSettingsCBInterface;

/// Lower and upper end, both within.
struct QlumValueRange
{
    double low = 0;  ///< lower end
    double high = 0; ///< upper end
};

/// What is known of the place whose value is edited. Editors know no session: whatever of this is not at hand
/// stays empty, and the editor then offers less. Every question that it holds answers at once, on the GUI
/// thread; the answers are copied, so a context may outlive its server.
struct QlumValueContext
{
    UaNodeId dataType;                                ///< as declared; null when it is not known
    OpcUa_BuiltInType builtInType = OpcUaType_Null;   ///< what the data type is sent as; Null: any
    OpcUa_Int32 valueRank = -2;                       ///< OPC 10000-3, 5.6.2; -2: any
    std::vector<OpcUa_UInt32> arrayDimensions;        ///< 0 for a length that varies; empty: not declared
    std::shared_ptr<UaDataTypeDictionary> dictionary; ///< definitions that are at hand; may be null
    std::optional<QlumValueRange> euRange;            ///< values outside are remarked, not refused
    std::optional<QlumValueRange> instrumentRange;    ///< the same
    QString unit;                                     ///< shown behind numbers
    std::optional<OpcUa_UInt32> maxStringLength;      ///< bytes; of strings and byte strings
    UaEnumDefinition valueNames; ///< what the variable itself calls its numbers; of a Boolean 0 and 1
    QString accessFault;         ///< why the value cannot be written, in words; empty when it can

    /// Name of a data type that somebody has read already; empty when nobody has.
    std::function<QString(const UaNodeId& dataType)> typeName;
    /// What can be given where an abstract type is declared.
    std::function<std::vector<UaNodeId>(const UaNodeId& dataType)> concreteTypes;
    /// Has the user choose a node of the server, null when he gave up. Runs a nested event loop.
    std::function<UaNodeId(QWidget* parent, const UaNodeId& start)> browseNode;
    /// Where editors keep settings of their own, offered by the dialog around them; may be null.
    QlumSettingsCBInterface* settings = nullptr;
};

/// Null when the declared type is no option set that is known; those of the structured form are among them.
[[nodiscard]] UaOptionSetDefinition qlumOptionSetDefinition(const QlumValueContext& context);
/// The built-in types that a value may have: one where the declared type has one, several for an abstract
/// type of numbers, all that a variant can hold where anything may be given or nothing is known.
[[nodiscard]] std::vector<OpcUa_BuiltInType> qlumAllowedTypes(const QlumValueContext& context);
/// The declared type for the user: its name where that is known, else its node id, else the built-in type's
/// name; empty when nothing is declared.
[[nodiscard]] QString qlumDeclaredTypeName(const QlumValueContext& context);

/// What an editor keeps from one use to the next, by the dialog around it; standard without one.
[[nodiscard]] QVariant qlumEditorSetting(const QlumValueContext& context, const QString& key,
                                         const QVariant& standard);
/// Keeps it, where there is somebody who does.
void qlumKeepEditorSetting(const QlumValueContext& context, const QString& key, const QVariant& value);
