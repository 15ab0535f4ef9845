// Values of a history as curves and tables show them.
#pragma once
#include <opcua/opcua_types.h>
#include <plugins/history/qlumhistoryplan.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uaclientsdk/historyresults.h>

#include <optional>

/// The number of a scalar that has one; truth is 1 or 0. Nothing for all else.
[[nodiscard]] std::optional<double> qlumHistoryNumber(const OpcUa_Variant& value);

/// Sorts an answer's values, from one on, into curve and tables. Values without content break a curve; a
/// bound that was not found is no value. The dictionary, which may be null, knows the fields of structures.
[[nodiscard]] QlumHistoryBatch qlumHistoryBatch(const UaClientSdk::HistoryReadDataResult& result,
                                                OpcUa_UInt32 first, UaDataTypeDictionary* dictionary);
