#include <plugins/dataaccess/parts/qlumsnapshotpart.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumnodeaddress.h>
#include <app/api/qlumtext.h>
#include <plugins/dataaccess/parts/qlumstagedpart.h>
#include <plugins/dataaccess/parts/qlumworkcommand.h>
#include <plugins/dataaccess/parts/qlumworktable.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLatin1String>
#include <QLineEdit>
#include <QLocale>
#include <QModelIndex>
#include <QModelIndexList>
#include <QSaveFile>
#include <QSettings>
#include <QSignalBlocker>
#include <QStringList>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace {
constexpr qint64 maximumSnapshotFile = 256LL * 1024 * 1024;
constexpr int maximumInProject = 6 * 1024 * 1024; // bytes of all snapshots of a view
constexpr int maximumSnapshots = 50;
constexpr int snapshotValueWidth = 160;
const QLatin1String snapshotTopic("snapshot");
} // namespace

QlumSnapshotPart::QlumSnapshotPart(QlumDaHost& host, QlumStagedPart& staged) : m_host(host), m_staged(staged)
{
    m_page = makePage();
    host.addPage(m_page, tr("Snapshots"));
    host.addCommands(tr("&Snapshots"), {qlumWorkCommand(this, "takeSnapshotOfView", tr("&Take Snapshot..."),
                                                        tr("Keeps all rows with their values under a name."),
                                                        [this] { askTake(); })});
    fillChoices({});
    compare();
}

// ---- page

QWidget* QlumSnapshotPart::makePage()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("snapshotPage"));
    page->setAccessibleName(tr("Snapshots"));
    auto* bar = new QToolBar(page);
    bar->setObjectName(QStringLiteral("snapshotBar"));
    makeTable(*page);
    m_before = makeChoice("snapshotBefore", tr("Snapshot before"));
    m_after = makeChoice("snapshotAfter", tr("Snapshot after"));
    m_summary = new QLabel(page);
    m_summary->setObjectName(QStringLiteral("snapshotSummary"));
    m_summary->setTextFormat(Qt::PlainText);
    m_summary->setWordWrap(true);
    auto* same = new QCheckBox(tr("Also what is the sa&me"), page);
    same->setObjectName(QStringLiteral("snapshotSame"));
    same->setToolTip(tr("Shows the rows without a difference, too."));
    connect(same, &QCheckBox::toggled, m_filter, &QlumDifferenceFilter::showSame);
    auto* beforeLabel = new QLabel(tr("&Before:"), page);
    beforeLabel->setBuddy(m_before);
    auto* afterLabel = new QLabel(tr("Af&ter:"), page);
    afterLabel->setBuddy(m_after);
    auto* choices = new QHBoxLayout;
    choices->setContentsMargins(4, 0, 4, 4);
    choices->addWidget(beforeLabel);
    choices->addWidget(m_before, 1);
    choices->addWidget(afterLabel);
    choices->addWidget(m_after, 1);
    auto* found = new QHBoxLayout; // below: beside them, the page would be wider than a window has room for
    found->setContentsMargins(4, 0, 4, 4);
    found->addWidget(same);
    found->addWidget(m_summary, 1);
    fillBar(*bar);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    layout->addLayout(choices);
    layout->addLayout(found);
    layout->addWidget(m_table, 1);
    return page;
}

QComboBox* QlumSnapshotPart::makeChoice(const char* name, const QString& accessibleName)
{
    auto* choice = new QComboBox;
    choice->setObjectName(QLatin1String(name));
    choice->setAccessibleName(accessibleName);
    choice->setMinimumContentsLength(8);
    choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connect(choice, QOverload<int>::of(&QComboBox::activated), this, [this] { compare(); });
    return choice;
}

void QlumSnapshotPart::makeTable(QWidget& page)
{
    auto* state = new QlumViewState(QStringLiteral("DataAccessView"), &page);
    m_model = new QlumDifferenceModel(&page);
    m_filter = new QlumDifferenceFilter(&page);
    m_filter->setSourceModel(m_model);
    m_table = qlumWorkTable("snapshotDifferences", tr("Differences"), m_filter, &page);
    m_table->setSortingEnabled(true);
    m_table->sortByColumn(-1, Qt::AscendingOrder);
    for (const int column :
         {QlumDifferenceModel::Difference, QlumDifferenceModel::Name, QlumDifferenceModel::NodeId,
          QlumDifferenceModel::Before, QlumDifferenceModel::After})
        m_table->setColumnWidth(column, snapshotValueWidth);
    qlumMakeTable(
        m_table,
        {tr("Take a snapshot, and compare it with the values of now or with another one. What is the "
            "same is not shown."),
         QStringLiteral("differences"), state, QStringLiteral("differences"), false});
}

