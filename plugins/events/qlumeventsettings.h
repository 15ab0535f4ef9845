#pragma once
#include <app/api/qlumsettings.h>

/// The settings of the event view; times in milliseconds.
namespace QlumEventSettings {
/// How often a server may report.
inline constexpr QlumSetting<double> publishingInterval{"EventsPlugin.PublishingInterval", 500.0};
/// Sent with every item, although events are not sampled.
inline constexpr QlumSetting<double> samplingInterval{"EventsPlugin.SamplingInterval", 500.0};
/// Events that a server keeps for us; the largest number asks for as many as it can.
inline constexpr QlumSetting<unsigned int> queueSize{"EventsPlugin.QueueSize", 4294967295u};
/// Which events go when that queue is full.
inline constexpr QlumSetting<bool> discardOldest{"EventsPlugin.DiscardOldest", true};
/// Whether times have the date, too.
inline constexpr QlumSetting<bool> showDate{"EventsPlugin.ShowDateWithTimestamps", false};
/// Whether the details list the fields that an event does not have.
inline constexpr QlumSetting<bool> showNullFields{"EventsPlugin.ShowNullEventFields", false};
/// How many events the log keeps.
inline constexpr QlumSetting<int> maxLogEntries{"EventsPlugin.MaxEventLogEntries", 1000};
/// Historical events in an answer.
inline constexpr QlumSetting<int> historyValues{"EventsPlugin.History.NumValuesPerNode", 1000};
/// How often a server is asked for more of them.
inline constexpr QlumSetting<int> historyNextCalls{"EventsPlugin.History.MaxReadNextCalls", 1000};
/// Whether dialog conditions open a window.
inline constexpr QlumSetting<bool> showDialogs{"EventsPlugin.ShowDialogConditions", true};
} // namespace QlumEventSettings
