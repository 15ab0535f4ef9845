// What is said of calls.
#pragma once
#include <plugins/methods/qlummethod.h>

#include <QString>

/// Whether the method was carried out, as far as the server says.
[[nodiscard]] bool qlumIsDone(const QlumMethodCall& call);
/// What became of the call, in a sentence or two: which status it is, whose, and what it means.
[[nodiscard]] QString qlumOutcomeText(const QlumMethodCall& call);
/// The statuses of the call as a cell of a table has room for them.
[[nodiscard]] QString qlumShortOutcome(const QlumMethodCall& call);
/// Why the server refuses one input, in words; empty when it does not.
[[nodiscard]] QString qlumInputFault(const QlumMethodCall& call, std::size_t input);
/// "250 ms", "3.2 s"
[[nodiscard]] QString qlumDurationText(qint64 milliseconds);
/// What a status means, with its name behind.
[[nodiscard]] QString qlumStatusWithName(OpcUa_StatusCode status);
