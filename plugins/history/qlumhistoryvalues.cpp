#include <plugins/history/qlumhistoryvalues.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/history/qlumhistoryplan.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/historyresults.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QString>

#include <limits>
#include <optional>

namespace {

// Structures are shown by their fields; without those they are bytes that say nothing.
std::optional<QString> textOf(const OpcUa_Variant& raw, UaDataTypeDictionary* dictionary)
{
    const UaVariant value(raw);
    switch (value.type()) {
    case OpcUaType_ExtensionObject: {
        UaString text;
        const bool isDecoded = raw.ArrayType != OpcUa_VariantArrayType_Scalar || dictionary != nullptr;
        if (!isDecoded || UaValueText::toJson(value, dictionary, text).isBad())
            return std::nullopt;
        return toQString(text);
    }
    case OpcUaType_DataValue:
    case OpcUaType_DiagnosticInfo:
        return std::nullopt;
    default:
        return toQString(value.toString());
    }
}

bool isNothing(const OpcUa_Variant& value)
{
    return value.Datatype == OpcUaType_Null && value.ArrayType == OpcUa_VariantArrayType_Scalar;
}

void addModified(const OpcUa_DataValue& value, const OpcUa_ModificationInfo& info,
                 UaDataTypeDictionary* dictionary, QlumHistoryBatch& batch)
{
    batch.modified.push_back({UaDateTime(value.SourceTimestamp), UaDateTime(value.ServerTimestamp),
                              textOf(value.Value, dictionary).value_or(QString()), value.StatusCode,
                              UaDateTime(info.ModificationTime), info.UpdateType,
                              toQString(UaString(info.UserName))});
}

} // namespace

std::optional<double> qlumHistoryNumber(const OpcUa_Variant& value)
{
    if (value.ArrayType != OpcUa_VariantArrayType_Scalar)
        return std::nullopt;
    switch (value.Datatype) {
    case OpcUaType_Boolean:
        return value.Value.Boolean ? 1.0 : 0.0;
    case OpcUaType_SByte:
        return value.Value.SByte;
    case OpcUaType_Byte:
        return value.Value.Byte;
    case OpcUaType_Int16:
        return value.Value.Int16;
    case OpcUaType_UInt16:
        return value.Value.UInt16;
    case OpcUaType_Int32:
        return value.Value.Int32;
    case OpcUaType_UInt32:
        return value.Value.UInt32;
    case OpcUaType_Int64:
        return static_cast<double>(value.Value.Int64);
    case OpcUaType_UInt64:
        return static_cast<double>(value.Value.UInt64);
    case OpcUaType_Float:
        return value.Value.Float;
    case OpcUaType_Double:
        return value.Value.Double;
    default:
        return std::nullopt;
    }
}

QlumHistoryBatch qlumHistoryBatch(const UaClientSdk::HistoryReadDataResult& result, OpcUa_UInt32 first,
                                  UaDataTypeDictionary* dictionary)
{
    QlumHistoryBatch batch;
    const bool isModified = result.modificationInfos.length() == result.values.length();
    batch.samples.reserve(result.values.length() - first);
    for (OpcUa_UInt32 i = first; i < result.values.length(); ++i) {
        const OpcUa_DataValue& value = result.values[i];
        if (value.StatusCode == OpcUa_BadBoundNotFound)
            continue;
        ++batch.count;
        if (isModified)
            addModified(value, result.modificationInfos[i], dictionary, batch);
        const OpcUa_DateTime time =
            value.SourceTimestamp != 0 ? value.SourceTimestamp : value.ServerTimestamp;
        if (const std::optional<double> number = qlumHistoryNumber(value.Value)) {
            batch.samples.push_back({time, *number, value.StatusCode, value.ServerTimestamp});
        } else if (isNothing(value.Value)) {
            batch.samples.push_back(
                {time, std::numeric_limits<double>::quiet_NaN(), value.StatusCode, value.ServerTimestamp});
        } else if (const std::optional<QString> text = textOf(value.Value, dictionary)) {
            batch.texts.push_back(
                {UaDateTime(value.SourceTimestamp), UaDateTime(value.ServerTimestamp), *text});
        } else {
            batch.hasUnknown = true;
        }
    }
    return batch;
}
