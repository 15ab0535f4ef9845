// A value of any built-in type: scalar, array or matrix, OPC 10000-6, 5.1.6.
#pragma once

#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <span>

class UaDataValue;

/// Scalars of fixed size copy without allocation, all others share their content. One object belongs to one
/// thread.
class UaVariant
{
public:
    UaVariant() noexcept = default; ///< the null value
    explicit UaVariant(const OpcUa_Variant& value) noexcept : m_value(value) {}
    UaVariant(UaPlain plain, const OpcUa_Variant& value) noexcept : m_value(plain, value) {}
    /// Scalars. Boolean and Byte are told apart by bool and OpcUa_Byte; UInt32 and StatusCode by
    /// UaStatusCode.
    explicit UaVariant(bool value) noexcept { setBool(value); }
    explicit UaVariant(OpcUa_SByte value) noexcept { setSByte(value); }
    explicit UaVariant(OpcUa_Byte value) noexcept { setByte(value); }
    explicit UaVariant(OpcUa_Int16 value) noexcept { setInt16(value); }
    explicit UaVariant(OpcUa_UInt16 value) noexcept { setUInt16(value); }
    explicit UaVariant(OpcUa_Int32 value) noexcept { setInt32(value); }
    explicit UaVariant(OpcUa_UInt32 value) noexcept { setUInt32(value); }
    explicit UaVariant(OpcUa_Int64 value) noexcept { setInt64(value); }
    explicit UaVariant(OpcUa_UInt64 value) noexcept { setUInt64(value); }
    explicit UaVariant(OpcUa_Float value) noexcept { setFloat(value); }
    explicit UaVariant(OpcUa_Double value) noexcept { setDouble(value); }
    explicit UaVariant(const char* value) noexcept { setString(UaString(value)); }
    explicit UaVariant(const UaString& value) noexcept { setString(value); }
    explicit UaVariant(const UaDateTime& value) noexcept { setDateTime(value); }
    explicit UaVariant(const UaGuid& value) noexcept { setGuid(value); }
    explicit UaVariant(const UaByteString& value) noexcept { setByteString(value); }
    explicit UaVariant(const UaNodeId& value) noexcept { setNodeId(value); }
    explicit UaVariant(const UaExpandedNodeId& value) noexcept { setExpandedNodeId(value); }
    explicit UaVariant(const UaStatusCode& value) noexcept { setStatusCode(value); }
    explicit UaVariant(const UaQualifiedName& value) noexcept { setQualifiedName(value); }
    explicit UaVariant(const UaLocalizedText& value) noexcept { setLocalizedText(value); }
    explicit UaVariant(const UaExtensionObject& value) noexcept { setExtensionObject(value); }

    bool isNull() const noexcept { return type() == OpcUaType_Null; } ///< no value
    /// Null, or a null string, array, node id and so on.
    bool isEmpty() const noexcept;
    /// Null for a number that is no type.
    OpcUa_BuiltInType type() const noexcept
    {
        return m_value->Datatype <= OpcUaType_DiagnosticInfo
                   ? static_cast<OpcUa_BuiltInType>(m_value->Datatype)
                   : OpcUaType_Null;
    }
    bool isScalar() const noexcept { return m_value->ArrayType == OpcUa_VariantArrayType_Scalar; }
    bool isArray() const noexcept { return m_value->ArrayType == OpcUa_VariantArrayType_Array; }
    bool isMatrix() const noexcept { return m_value->ArrayType == OpcUa_VariantArrayType_Matrix; }
    /// Elements of an array or matrix; -1 for a null array and for a scalar.
    OpcUa_Int32 arraySize() const noexcept;
    /// Elements that at() accepts: 0 for a scalar.
    OpcUa_UInt32 elementCount() const noexcept;
    /// Of a matrix; of an array its length; empty for a scalar.
    UaArray<OpcUa_Int32> dimensions() const noexcept;
    /// One element of an array or matrix (row-major) as a scalar; null when there is none.
    [[nodiscard]] UaVariant at(OpcUa_UInt32 index) const noexcept;
    /// Borrowed pointer to the packed elements (OpcUa_Int32[], OpcUa_String[] ...); null for scalars.
    const void* elements() const noexcept;
    void clear() noexcept { m_value.clear(); }

