// What is shown of a node beside the attributes that every node of its class has.
#pragma once
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepath.h>

#include <QList>
#include <QString>

#include <map>
#include <string>
#include <utility>
#include <vector>

/// What the server has of it; copies share the values.
struct QlumAttributeDetails
{
    std::vector<std::pair<int, UaDataValue>> attributes; ///< by id; none that the node lacks
    std::map<std::string, UaVariant> properties;         ///< by name, of those that describe the Value
    QlumValueContext context; ///< for editors of the Value; of variables and their types only
};

/// One row: a name and a text.
struct QlumDetail
{
    QString name;
    QString text;
};

/// The names of the properties that describe a Value: its unit, its range, its texts.
[[nodiscard]] const std::vector<std::string>& qlumDescribingProperties();
/// "Double", "Point Array[3]", "Int32 Matrix [2][3]"; empty for a null value. The dictionary may be null.
[[nodiscard]] QString qlumTypeText(const UaVariant& value, const QlumTypeHint& hint,
                                   UaDataTypeDictionary* dictionary);
/// What there is to say about a Value: its type, and what the properties tell.
[[nodiscard]] QList<QlumDetail> qlumValueDetails(const QlumTypedValue& value,
                                                 const std::map<std::string, UaVariant>& properties,
                                                 UaDataTypeDictionary* dictionary);
