// Fields for moments: in local time or UTC, as the user wants times to be shown.
#pragma once
#include <QDateTime>
#include <QString>

class QDateTimeEdit;

/// Shows the field's moment as all times are shown, now and when that changes. An empty format is that of
/// the texts.
void qlumFollowTimeLook(QDateTimeEdit* field, const QString& format = QString());
/// Gives such a field a moment, of whatever zone.
void qlumSetMoment(QDateTimeEdit* field, const QDateTime& moment);
/// All such fields of the application, after the look of times has changed. GUI thread.
void qlumRefreshTimeFields();
