#include <plugins/events/qlumeventfilter.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/events/qlummonitoreditemmodel.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>

#include <QCoreApplication>
#include <QString>

#include <set>

namespace {
class FilterTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumMonitoredItemModel)
};

QString pathText(const OpcUa_SimpleAttributeOperand& clause)
{
    UaBrowseNames names;
    for (OpcUa_Int32 i = 0; i < clause.NoOfBrowsePath; ++i)
        names.emplace_back(clause.BrowsePath[i]);
    return BrowsePathList(names).toString();
}

const OpcUa_EventFilterResult* decodedResult(const UaExtensionObject& result)
{
    return static_cast<const OpcUa_EventFilterResult*>(
        result.decoded(OpcUa_EventFilterResult_EncodeableType));
}

void logElement(const QlumLog& log, OpcUa_Int32 index, const OpcUa_ContentFilterElementResult& element)
{
    log.info(FilterTexts::tr("    Element [%1]: %2").arg(index).arg(qlumStatusText(element.StatusCode)));
    if (element.NoOfOperandStatusCodes <= 0)
        return;
    log.info(FilterTexts::tr("        OperandStatusCodes:"));
    for (OpcUa_Int32 i = 0; i < element.NoOfOperandStatusCodes; ++i)
        log.info(FilterTexts::tr("           Operand [%1]: %2")
                     .arg(i)
                     .arg(qlumStatusText(element.OperandStatusCodes[i])));
}
} // namespace

void qlumSelectFields(UaEventFilter& filter, const QlumSelectClauses& clauses)
{
    std::set<BrowsePathList> selected;
    for (const QlumSelectClause& clause : clauses) {
        if (!selected.insert(clause.path).second)
            continue;
        if (clause.path.isEmpty())
            filter.select(UaNodeId(OpcUaId_ConditionType), {}, OpcUa_Attributes_NodeId);
        else
            filter.select(UaNodeId(OpcUaId_BaseEventType), clause.path.names(),
                          clause.isObject ? OpcUa_Attributes_NodeId : OpcUa_Attributes_Value);
    }
}

void qlumLogFilter(const QlumLog& log, const OpcUa_ExtensionObject& filter)
{
    const UaExtensionObject object(filter);
    const auto* const decoded =
        static_cast<const OpcUa_EventFilter*>(object.decoded(OpcUa_EventFilter_EncodeableType));
    if (!decoded)
        return;
    log.info(FilterTexts::tr("SelectClause:"));
    for (OpcUa_Int32 i = 0; i < decoded->NoOfSelectClauses; ++i) {
        const OpcUa_SimpleAttributeOperand& clause = decoded->SelectClauses[i];
        log.info(FilterTexts::tr("    SelectClause [%1]:").arg(i));
        log.info(FilterTexts::tr("        TypeDefinitionId: %1")
                     .arg(toQString(UaNodeId(clause.TypeDefinitionId).toFullString())));
        log.info(FilterTexts::tr("        BrowsePath: %1").arg(pathText(clause)));
        log.info(FilterTexts::tr("        AttributeId: %1").arg(clause.AttributeId));
    }
}

void qlumLogFilterResult(const QlumLog& log, const UaExtensionObject& result)
{
    const OpcUa_EventFilterResult* const decoded = decodedResult(result);
    if (!decoded)
        return;
    log.info(FilterTexts::tr("SelectClauseResult:"));
    for (OpcUa_Int32 i = 0; i < decoded->NoOfSelectClauseResults; ++i)
        log.info(FilterTexts::tr("    SelectClause [%1]: %2")
                     .arg(i)
                     .arg(qlumStatusText(decoded->SelectClauseResults[i])));
    log.info(FilterTexts::tr("WhereClauseResult:"));
    for (OpcUa_Int32 i = 0; i < decoded->WhereClauseResult.NoOfElementResults; ++i)
        logElement(log, i, decoded->WhereClauseResult.ElementResults[i]);
}

std::vector<QlumElementResult> qlumWhereResults(const UaExtensionObject& result)
{
    std::vector<QlumElementResult> results;
    const OpcUa_EventFilterResult* const decoded = decodedResult(result);
    for (OpcUa_Int32 i = 0; decoded && i < decoded->WhereClauseResult.NoOfElementResults; ++i) {
        const OpcUa_ContentFilterElementResult& element = decoded->WhereClauseResult.ElementResults[i];
        QlumElementResult& one = results.emplace_back();
        one.status = element.StatusCode;
        for (OpcUa_Int32 operand = 0; operand < element.NoOfOperandStatusCodes; ++operand)
            one.operands.push_back(element.OperandStatusCodes[operand]);
    }
    return results;
}
