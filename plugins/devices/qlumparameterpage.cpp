#include <plugins/devices/qlumparameterpage.h>

#include <app/api/qlummetatypes.h>
#include <plugins/devices/qlumdevicelist.h>
#include <plugins/devices/qlumparametermodel.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumpartdelegate.h>
#include <uawidgets/editors/qlumvaluedialog.h>
#include <uawidgets/editors/qlumvalueeditor.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumviewstate.h>

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHideEvent>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QShowEvent>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

#include <set>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumParameterPage", text)

namespace {
enum ParameterAction {
    ParameterRead,
    ParameterWatch,
    ParameterEdit,
    ParameterWrite,
    ParameterDiscard,
    ParameterSave,
    ParameterLoad,
    ParameterCompare
};

constexpr QlumActionRow parameterActionRows[] = {
    {ParameterRead, "readParameters", TEXT("&Read"), "", qlumNoKey,
     TEXT("Read the parameters of the device again; changed values stay"), TEXT("")},
    {ParameterWatch, "watchParameters", TEXT("W&atch"), "", qlumNoKey,
     TEXT("Show values as they change, as long as this is pressed"), TEXT("")},
    {ParameterEdit, "editParameter", TEXT("&Edit..."), "", qlumNoKey,
     TEXT("Edit the value of the selected parameter in a window"), TEXT("")},
    {ParameterWrite, "writeParameters", TEXT("&Write"), "", qlumNoKey,
     TEXT("Write all changed values to the device in one go and read them back"),
     TEXT("<b>Write</b><br>Sends all changed values with one call and reads them back. What the device does "
          "not take stays changed and says why.")},
    {ParameterDiscard, "discardParameters", TEXT("&Discard"), "", qlumNoKey,
     TEXT("Forget the changed values"), TEXT("")},
    {ParameterSave, "saveParameters", TEXT("&Save Set..."), "", qlumNoKey,
     TEXT("Save the values that can be written to a file"), TEXT("")},
    {ParameterLoad, "loadParameters", TEXT("&Load Set..."), "", qlumNoKey,
     TEXT("Compare the device with a saved file and take values over"), TEXT("")},
    {ParameterCompare, "compareParameters", TEXT("&Compare with Type..."), "", qlumNoKey,
     TEXT("Show where the device differs from the values of its type"), TEXT("")},
};
} // namespace

QlumParameterPage::QlumParameterPage(QlumViewState& state, QWidget* parent)
    : QWidget(parent), m_model(new QlumParameterModel(this)), m_filter(new QlumParameterFilter(this))
{
    setObjectName(QStringLiteral("deviceParameterPage"));
    createActions();
    m_filter->setSourceModel(m_model);
    m_view =
        qlumMakeDeviceTable(m_filter, QStringLiteral("deviceParameters"), tr("Parameters of the device"),
                            tr("Select a device that has parameters."), &state, {24, 22, 8, 46, 30, 18, 18});
    m_view->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    m_view->setSortingEnabled(true);
    m_view->sortByColumn(-1, Qt::AscendingOrder);
    m_view->addActions(m_actions.list({ParameterEdit, ParameterRead, ParameterWrite, ParameterDiscard}));
    m_view->setItemDelegateForColumn(
        QlumParameterModel::Value,
        new QlumPartDelegate([this](const QModelIndex& index) { return contextOf(index); }, m_view));
    connect(m_view, &QTableView::doubleClicked, this, &QlumParameterPage::edit);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &QlumParameterPage::updateActions);
    connect(m_model, &QlumParameterModel::changesChanged, this, &QlumParameterPage::updateActions);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 4, 0, 0);
    layout->addWidget(makeBar());
    layout->addWidget(m_view, 1);
    updateActions();
}

void QlumParameterPage::createActions()
{
    m_actions = QlumActionTable(parameterActionRows, "QlumParameterPage", this);
    m_actions[ParameterWatch]->setCheckable(true);
    connect(m_actions[ParameterRead], &QAction::triggered, this, &QlumParameterPage::readWanted);
    connect(m_actions[ParameterWatch], &QAction::toggled, this, &QlumParameterPage::watchWanted);
    connect(m_actions[ParameterEdit], &QAction::triggered, this,
            [this] { edit(m_view->currentIndex().siblingAtColumn(QlumParameterModel::Name)); });
    connect(m_actions[ParameterWrite], &QAction::triggered, this, &QlumParameterPage::writeWanted);
    connect(m_actions[ParameterDiscard], &QAction::triggered, m_model, &QlumParameterModel::discardChanges);
    connect(m_actions[ParameterSave], &QAction::triggered, this, &QlumParameterPage::saveWanted);
    connect(m_actions[ParameterLoad], &QAction::triggered, this, &QlumParameterPage::loadWanted);
    connect(m_actions[ParameterCompare], &QAction::triggered, this, &QlumParameterPage::compareWanted);
}

