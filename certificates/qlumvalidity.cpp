#include <certificates/qlumvalidity.h>

#include <app/api/qlumtext.h>
#include <certificates/qlumclock.h>

#include <QDateTime>
#include <QLocale>
#include <QPainter>
#include <QPixmap>
#include <QRegularExpression>

namespace {
QDateTime localTime(const UaDateTime& time)
{
    return QDateTime::fromMSecsSinceEpoch(time.toMSecsSinceEpoch());
}
} // namespace

qint64 qlumDaysLeft(const UaDateTime& end)
{
    return QlumClock::now().toLocalTime().daysTo(localTime(end));
}

QlumValidity qlumValidity(const UaDateTime& from, const UaDateTime& to)
{
    const QDateTime now = QlumClock::now();
    if (now > localTime(to))
        return QlumExpired;
    if (now < localTime(from))
        return QlumNotYetValid;
    return qlumDaysLeft(to) <= qlumWarnDays ? QlumExpiresSoon : QlumValid;
}

QString qlumValidityTime(const UaDateTime& time)
{
    return qlumShowMinute(qlumDateTime(time.value()));
}

QIcon qlumValidityIcon(const QIcon& icon, QlumValidity validity)
{
    if (validity == QlumValid)
        return icon;
    const QIcon sign(validity == QlumExpiresSoon ? QStringLiteral(":/uawidgets/images/overlay_warning.png")
                                                 : QStringLiteral(":/uawidgets/images/overlay_error.png"));
    constexpr int pictureSize = 16;
    QIcon result;
    for (const int scale : {1, 2}) {
        QPixmap picture(pictureSize * scale, pictureSize * scale);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        icon.paint(&painter, picture.rect());
        sign.paint(&painter, picture.rect());
        painter.end();
        picture.setDevicePixelRatio(scale);
        result.addPixmap(picture);
    }
    return result;
}
