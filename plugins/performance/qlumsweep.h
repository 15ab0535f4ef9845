// The same run with ever more nodes a call, or calls at once.
#pragma once
#include <plugins/performance/qlummeasurement.h>
#include <plugins/performance/qlumsweepfit.h>
#include <uaclientsdk/operationlimits.h>

#include <QString>
#include <QtGlobal>

#include <vector>

/// What a sweep changes from step to step.
enum class QlumSweepOver { NodesPerCall, Outstanding };

/// The steps up to the largest one, which is among them: 1, 2, 5, 10, 20 ...
[[nodiscard]] std::vector<quint32> qlumSweepSizes(quint32 largest);
/// The most nodes that a server says it takes in a call of that kind; 0 when it sets no limit.
[[nodiscard]] quint32 qlumNodesLimit(QlumMeasuredKind kind, const UaClientSdk::OperationLimits& limits);
/// The plan of one step.
[[nodiscard]] QlumMeasurementPlan qlumSweepStep(const QlumMeasurementPlan& plan, QlumSweepOver over,
                                                quint32 size);
/// What a step came to; the size is the one that the server took.
[[nodiscard]] QlumSweepPoint qlumSweepPoint(const QlumMeasurementRun& run, QlumSweepOver over);
/// The advice, in words.
[[nodiscard]] QString qlumSweepText(const std::vector<QlumSweepPoint>& points, QlumSweepOver over);
