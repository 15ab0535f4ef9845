#include <servers/qlumdiscoveryview.h>

#include <app/api/qlumdisplaytext.h>
#include <servers/qlumdiscoverysettings.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointchoice.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/table/qlumtable.h>

#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTreeView>
#include <QVBoxLayout>
#include <QWidget>

#include <utility>

namespace {
using Group = QlumDiscoveryGroup;

// Below "Network" those are asked who can be supposed to listen to it.
QStringList networkUrls()
{
    QStringList urls{QStringLiteral("opc.tcp://localhost:4840")};
    for (const QString& url : QlumDiscoverySettings::urls(QlumDiscoverySettings::customUrls))
        if (!urls.contains(url))
            urls.append(url);
    return urls;
}

QPushButton* makeButton(const QString& label, const QString& name, const QString& toolTip)
{
    auto* button = new QPushButton(label);
    qlumDescribeField(button, {name, label, QString(), toolTip});
    button->setAutoDefault(false);
    return button;
}
} // namespace

QlumDiscoveryView::QlumDiscoveryView(QlumDiscoveryLookup::Asker asker, QWidget* parent)
    : QWidget(parent), m_model(new QlumDiscoveryModel(this)), m_tree(new QTreeView), m_progress(new QLabel),
      m_lookup(std::move(asker))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    qlumDescribeField(m_tree,
                      {QStringLiteral("discovery"), tr("Servers that can be found"),
                       tr("<b>Servers that can be found</b><br>Open a row to ask for its servers; press a "
                          "server to ask it for its endpoints."),
                       QString()});
    m_tree->setToolTip(QString()); // the rows have theirs
    m_tree->setModel(m_model);
    m_tree->setUniformRowHeights(true);
    m_tree->header()->resizeSection(QlumDiscoveryModel::Name, 260);
    m_tree->header()->resizeSection(QlumDiscoveryModel::Address, 240);
    m_tree->setMinimumHeight(fontMetrics().height() * 6);
    qlumMakeTable(m_tree, {QString(), tr("servers"), nullptr, {}});
    layout->addWidget(m_tree, 1);
    createButtons();
    connect(m_tree, &QTreeView::expanded, this, &QlumDiscoveryView::open);
    connect(m_tree, &QTreeView::clicked, this, &QlumDiscoveryView::press);
    connect(m_tree, &QTreeView::activated, this, &QlumDiscoveryView::press);
    connect(m_tree->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &QlumDiscoveryView::goTo);
    connect(&m_lookup, &QlumDiscoveryLookup::answered, this,
            [this](quint64 ticket, const QlumDiscoveryAnswer& answer) {
                m_model->take(ticket, answer);
                updateControls();
            });
    load();
    updateControls();
}

void QlumDiscoveryView::createButtons()
{
    m_add = makeButton(tr("&Add..."), QStringLiteral("addDiscoveryUrl"),
                       tr("Enter the address of a discovery server; it is kept for the next time"));
    m_remove = makeButton(tr("Re&move"), QStringLiteral("removeDiscoveryUrl"),
                          tr("Forget the address that is selected"));
    m_refresh =
        makeButton(tr("Re&fresh"), QStringLiteral("refreshDiscovery"), tr("Ask again at the selected row"));
    m_stop =
        makeButton(tr("Sto&p"), QStringLiteral("stopDiscovery"), tr("End the look-ups that are under way"));
    m_progress->setObjectName(QStringLiteral("discoveryProgress"));
    m_progress->setTextFormat(Qt::PlainText);
    auto* row = new QHBoxLayout;
    for (QPushButton* button : {m_add, m_remove, m_refresh, m_stop})
        row->addWidget(button);
    row->addWidget(m_progress, 1);
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
    connect(m_add, &QPushButton::clicked, this, &QlumDiscoveryView::add);
    connect(m_remove, &QPushButton::clicked, this, &QlumDiscoveryView::remove);
    connect(m_refresh, &QPushButton::clicked, this, &QlumDiscoveryView::refresh);
    connect(m_stop, &QPushButton::clicked, this, &QlumDiscoveryView::stop);
}

void QlumDiscoveryView::load()
{
    m_model->setUrls(Group::Network, networkUrls());
    m_model->setUrls(Group::Custom, QlumDiscoverySettings::urls(QlumDiscoverySettings::customUrls));
    m_model->setUrls(Group::Directory, QlumDiscoverySettings::urls(QlumDiscoverySettings::directoryUrls));
    m_model->setUrls(Group::Recent, QlumDiscoverySettings::urls(QlumDiscoverySettings::recentUrls));
}

void QlumDiscoveryView::lookAtLocal()
{
    m_tree->expand(m_model->indexOfGroup(Group::Local));
}

void QlumDiscoveryView::setOutcome(const QString& url, bool isGood, const QString& outcome)
{
    if (m_chosen.isValid() && qlumCompleteUrl(m_model->nodeAt(m_chosen)->url) == url)
        m_model->setOutcome(m_chosen, isGood, outcome);
}

