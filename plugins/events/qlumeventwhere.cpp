#include <plugins/events/qlumeventwhere.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace {
class WhereTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumEventWhere)
};

constexpr int maximumConditions = 100;

// What the user has written, as the type that he most likely means.
UaVariant literalOf(const QString& text)
{
    bool isNumber = false;
    if (text == QLatin1String("true") || text == QLatin1String("false"))
        return UaVariant(text == QLatin1String("true"));
    if (const int number = text.toInt(&isNumber); isNumber)
        return UaVariant(static_cast<OpcUa_Int32>(number));
    if (const double number = text.toDouble(&isNumber); isNumber)
        return UaVariant(number);
    return UaVariant(toUaString(text));
}

UaFilterOperand fieldOperand(const BrowsePathList& path)
{
    return path.isEmpty()
               ? UaFilterOperand::attribute(UaNodeId(OpcUaId_ConditionType), {}, OpcUa_Attributes_NodeId)
               : UaFilterOperand::attribute(UaNodeId(OpcUaId_BaseEventType), path.names(),
                                            OpcUa_Attributes_Value);
}

UaFilterOperand fieldOperand(const char* name)
{
    return fieldOperand(BrowsePathList({UaQualifiedName(UaString(name), 0)}));
}

// ---- the clause as a tree, before its elements have their places

struct Element
{
    OpcUa_FilterOperator filterOperator = OpcUa_FilterOperator_And;
    std::vector<UaFilterOperand> operands;
    std::vector<std::unique_ptr<Element>> parts;
    int row = -1;
};
using ElementPointer = std::unique_ptr<Element>;

ElementPointer join(OpcUa_FilterOperator how, ElementPointer left, ElementPointer right)
{
    if (!left)
        return right;
    auto joined = std::make_unique<Element>();
    joined->filterOperator = how;
    joined->parts.push_back(std::move(left));
    joined->parts.push_back(std::move(right));
    return joined;
}

ElementPointer elementOf(const QlumEventCondition& condition, int row)
{
    auto element = std::make_unique<Element>();
    element->row = row;
    switch (condition.kind) {
    case QlumEventCondition::OfType:
        element->filterOperator = OpcUa_FilterOperator_OfType;
        element->operands = {UaFilterOperand::literal(UaVariant(condition.type))};
        break;
    case QlumEventCondition::Severity:
        element->filterOperator = OpcUa_FilterOperator_GreaterThanOrEqual;
        element->operands = {
            fieldOperand("Severity"),
            UaFilterOperand::literal(UaVariant(static_cast<OpcUa_UInt16>(condition.value.toUShort())))};
        break;
    case QlumEventCondition::Source:
        element->filterOperator = OpcUa_FilterOperator_Equals;
        element->operands = {fieldOperand("SourceName"),
                             UaFilterOperand::literal(UaVariant(toUaString(condition.value)))};
        break;
    case QlumEventCondition::Field:
        element->filterOperator = condition.filterOperator;
        element->operands = {fieldOperand(condition.field)};
        if (condition.filterOperator != OpcUa_FilterOperator_IsNull)
            element->operands.push_back(UaFilterOperand::literal(literalOf(condition.value)));
        break;
    }
    if (!condition.isNegated)
        return element;
    auto negation = std::make_unique<Element>();
    negation->filterOperator = OpcUa_FilterOperator_Not;
    negation->parts.push_back(std::move(element));
    return negation;
}

// ---- on our own

int compare(const UaVariant& left, const UaVariant& right)
{
    bool isLeft = false;
    bool isRight = false;
    const double a = left.toDouble(&isLeft);
    const double b = right.toDouble(&isRight);
    if (isLeft && isRight)
        return a < b ? -1 : a > b ? 1 : 0;
    return toQString(left.toString()).compare(toQString(right.toString()));
}

