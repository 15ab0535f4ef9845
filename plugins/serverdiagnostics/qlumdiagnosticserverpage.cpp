#include <plugins/serverdiagnostics/qlumdiagnosticserverpage.h>

#include <app/api/qlumsettings.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/serverdiagnostics/qlumdiagnosticpanel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticrows.h>
#include <plugins/serverdiagnostics/qlumdiagnosticvalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlumviewstate.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QStringList>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <cstddef>
#include <span>

namespace {
enum Panel { Build, Diagnostics, Status, Redundancy, Capabilities };

struct Limit
{
    OpcUa_UInt32 nodeId;
    OpcUa_UInt32 UaClientSdk::OperationLimits::*member;
    bool isCount; // of operations in a call, which the user's setting bounds, too
};

using Limits = UaClientSdk::OperationLimits;
constexpr Limit keptLimits[] = {
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerRead, &Limits::maxNodesPerRead, true},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerWrite, &Limits::maxNodesPerWrite, true},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerMethodCall, &Limits::maxNodesPerMethodCall,
     true},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerBrowse, &Limits::maxNodesPerBrowse, true},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerTranslateBrowsePathsToNodeIds,
     &Limits::maxNodesPerTranslateBrowsePathsToNodeIds, true},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerRegisterNodes,
     &Limits::maxNodesPerRegisterNodes, true},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerNodeManagement,
     &Limits::maxNodesPerNodeManagement, true},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerHistoryReadData,
     &Limits::maxNodesPerHistoryReadData, true},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerHistoryReadEvents,
     &Limits::maxNodesPerHistoryReadEvents, true},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerHistoryUpdateData,
     &Limits::maxNodesPerHistoryUpdateData, true},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxNodesPerHistoryUpdateEvents,
     &Limits::maxNodesPerHistoryUpdateEvents, true},
    {OpcUaId_Server_ServerCapabilities_OperationLimits_MaxMonitoredItemsPerCall,
     &Limits::maxMonitoredItemsPerCall, true},
    {OpcUaId_Server_ServerCapabilities_MaxBrowseContinuationPoints, &Limits::maxBrowseContinuationPoints,
     false},
    {OpcUaId_Server_ServerCapabilities_MaxQueryContinuationPoints, &Limits::maxQueryContinuationPoints,
     false},
    {OpcUaId_Server_ServerCapabilities_MaxHistoryContinuationPoints, &Limits::maxHistoryContinuationPoints,
     false},
};

Panel panelOf(QlumDiagnosticGroup group)
{
    switch (group) {
    case QlumDiagnosticGroup::Build:
        return Build;
    case QlumDiagnosticGroup::Diagnostics:
        return Diagnostics;
    case QlumDiagnosticGroup::Status:
        return Status;
    case QlumDiagnosticGroup::Redundancy:
        return Redundancy;
    default:
        return Capabilities;
    }
}
} // namespace