QWidget* QlumParameterPage::makeBar()
{
    auto* bar = new QWidget;
    m_groups = new QComboBox;
    m_groups->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    qlumDescribeField(m_groups, {QStringLiteral("deviceGroup"), tr("Functional group"), {}, {}});
    m_text = new QLineEdit;
    m_text->setClearButtonEnabled(true);
    m_text->setPlaceholderText(tr("Filter"));
    qlumDescribeField(m_text, {QStringLiteral("deviceParameterFilter"),
                               tr("Filter"),
                               {},
                               tr("Shows the parameters that have this text")});
    m_changes = new QLabel;
    m_changes->setObjectName(QStringLiteral("deviceChanges"));
    connect(
        m_groups, qOverload<int>(&QComboBox::currentIndexChanged), this,
        [this] { m_filter->setGroup(m_groups->currentData().toString()); });
    connect(m_text, &QLineEdit::textChanged, this, [this](const QString& text) { m_filter->setText(text); });
    auto* first = new QHBoxLayout;
    first->addWidget(m_groups);
    first->addWidget(m_text, 1);
    first->addWidget(m_changes);
    auto* second = new QToolBar; // what finds no room is in its menu
    second->setObjectName(QStringLiteral("deviceParameterBar"));
    second->addActions(m_actions.list({ParameterRead, ParameterWatch, ParameterWrite, ParameterDiscard,
                                       ParameterSave, ParameterLoad, ParameterCompare}));
    for (QAction* const action : second->actions()) {
        QWidget* const button = second->widgetForAction(action);
        button->setObjectName(action->objectName() + QStringLiteral("Button"));
        button->setAccessibleName(qlumBareLabel(action->text()));
    }
    auto* layout = new QVBoxLayout(bar);
    layout->setContentsMargins(4, 0, 4, 0);
    layout->addLayout(first);
    layout->addWidget(second);
    return bar;
}

// ---- content

void QlumParameterPage::setDetails(unsigned int serverId, const QlumDeviceDetails& details, bool keepsChanges)
{
    m_serverId = serverId;
    showGroups(details.groups);
    m_model->setDetails(details, keepsChanges);
}

void QlumParameterPage::clear()
{
    m_model->clear();
    updateActions();
}

void QlumParameterPage::showGroups(const QStringList& groups)
{
    const QString chosen = m_wantedGroup.isEmpty() ? group() : m_wantedGroup;
    m_groups->clear();
    m_groups->addItem(tr("All groups"), QString());
    for (const QString& name : groups)
        m_groups->addItem(name, name);
    const int place = m_groups->findData(chosen);
    m_groups->setCurrentIndex(place < 0 ? 0 : place);
    m_wantedGroup = place < 0 ? chosen : QString();
}

QString QlumParameterPage::group() const
{
    return m_wantedGroup.isEmpty() ? m_groups->currentData().toString() : m_wantedGroup;
}

void QlumParameterPage::setGroup(const QString& group)
{
    m_wantedGroup = group;
}

std::vector<int> QlumParameterPage::selectedRows() const
{
    std::set<int> rows;
    for (const QModelIndex& index : m_view->selectionModel()->selectedIndexes())
        rows.insert(m_filter->mapToSource(index).row());
    return {rows.begin(), rows.end()};
}

bool QlumParameterPage::isWatching() const
{
    return m_actions[ParameterWatch]->isChecked();
}

void QlumParameterPage::setWatching(bool isWatching)
{
    m_actions[ParameterWatch]->setChecked(isWatching);
}

void QlumParameterPage::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (isWatching() && !event->spontaneous())
        emit watchWanted(true);
}

void QlumParameterPage::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (isWatching() && !event->spontaneous())
        emit watchWanted(false);
}

void QlumParameterPage::setReady(bool isReady)
{
    m_isReady = isReady;
    updateActions();
}

void QlumParameterPage::updateActions()
{
    const int changes = m_model->changeCount();
    const bool hasRows = m_model->rowCount() > 0;
    m_actions[ParameterRead]->setEnabled(m_isReady && hasRows);
    m_actions[ParameterWatch]->setEnabled(hasRows);
    m_actions[ParameterEdit]->setEnabled(m_view->currentIndex().isValid());
    m_actions[ParameterWrite]->setEnabled(m_isReady && changes > 0);
    m_actions[ParameterDiscard]->setEnabled(changes > 0);
    m_actions[ParameterSave]->setEnabled(hasRows);
    m_actions[ParameterLoad]->setEnabled(hasRows);
    m_actions[ParameterCompare]->setEnabled(hasRows);
    m_changes->setText(changes == 0 ? QString() : tr("Changed, not written yet: %1").arg(changes));
}

// ---- editing

QlumValueContext QlumParameterPage::contextOf(const QModelIndex& index) const
{
    const QlumParameterRow& row = m_model->rowAt(m_filter->mapToSource(index));
    QlumValueContext context = row.parameter.context ? *row.parameter.context : QlumValueContext();
    context.browseNode = qlumNodeChoice(m_serverId);
    return context;
}

void QlumParameterPage::edit(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    const int row = m_filter->mapToSource(index).row();
    if (const QString why = m_model->obstacle(row); !why.isEmpty()) {
        emit told(tr("%1 cannot be edited.").arg(m_model->rowAt(row).parameter.name), why);
        return;
    }
    const QModelIndex cell = index.siblingAtColumn(QlumParameterModel::Value);
    const bool isForCell =
        index.column() == QlumParameterModel::Value &&
        qlumWhyNoValueEditor(QlumParameterModel::shown(m_model->rowAt(row)), contextOf(cell)).isEmpty();
    if (isForCell)
        m_view->edit(cell);
    else
        editInWindow(row);
}

void QlumParameterPage::editInWindow(int row)
{
    const QlumParameterRow& edited = m_model->rowAt(row);
    const UaNodeId id = edited.parameter.id;
    auto* dialog = new QlumValueDialog(
        contextOf(m_filter->mapFromSource(m_model->index(row, QlumParameterModel::Value))), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setHeading(edited.parameter.name);
    dialog->setValue(QlumParameterModel::shown(edited));
    dialog->setTaker([page = QPointer<QlumParameterPage>(this), id](const UaVariant& value) {
        const int place = page ? page->m_model->find(id) : -1;
        return place < 0 ? tr("The parameter is not shown any more.") : page->m_model->stage(place, value);
    });
    dialog->show();
}

#undef TEXT
