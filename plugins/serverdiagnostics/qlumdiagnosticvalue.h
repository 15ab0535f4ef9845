// Values of a server's diagnostics as texts.
#pragma once
#include <opcua/opcua_types.h>
#include <plugins/serverdiagnostics/qlumdiagnosticrows.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uavariant.h>

#include <QString>
#include <QStringList>

#include <optional>
#include <span>
#include <vector>

/// A value as it is shown: a text, and its parts where it has some.
struct QlumDiagnosticText
{
    QString label;                         ///< of a part
    QString text;                          ///< one line
    bool isFault = false;                  ///< says why there is no value
    UaByteString bytes;                    ///< of a byte string that may be a certificate
    std::vector<QlumDiagnosticText> parts; ///< elements or fields
};

/// What is known of a value's place.
struct QlumDiagnosticContext
{
    QString label; ///< of the row
    QlumDiagnosticKind kind = QlumDiagnosticKind::Plain;
    const QStringList* names = nullptr; ///< of an enumeration, by number; null for the standard's
};

/// A value with its status. One that says that the node is not there, that cannot be read, that is missing or
/// that cannot be shown has a text of its own.
[[nodiscard]] QlumDiagnosticText qlumDiagnosticText(const UaDataValue& value,
                                                    const QlumDiagnosticContext& context);
/// A structure of the standard, field by field.
[[nodiscard]] QlumDiagnosticText qlumStructureText(const OpcUa_EncodeableType& type, const void* structure);
/// The number that a counter has come to, of a service counter its total; nothing for what is no number.
[[nodiscard]] std::optional<OpcUa_UInt32> qlumCounterOf(const UaDataValue& value);
/// The fields of a structure of the standard by rows; BadNodeIdUnknown where there is none.
[[nodiscard]] std::vector<UaDataValue> qlumFieldValues(const UaExtensionObject& structure,
                                                       std::span<const QlumDetailRow> rows);
/// Puts fields of a structure in the place of values whose nodes are not there.
void qlumFillAbsent(std::vector<UaDataValue>& values, const UaExtensionObject& structure,
                    std::span<const QlumDetailRow> rows);
/// A name that a server gives, in one line that fits a cell.
[[nodiscard]] QString qlumDiagnosticName(const QString& name);
/// Of a security policy's URI the part that tells it apart.
[[nodiscard]] QString qlumDiagnosticPolicy(const QString& uri);
/// "None", "Sign" ...
[[nodiscard]] QString qlumDiagnosticMode(OpcUa_MessageSecurityMode mode);
/// How much a counter has risen in a second: "12.5"; empty when that cannot be said.
[[nodiscard]] QString qlumRateText(double rate);
/// How much a counter has risen in a second; negative when that cannot be said, since it has begun anew.
[[nodiscard]] double qlumRate(OpcUa_UInt32 before, OpcUa_UInt32 now, double seconds);
