// The parts that every data access view has.
#pragma once
#include <plugins/dataaccess/qlumdapart.h>

#include <memory>
#include <vector>

/// Makes them; they add their pages and commands to the view. The host outlives them.
[[nodiscard]] std::vector<std::unique_ptr<QlumDaPart>> qlumMakeDaParts(QlumDaHost& host);
