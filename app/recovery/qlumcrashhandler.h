#pragma once
#include <QByteArray>
#include <QString>

/// What a crash leaves behind: a file with the build, the signal, the stack and the last lines of the log.
///
/// Everything that the handler of the signal needs is prepared beforehand; in the handler only calls are made
/// that are allowed there. The signal then takes its usual course, so that a core dump is still written.
namespace QlumCrashHandler {
/// From now on a crash writes the file. Called once, early; the folder of the file need not be there yet.
void install(const QString& reportFile, const QByteArray& version);
/// Keeps the line for a report, in place of the oldest. Any thread; cheap, without a lock.
void note(const QString& line);
/// Of the program, as hexadecimal digits; "none" when it was linked without.
[[nodiscard]] QByteArray buildId();
/// So many lines are kept, each cut to so many bytes of UTF-8.
constexpr int keptLines = 64;
constexpr int lineBytes = 256;
} // namespace QlumCrashHandler