// "%" for any text, "_" for any character, as the standard has it.
bool isLike(const QString& text, const QString& pattern)
{
    QString expression = QRegularExpression::escape(pattern);
    expression.replace(QLatin1String("\\%"), QLatin1String(".*"))
        .replace(QLatin1Char('%'), QLatin1String(".*"));
    expression.replace(QLatin1String("\\_"), QLatin1String(".")).replace(QLatin1Char('_'), QLatin1Char('.'));
    return QRegularExpression(QRegularExpression::anchoredPattern(expression),
                              QRegularExpression::DotMatchesEverythingOption)
        .match(text)
        .hasMatch();
}

bool isMetBy(const UaVariant& field, const QlumEventCondition& condition)
{
    if (condition.filterOperator == OpcUa_FilterOperator_IsNull)
        return field.isNull();
    if (field.isNull())
        return false;
    if (condition.filterOperator == OpcUa_FilterOperator_Like)
        return isLike(toQString(field.toString()), condition.value);
    const int order = compare(field, literalOf(condition.value));
    switch (condition.filterOperator) {
    case OpcUa_FilterOperator_GreaterThan:
        return order > 0;
    case OpcUa_FilterOperator_LessThan:
        return order < 0;
    case OpcUa_FilterOperator_GreaterThanOrEqual:
        return order >= 0;
    case OpcUa_FilterOperator_LessThanOrEqual:
        return order <= 0;
    default:
        return order == 0;
    }
}

bool meetsOne(const QlumEvent& event, const QlumEventCondition& condition,
              const std::function<bool(const UaNodeId&, const UaNodeId&)>& derives)
{
    bool isMet = false;
    switch (condition.kind) {
    case QlumEventCondition::OfType:
        isMet = event.eventType() == condition.type || derives(event.eventType(), condition.type);
        break;
    case QlumEventCondition::Severity:
        isMet = event.severity() >= condition.value.toInt();
        break;
    case QlumEventCondition::Source:
        isMet = toQString(event.fields.value(QlumField::SourceName).toString()) == condition.value;
        break;
    case QlumEventCondition::Field:
        isMet = isMetBy(event.fields.value(condition.field.fieldName()), condition);
        break;
    }
    return isMet != condition.isNegated;
}
} // namespace

const std::vector<QlumFieldOperator>& qlumFieldOperators()
{
    static const std::vector<QlumFieldOperator> operators{{OpcUa_FilterOperator_Equals, "="},
                                                          {OpcUa_FilterOperator_GreaterThan, ">"},
                                                          {OpcUa_FilterOperator_GreaterThanOrEqual, ">="},
                                                          {OpcUa_FilterOperator_LessThan, "<"},
                                                          {OpcUa_FilterOperator_LessThanOrEqual, "<="},
                                                          {OpcUa_FilterOperator_Like, "like"},
                                                          {OpcUa_FilterOperator_IsNull, "is null"}};
    return operators;
}

QString qlumConditionText(const QlumEventCondition& condition,
                          const std::function<QString(const UaNodeId&)>& typeName)
{
    QString text;
    switch (condition.kind) {
    case QlumEventCondition::OfType:
        text = WhereTexts::tr("of type %1").arg(typeName(condition.type));
        break;
    case QlumEventCondition::Severity:
        text = QStringLiteral("Severity >= %1").arg(condition.value);
        break;
    case QlumEventCondition::Source:
        text = QStringLiteral("SourceName = \"%1\"").arg(condition.value);
        break;
    case QlumEventCondition::Field: {
        const auto& operators = qlumFieldOperators();
        const auto found =
            std::find_if(operators.begin(), operators.end(), [&](const QlumFieldOperator& one) {
                return one.filterOperator == condition.filterOperator;
            });
        text = condition.field.fieldName() + QLatin1Char(' ') +
               QLatin1String(found != operators.end() ? found->text : "?");
        if (condition.filterOperator != OpcUa_FilterOperator_IsNull)
            text += QLatin1Char(' ') + condition.value;
        break;
    }
    }
    return condition.isNegated ? WhereTexts::tr("not %1").arg(text) : text;
}