    // ---- setting scalars
    void setBool(bool value) noexcept;
    void setSByte(OpcUa_SByte value) noexcept;
    void setByte(OpcUa_Byte value) noexcept;
    void setInt16(OpcUa_Int16 value) noexcept;
    void setUInt16(OpcUa_UInt16 value) noexcept;
    void setInt32(OpcUa_Int32 value) noexcept;
    void setUInt32(OpcUa_UInt32 value) noexcept;
    void setInt64(OpcUa_Int64 value) noexcept;
    void setUInt64(OpcUa_UInt64 value) noexcept;
    void setFloat(OpcUa_Float value) noexcept;
    void setDouble(OpcUa_Double value) noexcept;
    void setString(const UaString& value) noexcept;
    void setDateTime(const UaDateTime& value) noexcept;
    void setGuid(const UaGuid& value) noexcept;
    void setByteString(const UaByteString& value) noexcept;
    void setXmlElement(const UaByteString& value) noexcept;
    void setNodeId(const UaNodeId& value) noexcept;
    void setExpandedNodeId(const UaExpandedNodeId& value) noexcept;
    void setStatusCode(const UaStatusCode& value) noexcept;
    void setQualifiedName(const UaQualifiedName& value) noexcept;
    void setLocalizedText(const UaLocalizedText& value) noexcept;
    void setExtensionObject(const UaExtensionObject& value) noexcept;
    void setDataValue(const UaDataValue& value) noexcept;
    void setDiagnosticInfo(const UaDiagnosticInfo& value) noexcept;

    // ---- setting arrays and matrices

    /// Deep copy of packed elements of the type. BadOutOfMemory, BadInvalidArgument for an unknown type; the
    /// value is then null.
    [[nodiscard]] OpcUa_StatusCode setArray(OpcUa_BuiltInType type, OpcUa_Int32 length,
                                            const void* elements) noexcept;
    /// Takes ownership of packed elements from the stack's allocator; length -1 with null makes a null array.
    [[nodiscard]] OpcUa_StatusCode attachArray(OpcUa_BuiltInType type, OpcUa_Int32 length,
                                               void* elements) noexcept;
    /// An array of scalars that all have the same type. BadTypeMismatch otherwise.
    [[nodiscard]] OpcUa_StatusCode setArray(OpcUa_BuiltInType type,
                                            std::span<const UaVariant> elements) noexcept;
    /// Gives an array dimensions (at least two make it a matrix, one makes it an array again).
    /// BadInvalidArgument when their product is not the number of elements.
    [[nodiscard]] OpcUa_StatusCode setDimensions(std::span<const OpcUa_Int32> dimensions) noexcept;
    /// Replaces one element by a scalar of the same type. BadIndexRangeInvalid, BadTypeMismatch.
    [[nodiscard]] OpcUa_StatusCode setAt(OpcUa_UInt32 index, const UaVariant& element) noexcept;

    /// Null when out of memory.
    void setByteArray(const UaArray<OpcUa_Byte>& values) noexcept { setTyped(OpcUaType_Byte, values); }
    void setInt32Array(const UaArray<OpcUa_Int32>& values) noexcept { setTyped(OpcUaType_Int32, values); }
    void setUInt32Array(const UaArray<OpcUa_UInt32>& values) noexcept { setTyped(OpcUaType_UInt32, values); }
    void setStringArray(const UaArray<OpcUa_String>& values) noexcept { setTyped(OpcUaType_String, values); }
    void setExtensionObjectArray(const UaArray<OpcUa_ExtensionObject>& values) noexcept
    {
        setTyped(OpcUaType_ExtensionObject, values);
    }
    void setVariantArray(const UaArray<OpcUa_Variant>& values) noexcept
    {
        setTyped(OpcUaType_Variant, values);
    }

    // ---- reading

