// What a project keeps of a data access view.
#include <plugins/dataaccess/qlumdaview.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtext.h>
#include <plugins/dataaccess/qlumdafilter.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdaplot.h>
#include <plugins/dataaccess/qlumdasettings.h>
#include <plugins/dataaccess/qlumdawatch.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QByteArray>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QLocale>
#include <QMap>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTableView>

#include <algorithm>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr int rowsInAKey = 100;   // a line each; so a file of many rows stays small
constexpr int mostRows = 200'000; // a file that claims more is none of ours

// The cells of a stored row.
enum Cell {
    ServerCell,
    NamespaceCell,
    NodeCell,
    AttributeCell,
    RangeCell,
    FieldCell,
    NameCell,
    PathCell,
    SettingsCell,
    ProblemCell,
    PlotCell,
    CellCount
};

// Texts and settings that many rows share, each with its number.
class Numbers
{
public:
    QString of(const QString& text)
    {
        const auto found = m_numbers.find(text);
        if (found != m_numbers.end())
            return QString::number(found.value());
        m_numbers.insert(text, m_texts.size());
        m_texts.append(text);
        return QString::number(m_texts.size() - 1);
    }
    [[nodiscard]] const QStringList& texts() const { return m_texts; }

private:
    QMap<QString, int> m_numbers;
    QStringList m_texts;
};

void storeTexts(QSettings& settings, const QString& array, const QStringList& texts)
{
    settings.beginWriteArray(array, texts.size());
    for (int i = 0; i < texts.size(); ++i) {
        settings.setArrayIndex(i);
        settings.setValue(QStringLiteral("Text"), texts.at(i));
    }
    settings.endArray();
}

QStringList restoredTexts(QSettings& settings, const QString& array)
{
    QStringList texts;
    const int count = std::min(settings.beginReadArray(array), mostRows);
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        texts.append(settings.value(QStringLiteral("Text")).toString());
    }
    settings.endArray();
    return texts;
}

// Without its namespace, which is kept by its URI.
QString idText(UaNodeId nodeId)
{
    if (nodeId.isNull())
        return QString();
    nodeId.setNamespaceIndex(0);
    return toQString(nodeId.toXmlString());
}

} // namespace

void QlumDaView::saveSettings(QSettings& settings)
{
    settings.setValue(QStringLiteral("ViewSettings"), qlumStoredDaSettings(m_model->viewSettings()));
    settings.setValue(QStringLiteral("Filter"), m_filterText->text());
    settings.setValue(QStringLiteral("Show"), m_show->currentIndex());
    settings.setValue(QStringLiteral("Group"), m_group->currentIndex());
    settings.setValue(QStringLiteral("Page"), m_pages->currentIndex());
    settings.setValue(QStringLiteral("Columns"), m_table->horizontalHeader()->saveState());
    storeRows(settings);
    for (const auto& part : m_parts)
        part->saveSettings(settings);
}

void QlumDaView::storeRows(QSettings& settings) const
{
    Numbers namespaces, ways;
    std::vector<unsigned int> servers = m_model->serverIds();
    settings.beginWriteArray(QStringLiteral("Servers"), static_cast<int>(servers.size()));
    for (std::size_t i = 0; i < servers.size(); ++i) {
        settings.setArrayIndex(static_cast<int>(i));
        settings.setValue(QStringLiteral("ServerId"), servers[i]);
    }
    settings.endArray();
    const std::vector<quint32> plotted = m_plot->keys();
    QStringList lines;
    for (const QlumDataItem& item : m_model->rows()) {
        QStringList cells;
        for (int i = 0; i < CellCount; ++i)
            cells.append(QString());
        const auto server = std::find(servers.begin(), servers.end(), item.serverId);
        cells[ServerCell] = server == servers.end() ? QString() : QString::number(server - servers.begin());
        cells[NamespaceCell] = item.namespaceUri.isEmpty() ? QString() : namespaces.of(item.namespaceUri);
        cells[NodeCell] = item.namespaceUri.isEmpty() && !item.nodeId.isNull()
                              ? toQString(item.nodeId.toXmlString())
                              : idText(item.nodeId);
        cells[AttributeCell] =
            item.attributeId == OpcUa_Attributes_Value ? QString() : QString::number(item.attributeId);
        cells[RangeCell] = item.indexRange;
        cells[FieldCell] = item.fieldPath;
        cells[NameCell] = item.displayName;
        cells[PathCell] = item.browsePath;
        cells[SettingsCell] = item.settings ? ways.of(qlumStoredDaSettings(*item.settings)) : QString();
        cells[ProblemCell] = item.problem;
        cells[PlotCell] =
            std::binary_search(plotted.begin(), plotted.end(), item.key) ? QStringLiteral("1") : QString();
        for (QString& cell : cells)
            cell = qlumTabbedCell(cell);
        lines.append(cells.join(QLatin1Char('\t')));
    }
    storeTexts(settings, QStringLiteral("Namespaces"), namespaces.texts());
    storeTexts(settings, QStringLiteral("Settings"), ways.texts());
    QStringList blocks;
    for (int first = 0; first < lines.size(); first += rowsInAKey)
        blocks.append(lines.mid(first, rowsInAKey).join(QLatin1Char('\n')));
    storeTexts(settings, QStringLiteral("Rows"), blocks);
}

