// An application without a project: has a main window, keeps settings in memory and remembers what was
// logged.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumuatrace.h>
#include <plugins/addressspace/qlumaddressspacemodel.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/uasession.h>

#include <QAction>
#include <QDateTime>
#include <QDockWidget>
#include <QIcon>
#include <QList>
#include <QMainWindow>
#include <QMap>
#include <QMimeData>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QVariant>

#include <mutex>

class StubApplication : public QlumApplicationInterface
{
public:
    StubApplication()
    {
        setInstance(this);
        QlumUaTrace::setApplication(this);
    }
    ~StubApplication() override
    {
        QlumUaTrace::setApplication(nullptr);
        setInstance(nullptr);
    }

    /// Sessions that wait for a server on a busy machine, and ask it for no types.
    void setPatience()
    {
        for (const char* key : {"General.ConnectTimeout", "General.PublishTimeout", "General.CallTimeout",
                                "General.WatchdogTime", "General.WatchdogTimeout"})
            settings[key] = 20000u;
        settings["General.SessionTimeout"] = 1200000.0;
        settings["General.SecureChannelLifetime"] = 3600000u;
        settings["General.TypeDictionaryMode"] = "Manual";
    }

    struct Entry
    {
        int level;
        QString text;
        unsigned int serverId;
        QString source;
    };

    [[nodiscard]] QStringList texts() const
    {
        const std::lock_guard lock(m_mutex);
        QStringList result;
        for (const Entry& entry : m_entries)
            result.append(entry.text);
        return result;
    }
    [[nodiscard]] QList<Entry> entries() const
    {
        const std::lock_guard lock(m_mutex);
        return m_entries;
    }

    void setSettingsValue(const QString& key, const QVariant& value) override { settings[key] = value; }
    QVariant settingsValue(const QString& key, const QVariant& defaultValue) const override
    {
        return settings.value(key, defaultValue);
    }
    QMainWindow* mainWindow() override { return &window; }
    QTabWidget* centralTabWidget() override { return nullptr; }
    QDockWidget* addressSpaceDockWidget() override { return nullptr; }
    UaClientSdk::UaSession* session(unsigned int) override { return nullptr; }
    QString serverName(unsigned int) override { return {}; }
    unsigned int readDataTypeId(unsigned int, const UaNodeId*, UaNodeId*, int*, UaUInt32Array*, QString*,
                                UaLocalizedText*) override
    {
        return 0x80000000u;
    }
    QString typeName(unsigned int, const UaNodeId*, bool) override { return {}; }
    bool isEnum(unsigned int, const UaNodeId*) override { return false; }
    UaEnumDefinition getEnumDefinition(unsigned int, const UaNodeId*) override { return {}; }
    bool hasIcon(unsigned int, const UaNodeId*) override { return false; }
    QIcon getIcon(unsigned int, const UaNodeId*) override { return {}; }
    bool nodeIdsFromMimeData(const QMimeData*, unsigned int*, unsigned int*, UaNodeId**) override
    {
        return false;
    }
    QString builtinTypeName(unsigned int) override { return {}; }
    void log(int level, const QString& text, unsigned int serverId, const QString& source) override
    {
        const std::lock_guard lock(m_mutex);
        m_entries.append({level, text, serverId, source});
    }
    QDateTime dateTimeFromUaDateTime(OpcUa_DateTime*) override { return {}; }
    void dateTimeToUaDateTime(const QDateTime&, OpcUa_DateTime*) override {}
    QString errorMessage(unsigned int) override { return {}; }
    QlumAddressSpaceModel* createAddressSpaceModel(unsigned int, const UaNodeId*) override { return nullptr; }
    void addAction(QAction*) override {}
    void removeAction(QAction*) override {}
    void selectionChanged(unsigned int, UaNodeId*, OpcUa_NodeClass) override {}
    void setModified() override {}
    int namespaceIndexFromUri(unsigned int, const QString&) override { return -1; }
    QString namespaceUriFromIndex(unsigned int, int) override { return {}; }
    QList<unsigned int> projectServerIds() override { return {}; }
    QStringList namespaceTable(unsigned int) override { return {}; }

    QMainWindow window;
    QMap<QString, QVariant> settings;

private:
    mutable std::mutex m_mutex;
    QList<Entry> m_entries;
};
