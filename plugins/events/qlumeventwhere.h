// Conditions that events are to meet: as a where clause for servers, and for ourselves where a server
// refuses.
#pragma once
#include <monitoring/namespaces.h>
#include <opcua/opcua_types.h>
#include <plugins/events/qlumbrowsepath.h>
#include <plugins/events/qlumevent.h>
#include <uabase/values/uacontentfilter.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

/// One condition. Several are read from the top: "and" binds closer than "or", and brackets closer than both.
/// One that nobody closes ends with the last condition; one too many that closes says nothing.
struct QlumEventCondition
{
    /// What is looked at.
    enum Kind {
        OfType,   ///< the event's type or one above it
        Severity, ///< that or more
        Source,   ///< the name of the source
        Field     ///< any field, by an operator
    };

    bool isOr = false;      ///< how it goes with what stands above it; else "and"
    bool isNegated = false; ///< "not"
    Kind kind = Severity;
    UaNodeId type;                                                     ///< of OfType
    BrowsePathList field;                                              ///< of Field
    OpcUa_FilterOperator filterOperator = OpcUa_FilterOperator_Equals; ///< of Field
    UaVariant value;                                                   ///< of the others
    int opens = 0;                                                     ///< brackets before it
    int closes = 0;                                                    ///< brackets behind it

    friend bool operator==(const QlumEventCondition&, const QlumEventCondition&) = default;
};
using QlumEventConditions = std::vector<QlumEventCondition>;

/// Brackets that a condition opens or closes.
inline constexpr int qlumMostBrackets = 3;

/// The operators that a field can be compared by, with how they are shown.
struct QlumFieldOperator
{
    OpcUa_FilterOperator filterOperator;
    const char* text;
};
[[nodiscard]] const std::vector<QlumFieldOperator>& qlumFieldOperators();

/// "(not Severity >= 500", without how it is joined; types by name.
[[nodiscard]] QString qlumConditionText(const QlumEventCondition& condition,
                                        const std::function<QString(const UaNodeId&)>& typeName);
/// The clause, and which of the conditions each of its elements is made of; -1 for those that join others.
[[nodiscard]] UaContentFilter qlumWhereClause(const QlumEventConditions& conditions,
                                              std::vector<int>* rows = nullptr);
/// Whether the event meets them, as a server would say; derives tells whether a type is another one or below
/// it. What a refresh needs always passes, and so do all when there are no conditions.
[[nodiscard]] bool qlumMeets(const QlumEvent& event, const QlumEventConditions& conditions,
                             const std::function<bool(const UaNodeId& type, const UaNodeId& base)>& derives);
/// Lines that a project keeps; lines that make no sense are left out when they are read.
[[nodiscard]] QStringList qlumStoredConditions(const QlumEventConditions& conditions);
[[nodiscard]] QlumEventConditions qlumReadConditions(const QStringList& lines);
/// Takes away the conditions whose namespace is gone.
void qlumRemap(QlumEventConditions& conditions, const monitoring::NamespaceMap& namespaces);
