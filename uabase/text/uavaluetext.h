// Text forms of values that read back as the same value, for copy, export and logs.
#pragma once

#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <string_view>

/// JSON in the reversible form of OPC 10000-6, 5.4 and XML by 5.3. With a dictionary (that of the server; the
/// standard's structures are known without) structures are written field by field, without a definition their
/// body stands as Base64. Times are cut to the years 1601 to 9999. Reading takes text from anywhere: depth
/// and size are bounded. Statuses: BadEncodingLimitsExceeded; when reading also BadDecodingError (not the
/// form), BadOutOfRange (a number does not fit), BadDataTypeIdUnknown (fields of a structure without
/// definition); error then says what and where. The value is left alone on failure.
class UaValueText
{
public:
    static UaStatusCode toJson(const UaVariant& value, UaDataTypeDictionary* dictionary, UaString& text,
                               bool indented = false);
    static UaStatusCode toJson(const UaDataValue& value, UaDataTypeDictionary* dictionary, UaString& text,
                               bool indented = false);
    static UaStatusCode fromJson(std::string_view text, UaDataTypeDictionary* dictionary, UaVariant& value,
                                 UaString* error = nullptr);
    static UaStatusCode fromJson(std::string_view text, UaDataTypeDictionary* dictionary, UaDataValue& value,
                                 UaString* error = nullptr);

    static UaStatusCode toXml(const UaVariant& value, UaDataTypeDictionary* dictionary, UaString& text);
    static UaStatusCode fromXml(std::string_view text, UaDataTypeDictionary* dictionary, UaVariant& value,
                                UaString* error = nullptr);

    UaValueText() = delete;
};
