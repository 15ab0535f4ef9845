// What is wrong with the JSON text of a value.
#pragma once
#include <QString>

/// The fault that UaValueText found, in the user's language; as it stands when it is not known. Any thread.
[[nodiscard]] QString qlumJsonFault(const QString& fault);
