#include <plugins/serverdiagnostics/qlumdiagnosticpanel.h>

#include <app/api/qlumactiontable.h>
#include <uawidgets/qlumnodecommands.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QModelIndex>
#include <QPushButton>
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
    QHeaderView* const header = m_view->header();
    header->resizeSection(QlumDiagnosticModel::Parameter, em * 25);
    if (names.columns.size() > QlumDiagnosticModel::More) { // whatever stands beside the value is seen, too
        header->setStretchLastSection(false);
        header->setSectionResizeMode(QlumDiagnosticModel::Value, QHeaderView::Stretch);
        header->resizeSection(QlumDiagnosticModel::Parameter, em * 33);
        header->resizeSection(QlumDiagnosticModel::More, header->sectionSizeHint(QlumDiagnosticModel::More));
    }
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

void QlumDiagnosticPanel::addCertificateButton(const QString& label)
{
    auto* button = new QPushButton(tr("Show &Certificate"), this);
    button->setObjectName(objectName() + QStringLiteral("Certificate"));
    button->setToolTip(tr("Show what the certificate of the client says"));
    button->setWhatsThis(button->toolTip());
    layout()->addWidget(button);
    layout()->setAlignment(button, Qt::AlignLeft);
    const auto update = [this, button, label] {
        const QlumDiagnosticItem* const item = m_model->find(label);
        const QlumToolServices* const tools = QlumToolServices::instance();
        button->setVisible(tools && tools->canShowCertificate());
        button->setEnabled(item && item->bytes.length() > 0);
    };
    connect(m_model, &QAbstractItemModel::dataChanged, button, update);
    connect(button, &QPushButton::clicked, this, [this, label] {
        const QlumDiagnosticItem* const item = m_model->find(label);
        if (QlumToolServices* const tools = QlumToolServices::instance(); tools && item)
            tools->showCertificate(item->bytes);
    });
    update();
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
