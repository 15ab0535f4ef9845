#include <app/services/qlumservicesview.h>

#include <app/services/qlumservicedetails.h>
#include <app/services/qlumservicesmodel.h>
#include <app/services/qlumservicetimeline.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QIcon>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QModelIndex>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSize>
#include <QSpinBox>
#include <QSplitter>
#include <QStringList>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

#include <initializer_list>
#include <utility>

namespace {
constexpr int takeMilliseconds = 100;
constexpr int maximumDuration = 600000;

void refill(QComboBox* box, const QStringList& names)
{
    if (box->count() == names.size() + 1)
        return;
    const QString chosen = box->currentData().toString();
    const QSignalBlocker blocker(box);
    while (box->count() > 1)
        box->removeItem(1);
    for (const QString& name : names)
        box->addItem(name, name);
    if (box->findData(chosen) < 0)
        box->addItem(chosen, chosen);
    box->setCurrentIndex(box->findData(chosen));
}
} // namespace

QlumServicesView::QlumServicesView(std::shared_ptr<QlumServiceRecorder> recorder, QWidget* parent)
    : QWidget(parent), m_recorder(std::move(recorder)),
      m_state(new QlumViewState(QStringLiteral("ServicesView"), this)), m_model(new QlumServicesModel(this)),
      m_filter(new QlumServicesFilter(this)), m_details(new QlumServiceDetails(this)),
      m_timeline(new QlumServiceTimeline(*m_filter, *m_model, this)),
      m_record(new QAction(tr("&Observe"), this)),
      m_clear(new QAction(QIcon(QStringLiteral(":/images/clearlog.png")), tr("&Clear"), this)),
      m_server(new QComboBox), m_service(new QComboBox), m_outcome(new QComboBox), m_duration(new QSpinBox),
      m_text(new QLineEdit), m_message(new QLabel), m_table(new QTreeView), m_tree(new QTreeView)
{
    makeTable();
    makeDetails();
    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->setObjectName(QStringLiteral("servicesSplitter"));
    splitter->addWidget(m_table);
    splitter->addWidget(m_tree);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    m_state->keep(splitter, QStringLiteral("splitter"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeToolBar());
    layout->addWidget(splitter);
    m_timer.setSingleShot(true);
    m_timer.setInterval(takeMilliseconds);
    connectParts();
    tellState();
}

QlumServicesView::~QlumServicesView() = default;

void QlumServicesView::makeTable()
{
    m_filter->setSourceModel(m_model);
    m_table->setObjectName(QStringLiteral("servicesTable"));
    m_table->setAccessibleName(tr("Service calls"));
    m_table->setRootIsDecorated(false);
    m_table->setUniformRowHeights(true);
    m_table->setAlternatingRowColors(true);
    m_table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table->setModel(m_filter);
    m_table->setSortingEnabled(true);
    m_table->sortByColumn(QlumServicesModel::Time, Qt::AscendingOrder);
    const int em = fontMetrics().averageCharWidth();
    m_table->setItemDelegateForColumn(QlumServicesModel::Timeline, m_timeline);
    const int widths[] = {16, 18, 24, 13, 30, 16, 12, 12, 30};
    for (int column = 0; column < m_model->columnCount(); ++column)
        m_table->header()->resizeSection(column, em * widths[column]);
    qlumMakeTable(m_table, {tr("No service call is shown. Switch observing on and use a server."),
                            tr("services"), m_state, QStringLiteral("table")});
}

void QlumServicesView::makeDetails()
{
    m_tree->setObjectName(QStringLiteral("serviceDetails"));
    m_tree->setAccessibleName(tr("Details of the service call"));
    m_tree->setUniformRowHeights(true);
    m_tree->setAlternatingRowColors(true);
    m_tree->setModel(m_details);
    m_tree->header()->resizeSection(QlumServiceDetails::Name, fontMetrics().averageCharWidth() * 32);
    qlumMakeTable(m_tree, {tr("Select a service call to see its request and response."), tr("service call"),
                           m_state, QStringLiteral("details")});
}

QToolBar* QlumServicesView::makeToolBar()
{
    m_record->setObjectName(QStringLiteral("observeServices"));
    m_record->setCheckable(true);
    m_record->setToolTip(tr("Observe the service calls of all sessions"));
    m_record->setWhatsThis(
        tr("<b>Observe Service Calls</b><br>Lists every call of every session with its time, "
           "sizes and status. Passwords, keys and tokens are left out."));
    m_clear->setObjectName(QStringLiteral("clearServices"));
    m_clear->setToolTip(tr("Remove all calls from the list"));
    qlumDescribeField(m_server,
                      {QStringLiteral("server"), tr("Server"), {}, tr("Show calls to this server")});
    qlumDescribeField(m_service,
                      {QStringLiteral("service"), tr("Service"), {}, tr("Show calls of this service")});
    qlumDescribeField(m_outcome,
                      {QStringLiteral("outcome"), tr("Status"), {}, tr("Show calls that came to this")});
    qlumDescribeField(
        m_duration,
        {QStringLiteral("duration"), tr("Least duration"), {}, tr("Show calls that took at least as long")});
    qlumDescribeField(m_text,
                      {QStringLiteral("text"), tr("Filter"), {}, tr("Show calls that hold this text")});
    m_server->addItem(tr("All servers"), QString());
    m_service->addItem(tr("All services"), QString());
    for (const QString& name : {tr("All statuses"), tr("Waiting"), tr("Good"), tr("Bad")})
        m_outcome->addItem(name, m_outcome->count());
    m_duration->setRange(0, maximumDuration);
    m_duration->setSuffix(tr(" ms"));
    m_duration->setSpecialValueText(tr("Any duration"));
    m_text->setPlaceholderText(tr("Filter"));
    m_text->setClearButtonEnabled(true);
    m_text->setMaximumWidth(fontMetrics().averageCharWidth() * 30);
    for (QComboBox* box : {m_server, m_service})
        box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_message->setObjectName(QStringLiteral("message"));
    m_message->setTextFormat(Qt::PlainText);
    auto* bar = new QToolBar(tr("Services Toolbar"), this);
    bar->setObjectName(QStringLiteral("Services Toolbar"));
    bar->setIconSize(QSize(16, 16));
    bar->addAction(m_record);
    bar->addAction(m_clear);
    for (QWidget* field : std::initializer_list<QWidget*>{m_server, m_service, m_outcome, m_duration, m_text})
        bar->addWidget(field);
    bar->addWidget(m_message);
    return bar;
}

void QlumServicesView::connectParts()
{
    connect(m_record, &QAction::toggled, this, [this](bool isOn) { m_recorder->setOn(isOn); });
    connect(m_recorder.get(), &QlumServiceRecorder::switched, this, &QlumServicesView::tellState);
    connect(m_recorder.get(), &QlumServiceRecorder::recorded, &m_timer, qOverload<>(&QTimer::start));
    connect(&m_timer, &QTimer::timeout, this, &QlumServicesView::take);
    connect(
        m_clear, &QAction::triggered, this,
        [this] {
            m_dropped = 0;
            m_model->clear();
            tellState();
        });
    connect(
        m_server, qOverload<int>(&QComboBox::currentIndexChanged), m_filter,
        [this] { m_filter->setServer(m_server->currentData().toString()); });
    connect(
        m_service, qOverload<int>(&QComboBox::currentIndexChanged), m_filter,
        [this] { m_filter->setService(m_service->currentData().toString()); });
    connect(m_outcome, qOverload<int>(&QComboBox::currentIndexChanged), m_filter,
            [this](int index) { m_filter->setOutcome(static_cast<QlumServicesFilter::Outcome>(index)); });
    connect(m_duration, qOverload<int>(&QSpinBox::valueChanged), m_filter,
            &QlumServicesFilter::setLeastDuration);
    connect(m_text, &QLineEdit::textChanged, m_filter, &QlumServicesFilter::setText);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &QlumServicesView::showCurrent);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &QlumServicesView::scaleTimes);
    connect(m_filter, &QAbstractItemModel::layoutChanged, this, &QlumServicesView::scaleTimes);
    connect(m_filter, &QAbstractItemModel::dataChanged, this, &QlumServicesView::scaleTimes);
    connect(m_model, &QAbstractItemModel::modelReset, this, &QlumServicesView::showCurrent);
    const QScrollBar* bar = m_table->verticalScrollBar();
    connect(
        bar, &QScrollBar::valueChanged, this, [this, bar](int value) { m_follow = value >= bar->maximum(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this](int, int maximum) {
        if (m_follow)
            m_table->verticalScrollBar()->setValue(maximum);
    });
}

