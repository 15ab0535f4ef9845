#include <plugins/serverdiagnostics/qlumdiagnosticpanel.h>

#include <app/api/qlumactiontable.h>
#include <uawidgets/qlumnodecommands.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemView>
#include <QAction>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QModelIndex>
#include <QTreeView>
#include <QVBoxLayout>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumDiagnosticPanel", text)

namespace {
constexpr QlumActionRow panelActions[] = {
    {0, "showCertificate", TEXT("Show &Certificate"), "", qlumNoKey, TEXT("Show the selected certificate"),
     TEXT("<b>Show Certificate</b><br>Shows what the selected certificate says.")},
};
} // namespace

QlumDiagnosticPanel::QlumDiagnosticPanel(const Names& names, QlumViewState& state, QWidget* parent)
    : QGroupBox(names.title, parent), m_title(names.title),
      m_model(new QlumDiagnosticModel(names.columns, this)), m_view(new QTreeView(this))
{
    setObjectName(names.object);
    m_view->setObjectName(names.object + QStringLiteral("View"));
    m_view->setAccessibleName(names.screen);
    m_view->setModel(m_model);
    m_view->setUniformRowHeights(true);
    m_view->setAlternatingRowColors(true);
    m_view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
    const int em = fontMetrics().averageCharWidth();
    m_view->header()->resizeSection(QlumDiagnosticModel::Parameter, em * 34);
    m_view->header()->resizeSection(QlumDiagnosticModel::Value, em * 30);
    makeActions();
    qlumMakeTable(m_view, {{}, names.object, &state, names.object});
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(m_view);
}

void QlumDiagnosticPanel::makeActions()
{
    const QlumActionTable actions(panelActions, "QlumDiagnosticPanel", m_view);
    m_certificate = actions[0];
    m_view->addAction(m_certificate);
    connect(m_certificate, &QAction::triggered, this, &QlumDiagnosticPanel::showCertificate);
    connect(m_view, &QAbstractItemView::activated, this, &QlumDiagnosticPanel::showCertificate);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &QlumDiagnosticPanel::updateActions);
    new QlumNodeCommands(m_view, [this] { return selectedNodes(); });
    updateActions();
}

void QlumDiagnosticPanel::addBelow(QWidget* widget)
{
    layout()->addWidget(widget);
}

void QlumDiagnosticPanel::setReading(bool isReading)
{
    setTitle(isReading && !m_title.isEmpty() ? tr("%1 (reading...)").arg(m_title) : m_title);
}

void QlumDiagnosticPanel::updateActions()
{
    const QlumDiagnosticItem* const item = m_model->nodeAt(m_view->currentIndex());
    const QlumToolServices* const tools = QlumToolServices::instance();
    const bool isCertificate =
        item && item->bytes.length() > 0 && item->label.contains(QLatin1String("Certificate"));
    m_certificate->setVisible(isCertificate && tools && tools->canShowCertificate());
}

void QlumDiagnosticPanel::showCertificate()
{
    const QlumDiagnosticItem* const item = m_model->nodeAt(m_view->currentIndex());
    if (QlumToolServices* const tools = QlumToolServices::instance();
        tools && m_certificate->isVisible() && item)
        tools->showCertificate(item->bytes);
}

QlumToolNodes QlumDiagnosticPanel::selectedNodes() const
{
    QlumToolNodes nodes;
    for (const QModelIndex& row : m_view->selectionModel()->selectedRows())
        if (const QlumDiagnosticItem* const item = m_model->nodeAt(row); item && !item->nodeId.isNull())
            nodes.push_back({m_serverId, item->nodeId, OpcUa_NodeClass_Unspecified, {}, item->label});
    return nodes;
}