// ---- asking

// Opening asks once; who wants to know anew refreshes.
void QlumDiscoveryView::open(const QModelIndex& index)
{
    if (m_model->isAskable(index)) {
        if (!m_model->isAsked(index))
            ask(index);
    } else {
        for (int row = 0; row < m_model->rowCount(index); ++row)
            if (const QModelIndex child = m_model->index(row, 0, index);
                m_model->isAskable(child) && !m_model->isAsked(child))
                ask(child);
    }
    updateControls();
}

void QlumDiscoveryView::ask(const QModelIndex& index)
{
    if (m_lookup.pending() == 0)
        m_asked = 0;
    ++m_asked;
    m_model->begin(index, m_lookup.ask(m_model->questionOf(index), m_model->nodeAt(index)->url));
}

void QlumDiscoveryView::askAll(const QModelIndex& parent)
{
    for (int row = 0; row < m_model->rowCount(parent); ++row)
        if (const QModelIndex child = m_model->index(row, 0, parent); m_model->isAskable(child))
            ask(child);
}

// That of the row, or of the one that has told of it.
void QlumDiscoveryView::refresh()
{
    QModelIndex index = m_tree->currentIndex().siblingAtColumn(0);
    while (index.isValid() && !m_model->isAskable(index) && index.parent().isValid())
        index = index.parent();
    if (m_model->isAskable(index))
        ask(index);
    else
        askAll(index);
    m_tree->expand(index);
    updateControls();
}

void QlumDiscoveryView::stop()
{
    m_lookup.cancel();
    m_model->giveUp();
    updateControls();
}

// ---- what is remembered

void QlumDiscoveryView::add()
{
    const QlumDiscoveryNode* node = m_model->nodeAt(m_tree->currentIndex().siblingAtColumn(0));
    const bool isDirectory = node && node->group == Group::Directory;
    auto* dialog = new QInputDialog(this);
    dialog->setObjectName(QStringLiteral("enterDiscoveryUrl"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(isDirectory ? tr("Add Global Discovery Server") : tr("Add Discovery Server"));
    dialog->setLabelText(tr("URL, without user name and password:"));
    dialog->setTextValue(QStringLiteral("opc.tcp://"));
    connect(dialog, &QInputDialog::textValueSelected, this,
            [this, isDirectory](const QString& text) { addUrl(isDirectory, text); });
    dialog->open();
}

void QlumDiscoveryView::addUrl(bool isDirectory, const QString& text)
{
    namespace Settings = QlumDiscoverySettings;
    const QString url = qlumCompleteUrl(text.left(QlumEndpointLimits::textLength));
    const char* key = isDirectory ? Settings::directoryUrls : Settings::customUrls;
    if (!qlumIsUsableUrl(url) || !Settings::remember(key, url)) {
        m_progress->setText(Settings::urls(key).size() >= Settings::maximumUrls
                                ? tr("%1 addresses are kept, and no more.").arg(Settings::maximumUrls)
                                : tr("This is no address of a server that can be kept."));
        return;
    }
    load();
    const QModelIndex group = m_model->indexOfGroup(isDirectory ? Group::Directory : Group::Custom);
    m_tree->expand(group); // which asks the new one, too
    m_tree->setCurrentIndex(m_model->index(Settings::urls(key).indexOf(url), 0, group));
    open(group);
}

void QlumDiscoveryView::remove()
{
    namespace Settings = QlumDiscoverySettings;
    const QModelIndex index = m_tree->currentIndex().siblingAtColumn(0);
    if (!m_model->isRemembered(index))
        return;
    const QlumDiscoveryNode& node = *m_model->nodeAt(index);
    const char* key = node.group == Group::Custom      ? Settings::customUrls
                      : node.group == Group::Directory ? Settings::directoryUrls
                                                       : Settings::recentUrls;
    Settings::forget(key, QString(node.url));
    load();
    updateControls();
}

// ---- the user in the tree

void QlumDiscoveryView::goTo(const QModelIndex& index)
{
    const QModelIndex first = index.siblingAtColumn(0);
    if (m_model->isServer(first)) {
        m_chosen = first;
        emit selected(qlumCompleteUrl(m_model->nodeAt(first)->url));
    }
    updateControls();
}

void QlumDiscoveryView::press(const QModelIndex& index)
{
    const QModelIndex first = index.siblingAtColumn(0);
    if (m_model->isServer(first))
        emit chosen(qlumCompleteUrl(m_model->nodeAt(first)->url));
}

void QlumDiscoveryView::updateControls()
{
    const QModelIndex current = m_tree->currentIndex().siblingAtColumn(0);
    const int pending = m_lookup.pending();
    m_remove->setEnabled(m_model->isRemembered(current));
    m_refresh->setEnabled(current.isValid());
    m_stop->setEnabled(pending > 0);
    m_progress->setText(pending > 0 ? tr("%1 of %2 look-ups are done.").arg(m_asked - pending).arg(m_asked)
                                    : QString());
}
