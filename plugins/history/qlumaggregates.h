// Which aggregates a server calculates.
#pragma once
#include <app/api/qlumsessionservices.h>
#include <plugins/history/qlumtrendextras.h>

#include <vector>

class QlumJob;

/// Those that the server lists, by their names; on a job's thread. Empty where it lists none.
[[nodiscard]] std::vector<QlumAggregate> qlumReadAggregates(QlumSessionServices& session, const QlumJob& job);