    /// Each converts as changeType does; a value that cannot be converted gives the type's null value and
    /// sets ok to false.
    bool toBool(bool* ok = nullptr) const noexcept;
    OpcUa_SByte toSByte(bool* ok = nullptr) const noexcept;
    OpcUa_Byte toByte(bool* ok = nullptr) const noexcept;
    OpcUa_Int16 toInt16(bool* ok = nullptr) const noexcept;
    OpcUa_UInt16 toUInt16(bool* ok = nullptr) const noexcept;
    OpcUa_Int32 toInt32(bool* ok = nullptr) const noexcept;
    OpcUa_UInt32 toUInt32(bool* ok = nullptr) const noexcept;
    OpcUa_Int64 toInt64(bool* ok = nullptr) const noexcept;
    OpcUa_UInt64 toUInt64(bool* ok = nullptr) const noexcept;
    OpcUa_Float toFloat(bool* ok = nullptr) const noexcept;
    OpcUa_Double toDouble(bool* ok = nullptr) const noexcept;
    UaDateTime toDateTime(bool* ok = nullptr) const noexcept;
    UaGuid toGuid(bool* ok = nullptr) const noexcept;
    UaByteString toByteString(bool* ok = nullptr) const noexcept;
    UaByteString toXmlElement(bool* ok = nullptr) const noexcept;
    UaNodeId toNodeId(bool* ok = nullptr) const noexcept;
    UaExpandedNodeId toExpandedNodeId(bool* ok = nullptr) const noexcept;
    UaStatusCode toStatusCode(bool* ok = nullptr) const noexcept;
    UaQualifiedName toQualifiedName(bool* ok = nullptr) const noexcept;
    UaLocalizedText toLocalizedText(bool* ok = nullptr) const noexcept;
    UaExtensionObject toExtensionObject(bool* ok = nullptr) const noexcept;
    UaDataValue toDataValue(bool* ok = nullptr) const noexcept;
    UaDiagnosticInfo toDiagnosticInfo(bool* ok = nullptr) const noexcept;
    /// A text for people, of every type and shape; never fails. Strings come as they are, arrays as
    /// "{a|b|c}".
    [[nodiscard]] UaString toString() const;

    /// Deep copy of the elements of an array or matrix; an array of another type is converted as changeType
    /// does it. False (and values empty) when that fails or the value is a scalar.
    bool toByteArray(UaArray<OpcUa_Byte>& values) const noexcept { return toTyped(OpcUaType_Byte, values); }
    bool toUInt16Array(UaArray<OpcUa_UInt16>& values) const noexcept
    {
        return toTyped(OpcUaType_UInt16, values);
    }
    bool toUInt32Array(UaArray<OpcUa_UInt32>& values) const noexcept
    {
        return toTyped(OpcUaType_UInt32, values);
    }
    bool toStringArray(UaArray<OpcUa_String>& values) const noexcept
    {
        return toTyped(OpcUaType_String, values);
    }
    bool toLocalizedTextArray(UaArray<OpcUa_LocalizedText>& values) const noexcept
    {
        return toTyped(OpcUaType_LocalizedText, values);
    }
    bool toExtensionObjectArray(UaArray<OpcUa_ExtensionObject>& values) const noexcept
    {
        return toTyped(OpcUaType_ExtensionObject, values);
    }

    // ---- conversion, OPC 10000-4, 7.7.3
    enum Conversion { NoConversion, SameType, ImplicitConversion, ExplicitConversion };
    [[nodiscard]] static Conversion conversion(OpcUa_BuiltInType from, OpcUa_BuiltInType to) noexcept;
    /// Converts to the type, each element of an array or matrix on its own. toArray on a scalar makes an
    /// array of one element, a scalar is made of an array of one element; ByteString and array of Byte turn
    /// into each other; a matrix keeps its dimensions when toArray is set. On failure the value is unchanged:
    /// BadTypeMismatch (no such conversion, or shape), BadOutOfRange (does not fit), BadSyntaxError (the text
    /// is not of the type).
    UaStatusCode changeType(OpcUa_BuiltInType type, bool toArray) noexcept;

    /// Borrowed; valid until this value changes.
    const OpcUa_Variant* get() const noexcept { return m_value.get(); }
    /// attach takes over and leaves a null value; detach hands over into raw memory; copyTo copies into raw
    /// memory.
    void attach(OpcUa_Variant* value) noexcept { m_value.attach(value); }
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_Variant* destination) noexcept
    {
        return m_value.detach(destination);
    }
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_Variant* destination) const noexcept
    {
        return m_value.copyTo(destination);
    }

    /// Type, shape and every element.
    friend bool operator==(const UaVariant& left, const UaVariant& right) noexcept
    {
        return OpcUa_Variant_Compare(left.get(), right.get()) == 0;
    }

private:
    template <typename T>
    void setTyped(OpcUa_BuiltInType type, const UaArray<T>& values) noexcept
    {
        // what fails leaves the null value
        static_cast<void>(setArray(type, static_cast<OpcUa_Int32>(values.length()), values.rawData()));
    }
    template <typename T>
    bool toTyped(OpcUa_BuiltInType type, UaArray<T>& values) const noexcept
    {
        values.clear();
        UaVariant converted(*this);
        if (isScalar() || converted.changeType(type, true).isBad())
            return false;
        return values.assign(converted.arraySize(), static_cast<const T*>(converted.elements()));
    }

    UaSharedValue<OpcUa_Variant> m_value;
};
