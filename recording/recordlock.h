// One program at a time records under a name.
#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

namespace recording {

/// Dies with its process, so that nothing is ever locked by nobody. Null, with a reason for people in why,
/// when another program has it or the folder cannot be written to.
[[nodiscard]] std::unique_ptr<QLockFile> lockRecording(const QString& path, QString& why);
/// Whether a program holds that lock at the moment; of a program on another computer nobody knows whether it
/// has ended.
[[nodiscard]] bool isBeingRecorded(const QString& path);

} // namespace recording
