#include <plugins/dataaccess/parts/qlumstagedpage.h>

#include <app/api/qlumapplicationinterface.h>
#include <plugins/dataaccess/parts/qlumworksettings.h>
#include <plugins/dataaccess/parts/qlumworktable.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIcon>
#include <QItemSelectionModel>
#include <QLabel>
#include <QModelIndex>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr int nameWidth = 180;
constexpr int resultWidth = 320;

QCheckBox* checkBox(const char* name, const QString& text, const QString& toolTip, bool isChecked,
                    QWidget* parent)
{
    auto* box = new QCheckBox(text, parent);
    box->setObjectName(QLatin1String(name));
    box->setToolTip(toolTip);
    box->setWhatsThis(toolTip);
    box->setChecked(isChecked);
    return box;
}
} // namespace

QlumStagedPage::QlumStagedPage(QlumApplicationInterface& application, QWidget* parent)
    : QWidget(parent), m_application(application), m_model(new QlumStagedModel(this)),
      m_bar(new QToolBar(this)), m_summary(new QLabel(this)),
      m_stops(
          checkBox("stagedStops", tr("S&top at the first failure"),
                   tr("What comes behind a value that was not written is left out. Otherwise all are tried."),
                   QlumWorkSettings::stopsAtFailure.value(&application), this)),
      m_readsBack(
          checkBox("stagedReadsBack", tr("Read &back"),
                   tr("Reads each value after it was written, and shows what the server has made of it."),
                   QlumWorkSettings::readsBack.value(&application), this))
{
    setObjectName(QStringLiteral("stagedPage"));
    setAccessibleName(tr("Staged values"));
    m_summary->setObjectName(QStringLiteral("stagedSummary"));
    m_summary->setTextFormat(Qt::PlainText);
    m_bar->setObjectName(QStringLiteral("stagedBar"));
    m_bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    connect(
        m_stops, &QCheckBox::toggled, this,
        [this](bool on) { QlumWorkSettings::stopsAtFailure.store(m_application, on); });
    connect(m_readsBack, &QCheckBox::toggled, this,
            [this](bool on) { QlumWorkSettings::readsBack.store(m_application, on); });
    makeTable();
    makeActions();
    auto* options = new QHBoxLayout;
    options->setContentsMargins(4, 0, 4, 4);
    options->addWidget(m_stops);
    options->addWidget(m_readsBack);
    options->addStretch(1);
    options->addWidget(m_summary);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_bar);
    layout->addLayout(options);
    layout->addWidget(m_table, 1);
    refresh();
}

QAction* QlumStagedPage::add(const char* name, const QString& text, const QString& icon,
                             const QString& toolTip)
{
    auto* action = new QAction(icon.isEmpty() ? QIcon() : QIcon(icon), text, this);
    action->setObjectName(QLatin1String(name));
    action->setToolTip(toolTip);
    action->setWhatsThis(toolTip);
    m_bar->addAction(action);
    return action;
}

void QlumStagedPage::makeActions()
{
    m_write = add("writeStaged", tr("&Write All"), QStringLiteral(":/images/edit.png"),
                  tr("Writes the staged values, one after the other in this order."));
    m_stop = add("stopStaged", tr("&Stop"), {}, tr("Leaves out what is not written yet."));
    m_revert = add("revertStaged", tr("&Revert"), {},
                   tr("Puts the old values back where nobody has changed them since, the last one first."));
    m_bar->addSeparator();
    m_up = add("stagedUp", tr("Up"), QStringLiteral(":/images/up.png"),
               tr("The selected values are written earlier."));
    m_down = add("stagedDown", tr("Down"), QStringLiteral(":/images/down.png"),
                 tr("The selected values are written later."));
    m_discard = add("discardStaged", tr("&Discard"), QStringLiteral(":/images/remove.png"),
                    tr("The selected values are staged no more. Nothing is written."));
    m_discardAll =
        add("discardAllStaged", tr("Discard &All"), {}, tr("Empties the list. Nothing is written."));
    connect(
        m_up, &QAction::triggered, this, [this] { m_model->movePlaces(selectedPlaces(), true); });
    connect(
        m_down, &QAction::triggered, this, [this] { m_model->movePlaces(selectedPlaces(), false); });
    connect(
        m_discard, &QAction::triggered, this, [this] { m_model->discardRows(selectedPlaces()); });
    connect(m_discardAll, &QAction::triggered, this, [this] { m_model->clear(); });
}

void QlumStagedPage::makeTable()
{
    auto* state = new QlumViewState(QStringLiteral("DataAccessView"), this);
    m_table = qlumWorkTable("stagedValues", tr("Staged values"), m_model, this);
    m_table->setColumnWidth(QlumStagedModel::Order,
                            m_table->fontMetrics().horizontalAdvance(QStringLiteral("00000")));
    m_table->setColumnWidth(QlumStagedModel::Name, nameWidth);
    m_table->setColumnWidth(QlumStagedModel::Node, nameWidth);
    m_table->setColumnWidth(QlumStagedModel::Check, nameWidth);
    m_table->setColumnWidth(QlumStagedModel::Result, resultWidth);
    qlumMakeTable(m_table,
                  {tr("Enter new values in the column \"New Value\" of the table above, or paste them there. "
                      "Nothing is written before you press Write All."),
                   QStringLiteral("staged"), state, QStringLiteral("staged"), false});
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &QlumStagedPage::refresh);
    connect(m_model, &QAbstractItemModel::modelReset, this, &QlumStagedPage::refresh);
    connect(m_model, &QAbstractItemModel::rowsInserted, this, &QlumStagedPage::refresh);
    connect(m_model, &QlumStagedModel::itemsChanged, this, &QlumStagedPage::refresh);
}

std::vector<int> QlumStagedPage::selectedPlaces() const
{
    std::vector<int> places;
    for (const QModelIndex& index : m_table->selectionModel()->selectedRows())
        places.push_back(index.row());
    return places;
}

QlumApplyOptions QlumStagedPage::options() const
{
    return {m_stops->isChecked(), m_readsBack->isChecked(), nullptr};
}

void QlumStagedPage::setRunning(bool isRunning)
{
    m_isRunning = isRunning;
    m_table->setEditTriggers(isRunning
                                 ? QAbstractItemView::NoEditTriggers
                                 : QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    refresh();
}

void QlumStagedPage::refresh()
{
    const int count = m_model->rowCount();
    const int faulty = m_model->faulty();
    const int doubtful = m_model->doubtful();
    QString text = count == 0 ? QString() : tr("%n staged", nullptr, count);
    if (faulty > 0)
        text += tr(", %n cannot be sent", nullptr, faulty);
    if (doubtful > 0)
        text += tr(", %n refused by the checks", nullptr, doubtful);
    m_summary->setText(text);
    const bool hasSelection = m_table->selectionModel()->hasSelection();
    m_write->setEnabled(!m_isRunning && count > 0);
    m_stop->setEnabled(m_isRunning);
    m_revert->setEnabled(!m_isRunning && m_model->hasRevertible());
    for (QAction* action : {m_up, m_down, m_discard})
        action->setEnabled(!m_isRunning && hasSelection);
    m_discardAll->setEnabled(!m_isRunning && count > 0);
}
