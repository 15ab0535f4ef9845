#include <uawidgets/qlumtimefield.h>

#include <app/api/qlumtext.h>

#include <QApplication>
#include <QDateTimeEdit>
#include <QSignalBlocker>
#include <QVariant>
#include <QWidget>

namespace {
constexpr const char* formatProperty = "qlumTimeFormat";

// The moment stays, so nobody is told of a change.
void showMoment(QDateTimeEdit* field)
{
    const QSignalBlocker blocker(field);
    const QString own = field->property(formatProperty).toString();
    const QDateTime moment = field->dateTime();
    const bool isUtc = qlumTimeLook().isUtc;
    QString format = own.isEmpty() ? qlumDateTimeFormat() : own;
    if (isUtc)
        format += QStringLiteral(" 'UTC'");
    field->setTimeSpec(isUtc ? Qt::UTC : Qt::LocalTime);
    field->setDisplayFormat(format);
    qlumSetMoment(field, moment);
}
} // namespace

void qlumFollowTimeLook(QDateTimeEdit* field, const QString& format)
{
    field->setProperty(formatProperty, format);
    showMoment(field);
}

void qlumSetMoment(QDateTimeEdit* field, const QDateTime& moment)
{
    // the field takes the numbers, whatever zone they are of
    field->setDateTime(moment.toTimeSpec(field->timeSpec()));
}

void qlumRefreshTimeFields()
{
    for (QWidget* widget : QApplication::allWidgets())
        if (auto* field = qobject_cast<QDateTimeEdit*>(widget);
            field && field->property(formatProperty).isValid())
            showMoment(field);
}
