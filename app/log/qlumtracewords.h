// The trace is English in every language; where its errors are shown in the log, they are read by the user.
#pragma once
#include <QString>

/// The text of a trace record in the user's language; as it stands when nothing is known of it. From any
/// thread.
[[nodiscard]] QString qlumTraceInWords(const QString& text);
