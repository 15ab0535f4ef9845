#pragma once
#include <uabase/values/uastatus.h>

#include <QString>

/// Why a server has refused what was wanted of a condition, and what that means, in a sentence.
[[nodiscard]] QString qlumConditionWords(const UaStatus& status);