void QlumSnapshotPart::fillBar(QToolBar& bar)
{
    bar.addActions(
        {qlumWorkCommand(
             this, "takeSnapshot", tr("&Take Snapshot..."),
             tr("Keeps all rows with their values under a name."), [this] { askTake(); }),
         qlumWorkCommand(
             this, "compareSnapshots", tr("&Compare"),
             tr("Compares the two that are chosen below; now means this moment."), [this] { compare(); }),
         qlumWorkCommand(
             this, "stageBefore", tr("Stage &Old Values"),
             tr("Stages what the selected rows were before, or all rows that have changed. Nothing is "
                "written before you say so."),
             [this] { stageBefore(); }),
         qlumWorkCommand(
             this, "loadSnapshot", tr("&Load..."), tr("Reads a snapshot from a file."),
             [this] { askLoad(); }),
         qlumWorkCommand(
             this, "saveSnapshot", tr("&Save As..."),
             tr("Writes the snapshot that is chosen as the one before to a file."), [this] { askSave(); }),
         qlumWorkCommand(
             this, "removeSnapshot", tr("&Remove"),
             tr("Forgets the snapshot that is chosen as the one before. Files stay."),
             [this] { removeChosen(); })});
}

void QlumSnapshotPart::fillChoices(const QString& before)
{
    const QString after = m_after->currentData().toString();
    const QSignalBlocker one(m_before), other(m_after);
    m_before->clear();
    m_after->clear();
    m_after->addItem(tr("Now"), QString());
    for (const QlumSnapshot& snapshot : m_snapshots) {
        QString text = tr("%1, %2").arg(snapshot.name, qlumShowMinute(snapshot.taken));
        if (m_leftOut.contains(snapshot.name))
            text = tr("%1 (not in the project)").arg(text);
        m_before->addItem(text, snapshot.name);
        m_after->addItem(text, snapshot.name);
    }
    m_before->setCurrentIndex(std::max(m_before->findData(before), m_before->count() > 0 ? 0 : -1));
    m_after->setCurrentIndex(std::max(0, m_after->findData(after)));
    m_before->setEnabled(m_before->count() > 0);
}

const QlumSnapshot* QlumSnapshotPart::chosen(const QComboBox& choice) const
{
    const QString name = choice.currentData().toString();
    const auto found = std::find_if(m_snapshots.begin(), m_snapshots.end(),
                                    [&name](const QlumSnapshot& snapshot) { return snapshot.name == name; });
    return name.isEmpty() || found == m_snapshots.end() ? nullptr : &*found;
}

// ---- snapshots

QlumSnapshotRow QlumSnapshotPart::rowOf(const QlumDataItem& item) const
{
    QlumSnapshotRow row;
    const QStringList namespaces = m_host.application().namespaceTable(item.serverId);
    UaNodeId bare = item.nodeId;
    bare.setNamespaceIndex(0);
    row.server = m_host.application().serverName(item.serverId);
    row.namespaceUri =
        item.namespaceUri.isEmpty() ? namespaces.value(item.nodeId.namespaceIndex()) : item.namespaceUri;
    row.nodeId = item.nodeId.isNull() ? QString() : toQString(bare.toXmlString());
    row.indexRange = item.indexRange;
    row.fieldPath = item.fieldPath;
    row.name = item.displayName;
    const QlumNodeAddress address = qlumReadAddress(item.browsePath);
    row.browsePath = address.fault.isEmpty() && !address.path.empty()
                         ? qlumPathText(UaNodeId(), address.path, namespaces, QlumNamespaceForm::Uri)
                         : item.browsePath;
    row.unit = item.unit;
    row.hasValue = item.received != 0;
    row.value = item.value;
    if (!item.fieldPath.isEmpty())
        row.value.setValue(m_host.model().shownValue(item));
    row.key = item.key;
    return row;
}

QlumSnapshot QlumSnapshotPart::present(const QString& name) const
{
    QlumSnapshot snapshot{name, QDateTime::currentDateTime(), {}};
    snapshot.rows.reserve(static_cast<std::size_t>(m_host.model().rowCount()));
    for (const QlumDataItem& item : m_host.model().rows())
        snapshot.rows.push_back(rowOf(item));
    return snapshot;
}

