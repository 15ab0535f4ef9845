#include <plugins/dataaccess/qlumdasettings.h>

#include <app/api/qlumsettingsregistry.h>
#include <plugins/dataaccess/parts/qlumworksettings.h>

#include <QCoreApplication>
#include <QMap>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <limits>

namespace {

struct DaSettingsText
{
    Q_DECLARE_TR_FUNCTIONS(QlumDaSettings)
};

constexpr double mostMilliseconds = std::numeric_limits<int>::max();

int placeIn(const QStringList& choices, const QString& text)
{
    return std::max(0, choices.indexOf(text));
}

} // namespace

QlumDataSettings qlumDaDefaults()
{
    namespace S = QlumDaSettings;
    QlumDataSettings settings;
    settings.publishingInterval = S::publishingInterval.value();
    settings.samplingInterval = S::samplingInterval.value();
    settings.queueSize = S::queueSize.value();
    settings.discardOldest = S::discardOldest.value();
    settings.deadband = static_cast<QlumDeadband>(placeIn(qlumDaDeadbands(), S::deadband.value()));
    settings.deadbandValue = S::deadbandValue.value();
    settings.trigger = static_cast<QlumDataTrigger>(placeIn(qlumDaTriggers(), S::trigger.value()));
    settings.timestamps =
        static_cast<OpcUa_TimestampsToReturn>(placeIn(qlumDaTimestamps(), S::timestamps.value()));
    settings.priority = static_cast<quint8>(std::min(S::priority.value(), 255u));
    settings.lifetimeCount = S::lifetimeCount.value();
    return settings;
}

void qlumRegisterDaSettings()
{
    using T = DaSettingsText;
    namespace S = QlumDaSettings;
    using Row = QlumSettingRow;
    QlumSettingsPage page{
        QStringLiteral("dataaccess"),
        T::tr("&Data Access"),
        {Row::note(QStringLiteral("dataAccessNote"), T::tr("What new data access views begin with:")),
         Row::number(S::publishingInterval,
                     {T::tr("&Publishing interval:"), T::tr("How often a server sends what has changed.")},
                     10, mostMilliseconds, T::tr(" ms")),
         Row::number(
             S::samplingInterval,
             {T::tr("&Sampling interval:"),
              T::tr("How often a server looks at a value. With -1 as often as it sends, with 0 as often as "
                    "it can.")},
             -1, mostMilliseconds, T::tr(" ms")),
         Row::number(S::queueSize,
                     {T::tr("&Queue size:"),
                      T::tr("How many values of a variable a server keeps until it sends them.")},
                     1, mostMilliseconds),
         Row::flag(S::discardOldest, {T::tr("Discard the &oldest value when the queue is full"),
                                      T::tr("Else the newest one is replaced.")}),
         Row::choice(
             S::deadband,
             {T::tr("Dead&band:"),
              T::tr("Changes that are smaller are not reported: absolute in the unit of the value, or in "
                    "percent of the range that the variable says it has.")},
             qlumDaDeadbands(), qlumDaWords(qlumDaDeadbands())),
         Row::number(S::deadbandValue,
                     {T::tr("Deadband &value:"), T::tr("In the unit of the value, or in percent.")}, 0,
                     mostMilliseconds),
         Row::choice(S::trigger, {T::tr("&Trigger:"), T::tr("What counts as a change.")}, qlumDaTriggers(),
                     qlumDaWords(qlumDaTriggers())),
         Row::choice(S::timestamps, {T::tr("Ti&mes:"), T::tr("Which times come with a value.")},
                     qlumDaTimestamps(), qlumDaWords(qlumDaTimestamps())),
         Row::number(S::priority,
                     {T::tr("P&riority:"), T::tr("Of two subscriptions the higher one is sent first.")}, 0,
                     255),
         Row::number(
             S::lifetimeCount,
             {T::tr("&Lifetime:"), T::tr("After so many publishing intervals without a connection a server "
                                         "forgets what is watched.")},
             3, mostMilliseconds),
         Row::flag(S::readUnits, {T::tr("Ask for &units"),
                                  T::tr("Reads the engineering unit of each variable, which takes a few "
                                        "more calls.")}),
         Row::number(
             S::branchLimit,
             {T::tr("Most variables of a bra&nch:"), T::tr("Where looking for variables below a node ends.")},
             1, 1'000'000),
         Row::number(
             QlumWorkSettings::logRows,
             {T::tr("&Changes in a log:"), T::tr("How many changes the log of a view keeps; the oldest "
                                                 "go. For views that are opened from now on.")},
             1, 1'000'000),
         Row::unseen(QlumWorkSettings::stopsAtFailure.key(), QlumWorkSettings::stopsAtFailure.standard()),
         Row::unseen(QlumWorkSettings::readsBack.key(), QlumWorkSettings::readsBack.standard())}};
    // all but these two are copied by a view when it is made
    for (Row& row : page.rows)
        if (row.key != S::readUnits.key() && row.key != S::branchLimit.key())
            row = row.felt(Row::InNewViews);
    qlumRegisterSettings(page);
}