UaContentFilter qlumWhereClause(const QlumEventConditions& conditions, std::vector<int>* rows)
{
    ElementPointer all;
    ElementPointer group;
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        if (conditions[i].isOr && group)
            all = join(OpcUa_FilterOperator_Or, std::move(all), std::move(group));
        group =
            join(OpcUa_FilterOperator_And, std::move(group), elementOf(conditions[i], static_cast<int>(i)));
    }
    if (group)
        all = join(OpcUa_FilterOperator_Or, std::move(all), std::move(group));
    // level by level, so that an operand always names an element behind its own
    std::vector<const Element*> order;
    if (all)
        order.push_back(all.get());
    UaContentFilter filter;
    for (std::size_t i = 0; i < order.size(); ++i) {
        std::vector<UaFilterOperand> operands = order[i]->operands;
        for (const ElementPointer& part : order[i]->parts) {
            operands.push_back(UaFilterOperand::element(static_cast<OpcUa_UInt32>(order.size())));
            order.push_back(part.get());
        }
        filter.add(order[i]->filterOperator, operands);
        if (rows)
            rows->push_back(order[i]->row);
    }
    return filter;
}

bool qlumMeets(const QlumEvent& event, const QlumEventConditions& conditions,
               const std::function<bool(const UaNodeId& type, const UaNodeId& base)>& derives)
{
    if (conditions.empty() || event.isRefreshEvent())
        return true;
    bool isMet = true; // by the group that is being read
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        if (conditions[i].isOr && i > 0) {
            if (isMet)
                return true;
            isMet = true;
        }
        isMet = isMet && meetsOne(event, conditions[i], derives);
    }
    return isMet;
}

// ---- project

QStringList qlumStoredConditions(const QlumEventConditions& conditions)
{
    QStringList lines;
    for (const QlumEventCondition& one : conditions)
        lines.append(QStringList{QString::number(one.isOr), QString::number(one.isNegated),
                                 QString::number(one.kind), QString::number(one.filterOperator),
                                 toQString(one.type.toXmlString()), one.field.toString(), one.value}
                         .join(QLatin1Char('\t')));
    return lines;
}

QlumEventConditions qlumReadConditions(const QStringList& lines)
{
    QlumEventConditions conditions;
    for (const QString& line : lines) {
        const QStringList parts = line.split(QLatin1Char('\t'));
        if (parts.size() != 7 || conditions.size() >= maximumConditions)
            continue;
        QlumEventCondition one;
        const int kind = parts.at(2).toInt();
        const auto wanted = static_cast<OpcUa_FilterOperator>(parts.at(3).toInt());
        const auto& operators = qlumFieldOperators();
        const bool isOperator = std::any_of(operators.begin(), operators.end(), [wanted](const auto& known) {
            return known.filterOperator == wanted;
        });
        if (kind < QlumEventCondition::OfType || kind > QlumEventCondition::Field || !isOperator)
            continue;
        one.isOr = parts.at(0) == QLatin1String("1");
        one.isNegated = parts.at(1) == QLatin1String("1");
        one.kind = static_cast<QlumEventCondition::Kind>(kind);
        one.filterOperator = wanted;
        one.type = UaNodeId::fromString(parts.at(4).toStdString());
        one.field = BrowsePathList::fromString(parts.at(5));
        one.value = parts.at(6);
        conditions.push_back(std::move(one));
    }
    return conditions;
}

void qlumRemap(QlumEventConditions& conditions, const monitoring::NamespaceMap& namespaces)
{
    std::erase_if(
        conditions,
        [&](QlumEventCondition& one) {
            bool isThere = monitoring::remapNodeId(one.type, namespaces);
            for (UaQualifiedName& name : one.field.names()) {
                OpcUa_UInt16 index = name.namespaceIndex();
                isThere = monitoring::remapIndex(index, namespaces) && isThere;
                name.setNamespaceIndex(index);
            }
            return !isThere;
        });
}
