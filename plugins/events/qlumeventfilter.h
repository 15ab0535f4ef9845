// The filter of an event item, what is logged of it, and what the server says of it.
#pragma once
#include <app/api/qlumlog.h>
#include <opcua/opcua_types.h>
#include <plugins/events/qlumbrowsepath.h>
#include <uabase/values/uaeventfilter.h>
#include <uabase/values/uaextensionobject.h>

#include <QStringList>

#include <vector>

/// One select clause for each path, in their order, whatever types the paths were ticked at. They are asked
/// of all events, and where an event does not have the field it is null.
void qlumSelectFields(UaEventFilter& filter, const QlumSelectClauses& clauses);
/// Before it is sent.
void qlumLogFilter(const QlumLog& log, const OpcUa_ExtensionObject& filter);
/// What came back; nothing where the server said nothing.
void qlumLogFilterResult(const QlumLog& log, const UaExtensionObject& result);

/// What a server says of a where clause, for each of its elements.
struct QlumElementResult
{
    OpcUa_StatusCode status = OpcUa_Good;
    std::vector<OpcUa_StatusCode> operands;
};
/// Empty when it says nothing.
[[nodiscard]] std::vector<QlumElementResult> qlumWhereResults(const UaExtensionObject& result);