void QlumDaView::loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    m_isLoading = true;
    if (settings.contains(QStringLiteral("ViewSettings")))
        m_model->setViewSettings(
            qlumRestoredDaSettings(settings.value(QStringLiteral("ViewSettings")).toString()));
    const QByteArray columns = settings.value(QStringLiteral("Columns")).toByteArray();
    if (!columns.isEmpty())
        m_table->horizontalHeader()->restoreState(columns);
    restoreRows(settings, serverIdMap);
    m_filterText->setText(settings.value(QStringLiteral("Filter")).toString());
    m_show->setCurrentIndex(
        std::clamp(settings.value(QStringLiteral("Show"), 0).toInt(), 0, m_show->count() - 1));
    m_group->setCurrentIndex(
        std::clamp(settings.value(QStringLiteral("Group"), 0).toInt(), 0, m_group->count() - 1));
    for (const auto& part : m_parts)
        part->loadSettings(settings, serverIdMap);
    m_pages->setCurrentIndex(
        std::clamp(settings.value(QStringLiteral("Page"), 0).toInt(), 0, m_pages->count() - 1));
    m_isLoading = false;
}

void QlumDaView::restoreRows(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    std::vector<unsigned int> servers;
    const int count = std::min(settings.beginReadArray(QStringLiteral("Servers")), 1000);
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        const auto server = serverIdMap.constFind(settings.value(QStringLiteral("ServerId"), -1).toInt());
        servers.push_back(server == serverIdMap.constEnd() ? qlumNoServer
                                                           : static_cast<unsigned int>(*server));
    }
    settings.endArray();
    const QStringList namespaces = restoredTexts(settings, QStringLiteral("Namespaces"));
    std::vector<std::shared_ptr<const QlumDataSettings>> ways;
    for (const QString& line : restoredTexts(settings, QStringLiteral("Settings")))
        ways.push_back(std::make_shared<QlumDataSettings>(qlumRestoredDaSettings(line)));
    std::vector<QlumDataItem> items;
    std::vector<std::size_t> plotted;
    int leftOut = 0;
    for (const QString& block : restoredTexts(settings, QStringLiteral("Rows")))
        for (QStringList& cells : qlumTabbedRows(block)) {
            while (cells.size() < CellCount)
                cells.append(QString());
            bool hasServer = false, hasWay = false;
            const auto place = cells[ServerCell].toUInt(&hasServer);
            const auto way = cells[SettingsCell].toUInt(&hasWay);
            QlumDataItem item;
            item.serverId = hasServer && place < servers.size() ? servers[place] : qlumNoServer;
            item.namespaceUri =
                namespaces.value(cells[NamespaceCell].isEmpty() ? -1 : cells[NamespaceCell].toInt());
            item.nodeId = UaNodeId::fromString(cells[NodeCell].toStdString());
            item.attributeId =
                cells[AttributeCell].isEmpty() ? OpcUa_Attributes_Value : cells[AttributeCell].toUInt();
            item.indexRange = cells[RangeCell];
            item.fieldPath = cells[FieldCell];
            item.displayName = cells[NameCell];
            item.browsePath = cells[PathCell];
            item.settings = hasWay && way < ways.size() ? ways[way] : nullptr;
            item.problem = cells[ProblemCell];
            if (item.nodeId.isNull())
                item.state = QlumDataState::Unresolved;
            else if (item.serverId == qlumNoServer)
                item.state = QlumDataState::NoServer;
            else if (const int index = m_application.namespaceIndexFromUri(item.serverId, item.namespaceUri);
                     !item.namespaceUri.isEmpty() && index < 0)
                item.state = QlumDataState::NamespaceGone; // until the server is seen to have it
            else if (!item.namespaceUri.isEmpty())
                item.nodeId.setNamespaceIndex(static_cast<OpcUa_UInt16>(index));
            if (items.size() >= static_cast<std::size_t>(mostRows)) {
                ++leftOut;
                continue;
            }
            if (!cells[PlotCell].isEmpty())
                plotted.push_back(items.size());
            items.push_back(std::move(item));
        }
    if (leftOut > 0)
        tell({QlumMessage::Warning,
              QStringLiteral("project"),
              tr("%n row(s) of the project were not taken.", nullptr, leftOut),
              tr("A view has %1 rows at most.").arg(QLocale().toString(mostRows)),
              {},
              {}});
    const std::vector<quint32> keys = addItems(std::move(items));
    std::vector<quint32> curves;
    for (const std::size_t place : plotted)
        if (place < keys.size())
            curves.push_back(keys[place]);
    m_plot->addKeys(curves);
}
