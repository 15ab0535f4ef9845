#include <app/api/qlumsettingsregistry.h>

#include <app/api/qlumguithread.h>
#include <app/api/qlumlog.h>

#include <QCoreApplication>

#include <algorithm>
#include <mutex>
#include <ranges>

namespace {
QlumSettingsRegistry* g_registry = nullptr;
} // namespace

// ---- rows

QlumSettingRow QlumSettingRow::unseen(const QString& key, const QVariant& standard)
{
    return {key, standard, Unseen, {}, 0, 0, {}, {}};
}

QlumSettingRow QlumSettingRow::note(const QString& name, const QString& text)
{
    return {name, {}, Note, {text, {}}, 0, 0, {}, {}};
}

QlumSettingRow QlumSettingRow::flag(const QlumSetting<bool>& setting, const QlumSettingText& text)
{
    return {setting.key(), setting.standard(), Flag, text, 0, 1, {}, {}};
}

QlumSettingRow QlumSettingRow::openFlag(const QString& key, const QlumSettingText& text)
{
    return {key, {}, Flag, text, 0, 1, {}, {}};
}

QlumSettingRow QlumSettingRow::choice(const QlumSetting<QString>& setting, const QlumSettingText& text,
                                      const QStringList& choices, const QStringList& words)
{
    return {setting.key(), setting.standard(), Choice, text, 0, 0, {}, choices, words};
}

QlumSettingRow QlumSettingRow::line(const QlumSetting<QString>& setting, const QlumSettingText& text)
{
    return {setting.key(), setting.standard(), Text, text, 0, 0, {}, {}};
}

QlumSettingRow QlumSettingRow::file(const QString& key, const QString& standard, const QlumSettingText& text)
{
    return {key, standard, File, text, 0, 0, {}, {}};
}

QlumSettingRow QlumSettingRow::felt(Effect when) const
{
    QlumSettingRow row = *this;
    row.effect = when;
    return row;
}

// ---- registry

QlumSettingsRegistry::QlumSettingsRegistry()
{
    if (!g_registry)
        g_registry = this;
}

QlumSettingsRegistry::~QlumSettingsRegistry()
{
    if (g_registry == this)
        g_registry = nullptr;
}

QlumSettingsRegistry* QlumSettingsRegistry::instance() noexcept
{
    return g_registry;
}

void QlumSettingsRegistry::add(const QlumSettingsPage& page)
{
    qlumAssertGuiThread();
    auto place = std::ranges::find(m_pages, page.name, &QlumSettingsPage::name);
    if (place == m_pages.end())
        place = m_pages.insert(m_pages.end(), {page.name, page.title, {}});
    for (const QlumSettingRow& row : page.rows)
        if (row.kind == QlumSettingRow::Note || takeKey(row))
            place->rows.push_back(row);
}

bool QlumSettingsRegistry::takeKey(const QlumSettingRow& row)
{
    {
        const std::unique_lock lock(m_mutex);
        if (!m_standards.contains(row.key)) {
            m_standards.insert(row.key, row.standard);
            if (row.kind == QlumSettingRow::Number)
                m_ranges.insert(row.key, {row.minimum, row.maximum});
            return true;
        }
    }
    QlumLog(QStringLiteral("Tavelin"))
        .error(
            QCoreApplication::translate("QlumSettingsRegistry",
                                        "The setting '%1' was registered by two tools; the first keeps it.")
                .arg(row.key));
    return false;
}

QVariant QlumSettingsRegistry::standard(const QString& key) const
{
    const std::shared_lock lock(m_mutex);
    return m_standards.value(key);
}

bool QlumSettingsRegistry::isInRange(const QString& key, const QVariant& value) const
{
    const std::shared_lock lock(m_mutex);
    const auto range = m_ranges.constFind(key);
    return range == m_ranges.cend() ||
           (value.toDouble() >= range->first && value.toDouble() <= range->second);
}

void qlumRegisterSettings(const QlumSettingsPage& page)
{
    if (QlumSettingsRegistry* registry = QlumSettingsRegistry::instance())
        registry->add(page);
}