void QlumSnapshotPart::keep(QlumSnapshot snapshot)
{
    const QString name = snapshot.name;
    QString forgotten;
    std::erase_if(m_snapshots, [&name](const QlumSnapshot& other) { return other.name == name; });
    m_sizes.remove(name);
    m_snapshots.push_back(std::move(snapshot));
    if (m_snapshots.size() > maximumSnapshots) {
        forgotten = m_snapshots.front().name;
        m_snapshots.erase(m_snapshots.begin());
    }
    measure();
    fillChoices(name);
    m_host.markModified();
    compare();
    tellKept(forgotten);
}

// The newest go first into what room the project has.
void QlumSnapshotPart::measure()
{
    m_leftOut.clear();
    int room = maximumInProject;
    for (auto snapshot = m_snapshots.rbegin(); snapshot != m_snapshots.rend(); ++snapshot) {
        auto size = m_sizes.find(snapshot->name);
        if (size == m_sizes.end())
            size = m_sizes.insert(snapshot->name, qlumSnapshotText(*snapshot).size());
        if (*size > room)
            m_leftOut.append(snapshot->name);
        else
            room -= *size;
    }
}

void QlumSnapshotPart::tellKept(const QString& forgotten)
{
    if (!forgotten.isEmpty())
        m_host.tell({QlumMessage::Warning,
                     QStringLiteral("snapshotForgotten"),
                     tr("The oldest snapshot, \"%1\", was given up.").arg(forgotten),
                     tr("A view keeps %1 of them.").arg(maximumSnapshots),
                     {},
                     nullptr});
    if (m_leftOut.isEmpty()) {
        m_host.dismiss(snapshotTopic);
        return;
    }
    const QString name = m_leftOut.front();
    m_host.tell({QlumMessage::Warning, snapshotTopic,
                 tr("%n snapshot(s) are not kept with the project: %1.", nullptr, m_leftOut.size())
                     .arg(m_leftOut.join(QStringLiteral(", "))),
                 tr("A view may have %1 MB of them there. They go with this window unless you save them to "
                    "files or remove others.")
                     .arg(maximumInProject / 1024 / 1024),
                 tr("Save As..."), [this, name] {
                     fillChoices(name);
                     askSave();
                 }});
}

void QlumSnapshotPart::take(const QString& name)
{
    QlumSnapshot snapshot = present(name);
    for (QlumSnapshotRow& row : snapshot.rows)
        row.key = 0;
    keep(std::move(snapshot));
    m_host.showPage(m_page);
}

QString QlumSnapshotPart::read(const QByteArray& text)
{
    QlumSnapshot snapshot;
    QString fault;
    int unreadable = 0;
    if (!qlumReadSnapshot(text, snapshot, fault, unreadable))
        return fault;
    if (snapshot.name.isEmpty())
        snapshot.name = tr("Without a name");
    keep(std::move(snapshot));
    if (unreadable > 0)
        m_host.tell({QlumMessage::Warning,
                     QStringLiteral("snapshotValues"),
                     tr("%n value(s) of the snapshot cannot be read.", nullptr, unreadable),
                     tr("They are compared as if there had been none."),
                     {},
                     nullptr});
    return {};
}

bool QlumSnapshotPart::hasSnapshot(const QString& name) const
{
    return std::any_of(
        m_snapshots.begin(), m_snapshots.end(),
        [&name](const QlumSnapshot& snapshot) { return snapshot.name == name; });
}

void QlumSnapshotPart::askTake()
{
    bool isGiven = false;
    QString proposal;
    for (int number = 1; proposal.isEmpty() || hasSnapshot(proposal); ++number)
        proposal = tr("Snapshot %1").arg(number);
    const QString name =
        QInputDialog::getText(m_host.widget(), tr("Take Snapshot"), tr("Name of the snapshot:"),
                              QLineEdit::Normal, proposal, &isGiven)
            .trimmed();
    if (isGiven && !name.isEmpty())
        take(name);
}

void QlumSnapshotPart::askLoad()
{
    const QString path = QFileDialog::getOpenFileName(m_host.widget(), tr("Load Snapshot"), QDir::homePath(),
                                                      tr("Snapshots (*.json);;All files (*)"));
    if (path.isEmpty())
        return;
    QFile file(path);
    QString fault;
    if (!file.open(QIODevice::ReadOnly))
        fault = file.errorString();
    else if (file.size() > maximumSnapshotFile)
        fault = tr("The file is too large.");
    else
        fault = read(file.readAll());
    if (!fault.isEmpty())
        m_host.tell({QlumMessage::Error,
                     QStringLiteral("snapshotFile"),
                     tr("%1 was not loaded.").arg(QDir::toNativeSeparators(path)),
                     fault,
                     {},
                     nullptr});
    else
        m_host.showPage(m_page);
}

