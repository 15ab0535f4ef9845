#include <uawidgets/qlumviewstate.h>

#include <QCoreApplication>
#include <QHeaderView>
#include <QSettings>
#include <QSplitter>

QlumViewState::QlumViewState(const QString& settingsGroup, QObject* parent)
    : QObject(parent), m_group(settingsGroup)
{
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &QlumViewState::store);
}

QlumViewState::~QlumViewState()
{
    store();
}

void QlumViewState::keep(QHeaderView* header, const QString& key)
{
    QSettings settings;
    settings.beginGroup(m_group);
    header->restoreState(settings.value(key).toByteArray());
    m_headers.push_back({header, key});
}

void QlumViewState::keep(QSplitter* splitter, const QString& key)
{
    QSettings settings;
    settings.beginGroup(m_group);
    splitter->restoreState(settings.value(key).toByteArray());
    m_splitters.push_back({splitter, key});
}

void QlumViewState::store()
{
    QSettings settings;
    settings.beginGroup(m_group);
    for (const auto& kept : m_headers)
        if (kept.widget)
            settings.setValue(kept.key, kept.widget->saveState());
    for (const auto& kept : m_splitters)
        if (kept.widget)
            settings.setValue(kept.key, kept.widget->saveState());
}