QlumDiagnosticServerPage::QlumDiagnosticServerPage(QlumViewState& state, QWidget* parent) : QWidget(parent)
{
    makePanels(state);
    makeRows();
    m_panels[Diagnostics]->addBelow(makeCountNote());
    m_panels[Diagnostics]->addBelow(makeEnabled());
    const auto column = [&state](const char* name, std::initializer_list<Panel> panels, const auto& all) {
        auto* splitter = new QSplitter(Qt::Vertical);
        splitter->setObjectName(QLatin1String(name));
        for (const Panel panel : panels)
            splitter->addWidget(all[panel]);
        state.keep(splitter, QLatin1String(name));
        return splitter;
    };
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setObjectName(QStringLiteral("serverSplitter"));
    splitter->addWidget(column("serverLeft", {Build, Status, Redundancy}, m_panels));
    splitter->addWidget(column("serverRight", {Diagnostics, Capabilities}, m_panels));
    splitter->setStretchFactor(0, 2); // of two columns
    splitter->setStretchFactor(1, 3);
    state.keep(splitter, QStringLiteral("server"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);
    showEnabled(UaDataValue());
}

void QlumDiagnosticServerPage::makePanels(QlumViewState& state)
{
    const QString parameter = tr("Parameter"), value = tr("Value");
    const auto add = [&](const char* object, const QString& title, const QString& more) {
        const QStringList columns =
            more.isEmpty() ? QStringList{parameter, value} : QStringList{parameter, value, more};
        m_panels.push_back(new QlumDiagnosticPanel({QLatin1String(object), title, title, columns}, state));
    };
    add("buildInfo", tr("Build Info"), {});
    add("serverDiagnostics", tr("Server Diagnostics"), tr("Per Second"));
    add("serverStatus", tr("Server Status"), {});
    add("serverRedundancy", tr("Server Redundancy"), {});
    add("serverCapabilities", tr("Server Capabilities"), tr("Used by This Client"));
}

void QlumDiagnosticServerPage::makeRows()
{
    QlumDiagnosticItem* limits = nullptr;
    for (const QlumServerRow& row : qlumServerRows()) {
        QlumDiagnosticModel* const model = m_panels[panelOf(row.group)]->model();
        const bool isLimit = row.group == QlumDiagnosticGroup::Limits;
        if (isLimit && !limits)
            limits = model->addRow(QStringLiteral("OperationLimits"));
        QlumDiagnosticItem* const item =
            model->addRow(QLatin1String(row.label), row.kind, isLimit ? limits : nullptr);
        item->nodeId = UaNodeId(row.nodeId);
        m_items.push_back(item);
        m_models.push_back(model);
    }
    m_panels[Capabilities]->view()->expand(m_panels[Capabilities]->model()->indexOf(limits));
}

QWidget* QlumDiagnosticServerPage::makeEnabled()
{
    auto* bar = new QWidget;
    m_enabledText = new QLabel;
    m_enabledText->setObjectName(QStringLiteral("diagnosticsEnabled"));
    m_enabledText->setWordWrap(true);
    m_enabledText->setMinimumHeight(2 * fontMetrics().lineSpacing() + 2); // a splitter asks for no more
    m_enable = new QPushButton;
    m_enable->setObjectName(QStringLiteral("enableDiagnostics"));
    m_enable->setWhatsThis(tr("Has the server count what it does, or not. That goes for all its clients, and "
                              "needs the right to write the server's EnabledFlag."));
    connect(m_enable, &QPushButton::clicked, this, [this] { emit enableWanted(!m_isEnabled); });
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(2, 0, 2, 0);
    layout->addWidget(m_enabledText, 1);
    layout->addWidget(m_enable);
    return bar;
}

void QlumDiagnosticServerPage::showEnabled(const UaDataValue& value)
{
    const bool isKnown = !value.statusCode().isBad() && value.value().type() == OpcUaType_Boolean;
    m_isEnabled = isKnown && value.value().toBool();
    m_isDisabled = isKnown && !m_isEnabled;
    if (isKnown)
        m_enabledText->setText(m_isEnabled ? tr("Diagnostics are enabled.")
                                           : tr("Diagnostics are disabled: the server counts nothing."));
    else if (value.statusCode().isBad())
        m_enabledText->setText(tr("EnabledFlag: %1").arg(qlumDiagnosticText(value, {}).text));
    else
        m_enabledText->clear();
    m_enable->setText(m_isEnabled ? tr("&Disable...") : tr("&Enable"));
    m_enable->setAccessibleName(m_isEnabled ? tr("Disable diagnostics") : tr("Enable diagnostics"));
    m_enable->setToolTip(m_isEnabled ? tr("Have the server count no longer") : tr("Have the server count"));
    m_enable->setVisible(isKnown);
}

QString QlumDiagnosticServerPage::limitText(const QlumServerReading& reading, OpcUa_UInt32 nodeId,
                                            const UaDataValue& value)
{
    const OpcUa_UInt32 longest =
        nodeId == OpcUaId_Server_ServerCapabilities_MaxArrayLength    ? reading.longestArray
        : nodeId == OpcUaId_Server_ServerCapabilities_MaxStringLength ? reading.longestString
                                                                      : 0;
    if (longest > 0)
        return QString::number(longest);
    const auto limit = std::find_if(std::begin(keptLimits), std::end(keptLimits),
                                    [nodeId](const Limit& one) { return one.nodeId == nodeId; });
    if (limit == std::end(keptLimits))
        return {};
    OpcUa_UInt32 used = reading.limits.*limit->member;
    const OpcUa_UInt32 own = limit->isCount ? QlumSettings::maxOperations.value() : 0;
    if (own > 0 && (used == 0 || own < used))
        return tr("%1, by the settings").arg(own);
    if (used == 0)
        return tr("no limit");
    const bool isSame = qlumCounterOf(value) == used;
    return isSame ? QString::number(used) : tr("%1, as told at connect").arg(used);
}

void QlumDiagnosticServerPage::take(const QlumServerReading& reading)
{
    const std::span<const QlumServerRow> rows = qlumServerRows();
    for (std::size_t i = 0; i < rows.size() && i < reading.values.size(); ++i) {
        const QStringList* names = rows[i].kind == QlumDiagnosticKind::ServerState ? &reading.stateNames
                                   : rows[i].kind == QlumDiagnosticKind::RedundancySupport
                                       ? &reading.redundancyNames
                                       : nullptr;
        m_models[i]->setNewValue(m_items[i], reading.values[i], reading.time, names);
        if (rows[i].kind == QlumDiagnosticKind::Limit)
            m_models[i]->setMore(m_items[i], limitText(reading, rows[i].nodeId, reading.values[i]));
    }
    showEnabled(reading.isEnabled);
}

void QlumDiagnosticServerPage::takeCount(const QString& label, OpcUa_UInt32 number)
{
    QlumDiagnosticModel* const model = m_panels[Diagnostics]->model();
    if (QlumDiagnosticItem* const item = model->find(label))
        model->setNewValue(item, UaDataValue(UaVariant(number)));
}

QWidget* QlumDiagnosticServerPage::makeCountNote()
{
    m_countNote = new QLabel;
    m_countNote->setObjectName(QStringLiteral("countNote"));
    m_countNote->setTextFormat(Qt::PlainText);
    m_countNote->setWordWrap(true);
    m_countNote->setMargin(2);
    m_countNote->hide();
    return m_countNote;
}

void QlumDiagnosticServerPage::setCountNote(const QString& note)
{
    m_countNote->setText(note);
    m_countNote->setVisible(!note.isEmpty());
}

void QlumDiagnosticServerPage::setReading(bool isReading)
{
    for (QlumDiagnosticPanel* const panel : m_panels)
        panel->setReading(isReading);
}

void QlumDiagnosticServerPage::setServer(unsigned int serverId)
{
    for (QlumDiagnosticPanel* const panel : m_panels)
        panel->setServer(serverId);
}

void QlumDiagnosticServerPage::clearValues()
{
    for (QlumDiagnosticPanel* const panel : m_panels)
        panel->model()->clearValues();
    showEnabled(UaDataValue());
}
