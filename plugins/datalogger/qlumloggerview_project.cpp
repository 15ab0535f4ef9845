// What a project keeps of a data logger view.
#include <plugins/datalogger/qlumloggerview.h>

#include <app/api/qlumtext.h>
#include <plugins/datalogger/qlumloggermodel.h>
#include <plugins/datalogger/qlumloggersession.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QMap>
#include <QSettings>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr int loggerRowsInAKey = 100;   // a line each
constexpr int mostLoggerRows = 200'000; // a file that claims more is none of ours

enum LoggerCell {
    ServerCell,
    NamespaceCell,
    NodeCell,
    NameCell,
    PathCell,
    TypeCell,
    UnitCell,
    SettingsCell,
    OffCell,
    CellCount
};

} // namespace

void QlumLoggerView::saveSettings(QSettings& settings)
{
    settings.setValue(QStringLiteral("ViewSettings"), qlumStoredDaSettings(m_model->viewSettings()));
    settings.setValue(QStringLiteral("Kind"), static_cast<int>(m_setup.kind));
    settings.setValue(QStringLiteral("Path"), m_setup.path);
    settings.setValue(QStringLiteral("FreeFloor"), m_setup.freeFloor);
    settings.setValue(QStringLiteral("RotateBytes"), m_setup.rotateBytes);
    settings.setValue(QStringLiteral("RotateHours"), m_setup.rotateHours);
    settings.setValue(QStringLiteral("KeepBytes"), m_setup.keepBytes);
    settings.setValue(QStringLiteral("KeepDays"), m_setup.keepDays);
    settings.setValue(QStringLiteral("StartsWithProject"), m_setup.startsWithProject);
    storeItems(settings);
}

// Nodes by the URI of their namespace, servers by their place in a list whose ids are translated.
void QlumLoggerView::storeItems(QSettings& settings) const
{
    const std::vector<unsigned int> servers = m_model->serverIds();
    settings.beginWriteArray(QStringLiteral("Servers"), static_cast<int>(servers.size()));
    for (std::size_t i = 0; i < servers.size(); ++i) {
        settings.setArrayIndex(static_cast<int>(i));
        settings.setValue(QStringLiteral("ServerId"), servers[i]);
    }
    settings.endArray();
    QStringList lines;
    for (const QlumLoggerItem& item : m_model->rows()) {
        QStringList cells;
        for (int i = 0; i < CellCount; ++i)
            cells.append(QString());
        UaNodeId bare = item.nodeId;
        if (!item.namespaceUri.isEmpty())
            bare.setNamespaceIndex(0);
        const auto server = std::find(servers.begin(), servers.end(), item.serverId);
        cells[ServerCell] = server == servers.end() ? QString() : QString::number(server - servers.begin());
        cells[NamespaceCell] = item.namespaceUri;
        cells[NodeCell] = toQString(bare.toXmlString());
        cells[NameCell] = item.name;
        cells[PathCell] = item.path;
        cells[TypeCell] = item.dataType;
        cells[UnitCell] = item.unit;
        cells[SettingsCell] =
            item.settings ? QLatin1Char('=') + qlumStoredDaSettings(*item.settings) : QString();
        cells[OffCell] = item.isOn ? QString() : QStringLiteral("1");
        for (QString& cell : cells)
            cell = qlumTabbedCell(cell);
        lines.append(cells.join(QLatin1Char('\t')));
    }
    settings.beginWriteArray(QStringLiteral("Items"),
                             (lines.size() + loggerRowsInAKey - 1) / loggerRowsInAKey);
    for (int first = 0; first < lines.size(); first += loggerRowsInAKey) {
        settings.setArrayIndex(first / loggerRowsInAKey);
        settings.setValue(QStringLiteral("Text"), lines.mid(first, loggerRowsInAKey).join(QLatin1Char('\n')));
    }
    settings.endArray();
}

