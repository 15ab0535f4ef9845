#include <app/mainwindow/qlumpalettecommands.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumdocumenttypes.h>
#include <app/api/qlumprojectnode.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumsettingsregistry.h>
#include <app/mainwindow/qlumaddressspacepages.h>
#include <app/mainwindow/qlumrecentfiles.h>
#include <app/project/qlumprojectmodel.h>
#include <app/project/qlumprojectnodedocument.h>
#include <plugins/addressspace/qlumaddressspacepage.h>
#include <uawidgets/qlumformrow.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QModelIndex>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QTreeView>

#include <deque>
#include <utility>

namespace {
constexpr std::size_t maximumNodes = 20000;
constexpr int deepestMenu = 8;

// "Save &As..." is looked for as "Save As".
QString bareText(const QAction& action)
{
    QString text = qlumBareLabel(action.text());
    while (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}

QlumPaletteEntry entryOf(QAction& action, const QString& path)
{
    return {bareText(action),
            path,
            action.shortcut().toString(QKeySequence::NativeText),
            action.icon(),
            [guard = QPointer<QAction>(&action)] {
                if (guard)
                    guard->trigger();
            },
            action.isEnabled()};
}
} // namespace

QlumPaletteCommands::QlumPaletteCommands(const Parts& parts) : QObject(parts.window), m_parts(parts) {}

void QlumPaletteCommands::show()
{
    const QPointer<QlumCommandPalette> dialog = new QlumCommandPalette(entries(), m_parts.window);
    const bool isChosen = dialog->exec() == QDialog::Accepted;
    if (!dialog)
        return;
    const std::function<void()> run = dialog->chosen();
    delete dialog;
    if (isChosen && run)
        run();
}

std::vector<QlumPaletteEntry> QlumPaletteCommands::entries() const
{
    Entries entries;
    addActions(entries);
    addProject(entries);
    addSettings(entries);
    addRecent(entries);
    addNodes(entries);
    return entries;
}

void QlumPaletteCommands::addActions(Entries& entries) const
{
    for (QAction* action : m_parts.window->menuBar()->actions())
        if (QMenu* menu = action->menu(); menu && menu != m_parts.recentFiles->menu())
            addMenu(entries, *menu, qlumBareLabel(action->text()));
    // those of the tree of nodes are in no menu of the window
    const QlumAddressSpacePage* page = m_parts.pages->shownPage();
    if (!page)
        return;
    for (QAction* action : page->tree()->actions())
        if (action->isVisible() && !action->isSeparator() && !action->menu())
            entries.push_back(entryOf(*action, tr("Address Space")));
}

void QlumPaletteCommands::addMenu(Entries& entries, const QMenu& menu, const QString& path) const
{
    if (path.count(QLatin1Char('>')) > deepestMenu)
        return;
    for (QAction* action : menu.actions()) {
        if (action->isSeparator() || !action->isVisible())
            continue;
        if (QMenu* below = action->menu(); !below)
            entries.push_back(entryOf(*action, path));
        else if (below != m_parts.recentFiles->menu()) // they have a kind of their own
            addMenu(entries, *below, path + QStringLiteral(" > ") + bareText(*action));
    }
}

void QlumPaletteCommands::addProject(Entries& entries) const
{
    const auto add = [this, &entries](QlumProjectNode* node, const QString& kind) {
        entries.push_back({node->displayName(), kind, {}, node->icon(), [this, guard = QPointer(node)] {
                               if (guard)
                                   m_parts.projectView->setCurrentIndex(m_parts.project->indexOf(guard));
                           }});
    };
    for (QlumServerNode* server : m_parts.project->servers())
        add(server, tr("Server"));
    for (QlumProjectNodeDocument* document : m_parts.project->documents())
        add(document, tr("Document"));
    for (const QString& type : m_parts.documentTypes())
        entries.push_back(
            {tr("New %1").arg(qlumDocumentTypeName(type)), tr("Document"), {}, {}, [this, type] {
                 m_parts.addDocument(type);
             }});
}

void QlumPaletteCommands::addSettings(Entries& entries) const
{
    const QlumSettingsRegistry* registry = QlumSettingsRegistry::instance();
    if (!registry)
        return;
    for (const QlumSettingsPage& page : registry->pages())
        for (const QlumSettingRow& row : page.rows)
            if (row.kind != QlumSettingRow::Unseen && row.kind != QlumSettingRow::Note)
                entries.push_back({qlumBareLabel(row.text.label),
                                   tr("Setting"),
                                   qlumBareLabel(page.title),
                                   {},
                                   [this, key = row.key] { m_parts.configure(key); }});
}

void QlumPaletteCommands::addRecent(Entries& entries) const
{
    for (const QString& file : m_parts.recentFiles->files())
        entries.push_back({QFileInfo(file).completeBaseName(),
                           tr("Recent Project"),
                           QDir::toNativeSeparators(QFileInfo(file).absolutePath()),
                           {},
                           [this, file] { m_parts.recentFiles->choose(file); }});
}

// Breadth first: what lies near the root is looked for more often.
void QlumPaletteCommands::addNodes(Entries& entries) const
{
    const QlumAddressSpacePage* page = m_parts.pages->shownPage();
    if (!page || !page->tree()->model())
        return;
    QTreeView* tree = page->tree();
    const QAbstractItemModel& model = *tree->model();
    std::deque<QModelIndex> queue{QModelIndex()};
    for (std::size_t count = 0; !queue.empty() && count < maximumNodes; queue.pop_front()) {
        const QModelIndex parent = queue.front();
        for (int row = 0; row < model.rowCount(parent) && count < maximumNodes; ++row, ++count) {
            const QModelIndex index = model.index(row, 0, parent);
            entries.push_back({index.data().toString(), tr("Node"), parent.data().toString(),
                               index.data(Qt::DecorationRole).value<QIcon>(),
                               [guard = QPointer(tree), place = QPersistentModelIndex(index)] {
                                   if (guard && place.isValid())
                                       guard->setCurrentIndex(place);
                               }});
            queue.push_back(index);
        }
    }
}