void QlumServicesView::take()
{
    m_dropped += m_recorder->takeDropped();
    m_model->take(m_recorder->take());
    fillChoices();
    if (!m_isShownEnded)
        showCurrent();
    scaleTimes();
    tellState();
}

void QlumServicesView::fillChoices()
{
    refill(m_server, m_model->servers());
    refill(m_service, m_model->services());
}

void QlumServicesView::showCurrent()
{
    const QModelIndex current = m_filter->mapToSource(m_table->currentIndex());
    if (!current.isValid()) {
        if (std::exchange(m_shown, 0) != 0)
            m_details->clear();
        return;
    }
    const QlumServiceRecord& record = m_model->rowAt(current);
    if (m_shown == record.number && m_isShownEnded == record.hasEnded)
        return;
    m_shown = record.number;
    m_isShownEnded = record.hasEnded;
    m_details->show(record);
    m_tree->expandToDepth(1);
}

// Calls that the user has selected stand for themselves, otherwise all that are shown.
void QlumServicesView::scaleTimes()
{
    m_timeline->setScale(m_table->selectionModel()->selectedRows());
    m_table->viewport()->update();
}

void QlumServicesView::tellState()
{
    const bool isOn = m_recorder->isOn();
    const QSignalBlocker blocker(m_record);
    m_record->setChecked(isOn);
    QString text = isOn ? tr(" Observing") : tr(" Not observing");
    if (m_dropped > 0)
        text += tr(", %n event(s) came too fast", nullptr, m_dropped);
    m_message->setText(text);
}
