#pragma once
#include <QString>
#include <QUrl>

class QWidget;

/// A bug report as an e-mail with the versions of all parts.
namespace QlumBugReport {

[[nodiscard]] QString address();
[[nodiscard]] QString body();
/// What of it names the versions.
[[nodiscard]] QString versions();
/// mailto address with subject and body, percent-encoded.
[[nodiscard]] QUrl url();
/// Hands the e-mail to the desktop's mail program, or tells the user where to write to.
void send(QWidget* parent);

} // namespace QlumBugReport
