#include <plugins/events/qlumeventwhere.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumvaluetext.h>

#include <QByteArray>
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

// Of a project whose conditions were texts: what the user most likely meant.
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

ElementPointer leafOf(const QlumEventCondition& condition, int row)
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
        element->operands = {fieldOperand("Severity"), UaFilterOperand::literal(condition.value)};
        break;
    case QlumEventCondition::Source:
        element->filterOperator = OpcUa_FilterOperator_Equals;
        element->operands = {fieldOperand("SourceName"), UaFilterOperand::literal(condition.value)};
        break;
    case QlumEventCondition::Field:
        element->filterOperator = condition.filterOperator;
        element->operands = {fieldOperand(condition.field)};
        if (condition.filterOperator != OpcUa_FilterOperator_IsNull)
            element->operands.push_back(UaFilterOperand::literal(condition.value));
        break;
    }
    if (!condition.isNegated)
        return element;
    auto negation = std::make_unique<Element>();
    negation->filterOperator = OpcUa_FilterOperator_Not;
    negation->parts.push_back(std::move(element));
    return negation;
}

// Reads conditions as the tree that they mean.
class ConditionReader
{
public:
    explicit ConditionReader(const QlumEventConditions& conditions) : m_conditions(conditions)
    {
        if (!conditions.empty())
            m_opens = conditions.front().opens;
    }

    [[nodiscard]] ElementPointer read()
    {
        ElementPointer all;
        while (m_row < m_conditions.size()) {
            const auto how = m_conditions[m_row].isOr ? OpcUa_FilterOperator_Or : OpcUa_FilterOperator_And;
            all = join(how, std::move(all), readAny());
            m_closes = 0; // of brackets that nobody has opened
        }
        return all;
    }

private:
    [[nodiscard]] bool goesOn(bool isOr) const
    {
        return m_closes == 0 && m_row < m_conditions.size() && m_conditions[m_row].isOr == isOr;
    }

    [[nodiscard]] ElementPointer readAny()
    {
        ElementPointer any = readAll();
        while (goesOn(true))
            any = join(OpcUa_FilterOperator_Or, std::move(any), readAll());
        return any;
    }

    [[nodiscard]] ElementPointer readAll()
    {
        ElementPointer all = readOne();
        while (goesOn(false))
            all = join(OpcUa_FilterOperator_And, std::move(all), readOne());
        return all;
    }

    [[nodiscard]] ElementPointer readOne()
    {
        if (m_opens > 0) {
            --m_opens;
            ElementPointer inner = readAny();
            m_closes = std::max(0, m_closes - 1);
            return inner;
        }
        ElementPointer leaf = leafOf(m_conditions[m_row], static_cast<int>(m_row));
        m_closes = m_conditions[m_row].closes;
        if (++m_row < m_conditions.size())
            m_opens = m_conditions[m_row].opens;
        return leaf;
    }

    const QlumEventConditions& m_conditions;
    std::size_t m_row = 0;
    int m_opens = 0;  // brackets before the next condition that were not entered yet
    int m_closes = 0; // those behind the last one that were not left yet
};

// ---- on our own

QString plainText(const UaVariant& value)
{
    return toQString(value.type() == OpcUaType_LocalizedText ? value.toLocalizedText().text()
                                                             : value.toString());
}

int compare(const UaVariant& left, const UaVariant& right)
{
    if (left.type() == OpcUaType_DateTime && right.type() == OpcUaType_DateTime)
        return left.toDateTime() < right.toDateTime() ? -1 : left.toDateTime() == right.toDateTime() ? 0 : 1;
    bool isLeft = false;
    bool isRight = false;
    const double a = left.toDouble(&isLeft);
    const double b = right.toDouble(&isRight);
    if (isLeft && isRight)
        return a < b ? -1 : a > b ? 1 : 0;
    return plainText(left).compare(plainText(right));
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
        return isLike(plainText(field), plainText(condition.value));
    const int order = compare(field, condition.value);
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
        isMet = event.severity() >= condition.value.toInt32();
        break;
    case QlumEventCondition::Source:
        isMet = plainText(event.fields.value(QlumField::SourceName)) == plainText(condition.value);
        break;
    case QlumEventCondition::Field:
        isMet = isMetBy(event.fields.value(condition.field.fieldName()), condition);
        break;
    }
    return isMet != condition.isNegated;
}

