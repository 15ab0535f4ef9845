// Parts of values by names that a user reads.
#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QString>
#include <QStringList>

/// The part of a value that a path names: "Motor.Speed" of structures, "[3]" of arrays, joined as in
/// "Motors[3].Speed". Null when there is none, or nobody knows the structure. The context is the whole's, and
/// becomes the part's.
[[nodiscard]] UaVariant qlumFieldOf(const UaVariant& whole, const QString& path, QlumValueContext& context);
/// The paths one level below a value: the fields of a structure, the elements of an array, so many at most.
[[nodiscard]] QStringList qlumFieldsOf(const UaVariant& whole, const QlumValueContext& context, int maximum);
