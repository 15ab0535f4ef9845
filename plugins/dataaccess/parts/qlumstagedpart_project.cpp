// What a project keeps of staged values.
#include <plugins/dataaccess/parts/qlumstagedpart.h>

#include <app/api/qlumtext.h>
#include <plugins/dataaccess/parts/qlumstagedpage.h>
#include <plugins/dataaccess/parts/qlumstagedwrite.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QLocale>
#include <QMap>
#include <QSettings>
#include <QString>

#include <algorithm>
#include <utility>
#include <vector>

namespace {
constexpr int maximumStored = 20'000;

QString storedVariant(const UaVariant& value, bool& isStored)
{
    UaString text;
    isStored = UaValueText::toJson(value, nullptr, text).isNotBad();
    return toQString(text);
}

bool restoreVariant(const QSettings& settings, const QString& key, UaVariant& value)
{
    const UaString text = toUaString(settings.value(key).toString());
    return settings.contains(key) && UaValueText::fromJson(text.view(), nullptr, value).isNotBad();
}

} // namespace

// What was written keeps its result and its old value, so that it can be reverted later.
bool QlumStagedPart::store(QSettings& settings, const QlumStagedRow& row, int place) const
{
    const QlumStagedWrite& write = row.write;
    bool isStored = true;
    const QString value = row.isText ? row.given : storedVariant(write.value, isStored);
    if (!isStored)
        return false;
    settings.setValue(QStringLiteral("Row"), place);
    settings.setValue(row.isText ? QStringLiteral("Text") : QStringLiteral("Value"), value);
    if (write.state == QlumStagedState::Waiting)
        return true;
    settings.setValue(QStringLiteral("State"), static_cast<int>(write.state));
    settings.setValue(QStringLiteral("Status"), write.status.code());
    if (const QString old = write.hasOld ? storedVariant(write.old, isStored) : QString();
        isStored && write.hasOld)
        settings.setValue(QStringLiteral("Old"), old);
    if (const QString back = write.hasBack ? storedVariant(write.back, isStored) : QString();
        isStored && write.hasBack)
        settings.setValue(QStringLiteral("Back"), back);
    return true;
}

bool QlumStagedPart::restore(QSettings& settings, QlumStagedRow& row) const
{
    QlumStagedWrite& write = row.write;
    row.isText = settings.contains(QStringLiteral("Text"));
    row.given = settings.value(QStringLiteral("Text")).toString();
    if (!row.isText && !restoreVariant(settings, QStringLiteral("Value"), write.value))
        return false;
    const int state = settings.value(QStringLiteral("State"), 0).toInt();
    if (state > 0 && state <= static_cast<int>(QlumStagedState::NotReverted))
        write.state = static_cast<QlumStagedState>(state);
    write.status = UaStatus(settings.value(QStringLiteral("Status"), 0).toUInt());
    write.hasOld = restoreVariant(settings, QStringLiteral("Old"), write.old);
    write.hasBack = restoreVariant(settings, QStringLiteral("Back"), write.back);
    return true;
}

void QlumStagedPart::tellLeftOut(int count)
{
    if (count > 0)
        m_host.tell({QlumMessage::Warning,
                     QStringLiteral("stagedStore"),
                     tr("%n staged value(s) are not kept with the project.", nullptr, count),
                     tr("A view keeps %1 of them there, and only those whose value can be written down.")
                         .arg(QLocale().toString(maximumStored)),
                     {},
                     nullptr});
    else
        m_host.dismiss(QStringLiteral("stagedStore"));
}

void QlumStagedPart::saveSettings(QSettings& settings)
{
    settings.beginWriteArray(QStringLiteral("StagedValues"));
    int index = 0, leftOut = 0;
    for (const QlumStagedRow& row : m_page->model().rows()) {
        const int place = m_host.model().rowOf(row.item);
        if (place < 0)
            continue; // its row has gone, and with it what it was about
        settings.setArrayIndex(index);
        const bool isStored = index < maximumStored && store(settings, row, place);
        (isStored ? index : leftOut) += 1;
    }
    settings.endArray();
    tellLeftOut(leftOut);
}

void QlumStagedPart::loadSettings(QSettings& settings, const QMap<int, int>&)
{
    const int count = std::min(settings.beginReadArray(QStringLiteral("StagedValues")), maximumStored);
    std::vector<QlumStagedRow> rows;
    for (int index = 0; index < count; ++index) {
        settings.setArrayIndex(index);
        const int place = settings.value(QStringLiteral("Row"), -1).toInt();
        if (place < 0 || place >= m_host.model().rowCount())
            continue;
        QlumStagedRow row = rowFor(m_host.model().rowAt(place));
        if (restore(settings, row))
            rows.push_back(std::move(row));
    }
    settings.endArray();
    readContexts(m_page->model().stage(std::move(rows)));
}
