// UaVariant::changeType: conversion of whole variants, shapes first, then element by element.
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <uabase/values/uavariant_p.h>

#include <span>
#include <utility>

namespace {

OpcUa_StatusCode convertElement(const UaVariant& element, OpcUa_BuiltInType type, UaVariant& result)
{
    if (type == OpcUaType_Variant) {
        result = element;
        return OpcUa_Good;
    }
    return element.isScalar() ? uabase::convertScalar(element, type, result) : OpcUa_BadTypeMismatch;
}

OpcUa_StatusCode convertElements(const UaVariant& source, OpcUa_BuiltInType type, UaVariant& result)
{
    if (source.arraySize() < 0)
        return result.attachArray(type, -1, nullptr);
    uabase::ArrayBuilder builder(type, source.elementCount());
    for (OpcUa_UInt32 i = 0; i < source.elementCount(); ++i) {
        UaVariant element;
        OpcUa_StatusCode status = convertElement(source.at(i), type, element);
        if (OpcUa_IsGood(status))
            status = builder.add(element);
        if (!OpcUa_IsGood(status))
            return status;
    }
    const OpcUa_StatusCode status = builder.finish(result);
    return OpcUa_IsGood(status) && source.isMatrix() ? result.setDimensions(source.dimensions().span())
                                                     : status;
}

// An array without elements has no value to refuse, its type still must allow the conversion.
bool mayConvert(const UaVariant& source, OpcUa_BuiltInType type) noexcept
{
    return type == OpcUaType_Variant || source.type() == OpcUaType_Variant ||
           UaVariant::conversion(source.type(), type) != UaVariant::NoConversion;
}

OpcUa_StatusCode scalarToArray(const UaVariant& source, OpcUa_BuiltInType type, UaVariant& result)
{
    if (source.type() == OpcUaType_ByteString && type == OpcUaType_Byte) {
        const UaByteString bytes = source.toByteString();
        return result.setArray(OpcUaType_Byte, bytes.isNull() ? -1 : bytes.length(), bytes.data());
    }
    UaVariant element;
    const OpcUa_StatusCode status = convertElement(source, type, element);
    return OpcUa_IsGood(status) ? result.setArray(type, std::span<const UaVariant>(&element, 1)) : status;
}

OpcUa_StatusCode arrayToScalar(const UaVariant& source, OpcUa_BuiltInType type, UaVariant& result)
{
    if (source.type() == OpcUaType_Byte && type == OpcUaType_ByteString && source.isArray()) {
        const auto* bytes = static_cast<const OpcUa_Byte*>(source.elements());
        result.setByteString(source.arraySize() < 0
                                 ? UaByteString()
                                 : UaByteString(std::span<const OpcUa_Byte>(bytes, source.elementCount())));
        return OpcUa_Good;
    }
    if (source.elementCount() != 1)
        return OpcUa_BadTypeMismatch;
    return convertElement(source.at(0), type, result);
}

OpcUa_StatusCode changed(const UaVariant& source, OpcUa_BuiltInType type, bool toArray, UaVariant& result)
{
    if (source.isNull() || !uabase::isBuiltInType(type) || (type == OpcUaType_Variant && !toArray))
        return OpcUa_BadTypeMismatch;
    if (source.isScalar())
        return toArray ? scalarToArray(source, type, result) : uabase::convertScalar(source, type, result);
    if (!toArray)
        return arrayToScalar(source, type, result);
    return mayConvert(source, type) ? convertElements(source, type, result) : OpcUa_BadTypeMismatch;
}

} // namespace

UaStatusCode UaVariant::changeType(OpcUa_BuiltInType type, bool toArray) noexcept
{
    if (this->type() == type && !isNull() && isScalar() != toArray)
        return OpcUa_Good;
    UaVariant result;
    const OpcUa_StatusCode status = changed(*this, type, toArray, result);
    if (OpcUa_IsGood(status))
        *this = std::move(result);
    return status;
}