std::vector<QlumLoggerItem> QlumLoggerView::restoredItems(QSettings& settings,
                                                          const QMap<int, int>& serverIdMap) const
{
    constexpr int mostServers = 1000;
    std::vector<unsigned int> servers;
    const int count = std::min(settings.beginReadArray(QStringLiteral("Servers")), mostServers);
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        const auto server = serverIdMap.constFind(settings.value(QStringLiteral("ServerId"), -1).toInt());
        servers.push_back(server == serverIdMap.constEnd() ? qlumNoServer
                                                           : static_cast<unsigned int>(*server));
    }
    settings.endArray();
    std::vector<QlumLoggerItem> items;
    const int blocks =
        std::min(settings.beginReadArray(QStringLiteral("Items")), mostLoggerRows / loggerRowsInAKey);
    for (int i = 0; i < blocks; ++i) {
        settings.setArrayIndex(i);
        for (QStringList& cells : qlumTabbedRows(settings.value(QStringLiteral("Text")).toString())) {
            while (cells.size() < CellCount)
                cells.append(QString());
            bool hasServer = false;
            const auto place = cells[ServerCell].toUInt(&hasServer);
            QlumLoggerItem item;
            item.nodeId = UaNodeId::fromString(cells[NodeCell].toStdString());
            if (item.nodeId.isNull())
                continue;
            item.serverId = hasServer && place < servers.size() ? servers[place] : qlumNoServer;
            item.namespaceUri = cells[NamespaceCell];
            item.name = cells[NameCell];
            item.path = cells[PathCell];
            item.dataType = cells[TypeCell];
            item.unit = cells[UnitCell];
            if (!cells[SettingsCell].isEmpty())
                item.settings =
                    std::make_shared<QlumDataSettings>(qlumRestoredDaSettings(cells[SettingsCell].mid(1)));
            item.isOn = cells[OffCell].isEmpty();
            item.state = item.isOn ? QlumLoggerState::Ready : QlumLoggerState::Off;
            if (item.serverId == qlumNoServer)
                item.state = QlumLoggerState::NoServer;
            else if (const int index = m_application.namespaceIndexFromUri(item.serverId, item.namespaceUri);
                     !item.namespaceUri.isEmpty() && index < 0)
                item.state = QlumLoggerState::NamespaceGone; // until the server is seen to have it
            else if (!item.namespaceUri.isEmpty())
                item.nodeId.setNamespaceIndex(static_cast<OpcUa_UInt16>(index));
            items.push_back(std::move(item));
        }
    }
    settings.endArray();
    return items;
}

void QlumLoggerView::loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    m_isLoading = true;
    if (settings.contains(QStringLiteral("ViewSettings")))
        m_model->setViewSettings(
            qlumRestoredDaSettings(settings.value(QStringLiteral("ViewSettings")).toString()));
    const auto number = [&settings](const char* key, double standard) {
        constexpr double most = 1e9;
        return std::clamp(settings.value(QLatin1String(key), standard).toDouble(), 0.0, most);
    };
    m_setup.kind = settings.value(QStringLiteral("Kind"), 0).toInt() == QlumLoggerSetup::Csv
                       ? QlumLoggerSetup::Csv
                       : QlumLoggerSetup::Sqlite;
    m_setup.path = settings.value(QStringLiteral("Path"), m_setup.path).toString();
    m_setup.freeFloor = number("FreeFloor", m_setup.freeFloor);
    m_setup.rotateBytes = number("RotateBytes", 0);
    m_setup.rotateHours = number("RotateHours", 0);
    m_setup.keepBytes = number("KeepBytes", 0);
    m_setup.keepDays = number("KeepDays", 0);
    m_setup.startsWithProject = settings.value(QStringLiteral("StartsWithProject"), false).toBool();
    addItems(restoredItems(settings, serverIdMap));
    m_isLoading = false;
    showCommands();
    if (m_setup.startsWithProject && m_model->rowCount() > 0)
        m_session->start(m_setup);
}