void QlumSnapshotPart::askSave()
{
    const QlumSnapshot* snapshot = chosen(*m_before);
    if (snapshot == nullptr)
        return;
    const QByteArray text = qlumSnapshotText(*snapshot);
    QString path = QFileDialog::getSaveFileName(
        m_host.widget(), tr("Save Snapshot"), QDir::home().filePath(tr("snapshot") + QStringLiteral(".json")),
        tr("Snapshots (*.json)"));
    if (path.isEmpty())
        return;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        m_host.tell({QlumMessage::Error,
                     QStringLiteral("snapshotFile"),
                     tr("%1 cannot be written.").arg(QDir::toNativeSeparators(path)),
                     file.errorString(),
                     {},
                     nullptr});
    else
        m_host.dismiss(QStringLiteral("snapshotFile"));
}

void QlumSnapshotPart::removeChosen()
{
    const QString name = m_before->currentData().toString();
    std::erase_if(m_snapshots, [&name](const QlumSnapshot& snapshot) { return snapshot.name == name; });
    m_sizes.remove(name);
    measure();
    fillChoices({});
    m_host.markModified();
    compare();
    tellKept({});
}

// ---- comparison

void QlumSnapshotPart::compare()
{
    const QlumSnapshot* before = chosen(*m_before);
    const QlumSnapshot* after = chosen(*m_after);
    if (before == nullptr) {
        m_model->show({});
        m_summary->clear();
        return;
    }
    m_model->show(qlumCompare(*before, after ? *after : present({})));
    m_summary->setText(tr("%1 changed, %2 with another status, %3 gone, %4 new, %5 the same")
                           .arg(m_model->count(QlumDifferenceKind::Changed))
                           .arg(m_model->count(QlumDifferenceKind::Status))
                           .arg(m_model->count(QlumDifferenceKind::Gone))
                           .arg(m_model->count(QlumDifferenceKind::New))
                           .arg(m_model->count(QlumDifferenceKind::Same)));
}

void QlumSnapshotPart::stageBefore()
{
    std::vector<std::pair<quint32, UaVariant>> values;
    const auto add = [&values](const QlumDifferenceRow& row) {
        if (row.after.key != 0 && row.before.hasValue && row.kind == QlumDifferenceKind::Changed)
            values.emplace_back(row.after.key, row.before.value.value());
    };
    const QModelIndexList selected = m_table->selectionModel()->selectedRows();
    for (const QModelIndex& index : selected)
        add(m_model->rowAt(m_filter->mapToSource(index).row()));
    if (selected.isEmpty())
        for (const QlumDifferenceRow& row : m_model->rows())
            add(row);
    if (values.empty()) {
        m_host.tell({QlumMessage::Note,
                     snapshotTopic,
                     tr("There are no old values to stage."),
                     tr("Compare a snapshot with now; rows that have changed have old values."),
                     {},
                     nullptr});
        return;
    }
    m_staged.stageValues(values);
    m_staged.show();
}

// ---- project

void QlumSnapshotPart::saveSettings(QSettings& settings)
{
    settings.beginWriteArray(QStringLiteral("Snapshots"));
    int index = 0;
    for (auto snapshot = m_snapshots.rbegin(); snapshot != m_snapshots.rend();
         ++snapshot) { // the newest first
        if (m_leftOut.contains(snapshot->name))
            continue;
        settings.setArrayIndex(index++);
        settings.setValue(QStringLiteral("Snapshot"), QString::fromUtf8(qlumSnapshotText(*snapshot)));
    }
    settings.endArray();
}

void QlumSnapshotPart::loadSettings(QSettings& settings, const QMap<int, int>&)
{
    const int count = std::min(settings.beginReadArray(QStringLiteral("Snapshots")), maximumSnapshots);
    for (int index = 0; index < count; ++index) {
        settings.setArrayIndex(index);
        QlumSnapshot snapshot;
        QString fault;
        int unreadable = 0;
        if (qlumReadSnapshot(settings.value(QStringLiteral("Snapshot")).toString().toUtf8(), snapshot, fault,
                             unreadable))
            m_snapshots.insert(m_snapshots.begin(), std::move(snapshot));
    }
    settings.endArray();
    measure();
    fillChoices({});
    compare();
}
