// Values as they are shown, where they are not edited.
#pragma once
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <QString>

/// "BadTimeout (0x800A0000)"
[[nodiscard]] QString qlumStatusCodeText(OpcUa_StatusCode code);
/// The text of a scalar, enumerations and option sets with the names of their values. The dictionary may be
/// null.
[[nodiscard]] QString qlumShownText(const UaVariant& value, const QlumTypeHint& hint,
                                    UaDataTypeDictionary* dictionary);