// A negation that belongs to a condition is the condition's own.
bool meets(const Element& element, const QlumEvent& event, const QlumEventConditions& conditions,
           const std::function<bool(const UaNodeId&, const UaNodeId&)>& derives)
{
    if (element.filterOperator == OpcUa_FilterOperator_Not)
        return meetsOne(event, conditions[static_cast<std::size_t>(element.parts.front()->row)], derives);
    if (element.row >= 0)
        return meetsOne(event, conditions[static_cast<std::size_t>(element.row)], derives);
    const auto isMet = [&](const ElementPointer& part) { return meets(*part, event, conditions, derives); };
    return element.filterOperator == OpcUa_FilterOperator_And
               ? std::all_of(element.parts.begin(), element.parts.end(), isMet)
               : std::any_of(element.parts.begin(), element.parts.end(), isMet);
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
        text = QStringLiteral("Severity >= %1").arg(qlumEditText(condition.value));
        break;
    case QlumEventCondition::Source:
        text = QStringLiteral("SourceName = \"%1\"").arg(qlumEditText(condition.value));
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
            text += QLatin1Char(' ') + qlumEditText(condition.value);
        break;
    }
    }
    if (condition.isNegated)
        text = WhereTexts::tr("not %1").arg(text);
    return QString(condition.opens, QLatin1Char('(')) + text + QString(condition.closes, QLatin1Char(')'));
}

UaContentFilter qlumWhereClause(const QlumEventConditions& conditions, std::vector<int>* rows)
{
    const ElementPointer all = ConditionReader(conditions).read();
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
    // lost events are told whatever was asked for, and an alarm that has ended must not stay in the list
    const bool endsCondition = !event.conditionId().isNull() && event.is(QlumField::Retain, false);
    if (conditions.empty() || event.isRefreshEvent() || endsCondition ||
        event.eventType().isNumeric(OpcUaId_EventQueueOverflowEventType))
        return true;
    return meets(*ConditionReader(conditions).read(), event, conditions, derives);
}

// ---- project

namespace {
// Lines of before have no type of the value.
UaVariant readValue(const QlumEventCondition& condition, const QStringList& parts)
{
    constexpr int valuePart = 6, typePart = 9;
    UaVariant value;
    if (parts.size() > typePart) {
        const QString text =
            QString::fromUtf8(QByteArray::fromPercentEncoding(parts.at(valuePart).toLatin1()));
        static_cast<void>(
            qlumFromEditText(text, static_cast<OpcUa_BuiltInType>(parts.at(typePart).toInt()), value));
        return value;
    }
    if (condition.kind == QlumEventCondition::Field)
        return condition.filterOperator == OpcUa_FilterOperator_Like
                   ? UaVariant(toUaString(parts.at(valuePart)))
                   : literalOf(parts.at(valuePart));
    if (condition.kind == QlumEventCondition::Source)
        return UaVariant(toUaString(parts.at(valuePart)));
    return UaVariant(static_cast<OpcUa_UInt16>(parts.at(valuePart).toUShort()));
}
} // namespace

QStringList qlumStoredConditions(const QlumEventConditions& conditions)
{
    QStringList lines;
    for (const QlumEventCondition& one : conditions)
        lines.append(QStringList{
            QString::number(one.isOr), QString::number(one.isNegated), QString::number(one.kind),
            QString::number(one.filterOperator), toQString(one.type.toXmlString()), one.field.toString(),
            QString::fromLatin1(qlumEditText(one.value).toUtf8().toPercentEncoding()),
            QString::number(one.opens), QString::number(one.closes), QString::number(one.value.type())}
                         .join(QLatin1Char('\t')));
    return lines;
}

QlumEventConditions qlumReadConditions(const QStringList& lines)
{
    QlumEventConditions conditions;
    for (const QString& line : lines) {
        const QStringList parts = line.split(QLatin1Char('\t'));
        constexpr int partsWithoutBrackets = 7;
        if (parts.size() < partsWithoutBrackets || conditions.size() >= maximumConditions)
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
        one.value = readValue(one, parts);
        one.opens = std::clamp(parts.value(partsWithoutBrackets).toInt(), 0, qlumMostBrackets);
        one.closes = std::clamp(parts.value(partsWithoutBrackets + 1).toInt(), 0, qlumMostBrackets);
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
            if (one.value.type() == OpcUaType_NodeId) {
                UaNodeId id = one.value.toNodeId();
                isThere = monitoring::remapNodeId(id, namespaces) && isThere;
                one.value = UaVariant(id);
            }
            for (UaQualifiedName& name : one.field.names()) {
                OpcUa_UInt16 index = name.namespaceIndex();
                isThere = monitoring::remapIndex(index, namespaces) && isThere;
                name.setNamespaceIndex(index);
            }
            return !isThere;
        });
}
