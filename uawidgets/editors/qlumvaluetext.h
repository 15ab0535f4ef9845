// Values of the built-in types as text that can be edited and read back.
#pragma once
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumnumbertext.h>

#include <QMap>
#include <QString>

/// Whether values of the type can be edited as one line of text.
[[nodiscard]] bool qlumIsTextEditable(OpcUa_BuiltInType type);
/// Whether the value's text has line breaks, which one line of text would lose.
[[nodiscard]] bool qlumHasLineBreaks(const UaVariant& value);
/// The text of a scalar; reading it back gives the same value. Floating point numbers have as many digits as
/// that needs.
[[nodiscard]] QString qlumEditText(const UaVariant& value);
/// The reverse of qlumEditText; false when the text is no value of the type or does not fit it. Parts that
/// the text does not hold (the locale of a localized text) are kept from value, which is then replaced.
[[nodiscard]] bool qlumFromEditText(const QString& text, OpcUa_BuiltInType type, UaVariant& value);
/// Whether values of the type may be those of an enumeration.
[[nodiscard]] bool qlumMayBeEnumeration(OpcUa_BuiltInType type);
/// "Running (1)"; the number alone when it has no name.
[[nodiscard]] QString qlumEnumerationText(OpcUa_Int64 number, const UaEnumDefinition& definition);
/// Reads a name, a number, or both as qlumEnumerationText() writes them; numbers need no name.
[[nodiscard]] bool qlumFromEnumerationText(const QString& text, const UaEnumDefinition& definition,
                                           OpcUa_Int64& number);
/// "Read | Write | 0x40": the names of the bits that are set, and those without a name as a number.
[[nodiscard]] QString qlumOptionSetText(OpcUa_UInt64 number, const UaOptionSetDefinition& definition);
/// Reads names and numbers, joined by '|'.
[[nodiscard]] bool qlumFromOptionSetText(const QString& text, const UaOptionSetDefinition& definition,
                                         OpcUa_UInt64& number);
/// The name where it says everything, else the number in hexadecimal.
[[nodiscard]] QString qlumStatusEditText(UaStatusCode code);
/// All status codes that have a name, by that name in lower case.
[[nodiscard]] const QMap<QString, OpcUa_StatusCode>& qlumStatusCodeNames();
/// What a text of the type looks like, for tool tips: "-128 to 127".
[[nodiscard]] QString qlumEditHint(OpcUa_BuiltInType type);
