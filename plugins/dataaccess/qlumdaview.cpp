#include <plugins/dataaccess/qlumdaview.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumstatuswords.h>
#include <plugins/dataaccess/parts/qlumdaparts.h>
#include <plugins/dataaccess/qlumdadelegate.h>
#include <plugins/dataaccess/qlumdafilter.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdapart.h>
#include <plugins/dataaccess/qlumdaplot.h>
#include <plugins/dataaccess/qlumdasettings.h>
#include <plugins/dataaccess/qlumdawatch.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/editors/qlumvaluedelegate.h>
#include <uawidgets/qlumelidedlabel.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumnodecommands.h>
#include <uawidgets/qlumscrollable.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/qlumwrappingbar.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtablefilter.h>
#include <watching/qlumvariableintake.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QFont>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QHash>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QMenu>
#include <QModelIndex>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSizePolicy>
#include <QSplitter>
#include <QString>
#include <QTabWidget>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace {
constexpr int poolThreads = 4; // so that one slow server does not hold up the others
}

QlumDaView::QlumDaView(QlumApplicationInterface& application, QlumSessionServicesProvider services,
                       QlumMonitoringProvider monitoring, QWidget* parent)
    : QWidget(parent), m_application(application), m_services(std::move(services)),
      m_monitoring(std::move(monitoring)), m_state(new QlumViewState(QStringLiteral("DataAccessView"), this)),
      m_pool(std::make_unique<QlumJobPool>(poolThreads)), m_model(new QlumDaModel(application, this)),
      m_filter(new QlumDaFilter(this)),
      m_watch(new QlumDaWatch(*m_model, m_monitoring, m_services, *m_pool, this)),
      m_delegate(new QlumDaDelegate(this)), m_heading(new QlumViewHeading(this)),
      m_messages(new QlumMessageBar(this)), m_intake(makeIntake())
{
    setObjectName(QStringLiteral("dataAccessView"));
    setAccessibleName(tr("Data Access View"));
    setAcceptDrops(true);
    m_model->setViewSettings(qlumDaDefaults());
    m_model->setJudge([this](const QlumDataItem& item) { return judge(item); });
    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->setObjectName(QStringLiteral("dataSplitter"));
    makeTable();
    m_pages = new QTabWidget(splitter);
    m_pages->setObjectName(QStringLiteral("dataPages"));
    m_pages->setAccessibleName(tr("More about the values"));
    splitter->addWidget(m_table);
    splitter->addWidget(m_pages);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_heading);
    layout->addWidget(m_messages);
    layout->addWidget(makeBar());
    layout->addWidget(splitter, 1);
    layout->addWidget(makeStatusLine());
    makeParts();
    m_state->keep(splitter, QStringLiteral("splitter"));
    connectParts();
    showHeading();
    showVerdict();
}

QlumDaView::~QlumDaView()
{
    m_model->disconnect(this); // what goes one by one must not tell a view that is half gone
    m_table->selectionModel()->disconnect(this);
    m_model->setNewValues(nullptr);
    m_model->setJudge({});
    m_pool.reset(); // before what receives its results
    m_parts.clear();
    delete m_plot;
    delete m_watch;
    delete m_state;
}

QlumVariableIntake* QlumDaView::makeIntake()
{
    const auto limit = [] {
        return static_cast<std::size_t>(std::max(1, QlumDaSettings::branchLimit.value()));
    };
    const auto add = [this](unsigned int serverId, const QlumToolNodes& nodes) {
        addVariables(serverId, nodes);
    };
    return new QlumVariableIntake({this, m_services, m_pool.get(), limit, add,
                                   [this](const QlumMessage& message) { tell(message); },
                                   [this](const QString& topic) { dismiss(topic); }},
                                  this);
}

// ---- widgets

void QlumDaView::makeTable()
{
    m_filter->setSourceModel(m_model);
    m_filter->setSortRole(QlumDaModel::SortRole);
    m_filter->setSearchedColumns({QlumDaModel::Server, QlumDaModel::NodeId, QlumDaModel::DisplayName,
                                  QlumDaModel::BrowsePath, QlumDaModel::DataType, QlumDaModel::Unit});
    m_table = new QTableView;
    m_table->setObjectName(QStringLiteral("dataItems"));
    m_table->setAccessibleName(tr("Watched values"));
    m_table->setModel(m_filter);
    m_table->setItemDelegate(m_delegate);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setWordWrap(false);
    m_table->setSortingEnabled(true);
    m_table->sortByColumn(-1, Qt::AscendingOrder);
    constexpr int rowMargin = 6;
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + rowMargin);
    showUsualColumns();
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    makeActions();
    new QlumNodeCommands(
        m_table,
        [this] {
            QlumToolNodes nodes;
            for (const quint32 key : selectedKeys())
                if (const QlumDataItem* item = m_model->find(key); item && !item->nodeId.isNull())
                    nodes.push_back(
                        {item->serverId, item->nodeId, OpcUa_NodeClass_Variable, {}, item->displayName});
            return nodes;
        },
        QlumNodeCommands::Tools);
    qlumMakeTable(
        m_table, {tr("Drop variables or branches here from the Address Space window, or choose \"Add to Data "
                     "Access View\" in the menu of a node."),
                  QStringLiteral("values"), m_state, QStringLiteral("items"), false});
}

// Those that one looks at all day; the others are in the menu of the header.
void QlumDaView::showUsualColumns()
{
    using Model = QlumDaModel;
    const QFontMetrics metrics = m_table->fontMetrics();
    const auto width = [this, &metrics](int column, const char* text) {
        m_table->setColumnWidth(column, metrics.horizontalAdvance(QLatin1String(text)));
    };
    width(Model::Number, "100000");
    width(Model::Server, "Demo Server 1 ");
    width(Model::NodeId, "ns=2;s=Dynamic.RandomDouble ");
    width(Model::DisplayName, "TemperatureSensor ");
    width(Model::Value, "-1234567.8901234567 ");
    width(Model::NewValue, "-123.45 (Not sent: this server ");
    width(Model::SourceTime, "22:58:58.888 PM ");
    width(Model::Status, "Offline since 22:58:58.888   ");
    width(Model::Verdict, "complete, unchanged for 10 min ");
    width(Model::Age, "10 min 20 s ");
    for (const int column : {Model::BrowsePath, Model::ServerTime, Model::Received, Model::Minimum,
                             Model::Maximum, Model::SamplingAsked, Model::Queue})
        m_table->setColumnHidden(column, true);
}

QWidget* QlumDaView::makeBar()
{
    auto* bar = new QlumWrappingBar;
    m_filterText = new QLineEdit;
    m_filterText->setObjectName(QStringLiteral("dataFilter"));
    m_filterText->setAccessibleName(tr("Filter"));
    m_filterText->setPlaceholderText(tr("Filter by server, node, name, path, type or unit"));
    m_filterText->setToolTip(tr("Shows the rows only that have this text."));
    m_filterText->setClearButtonEnabled(true);
    connect(m_filterText, &QLineEdit::textChanged, m_filter, &QlumTableFilter::setText);
    const auto makeChoice = [](const char* name, const QString& what, const QStringList& choices) {
        auto* box = new QComboBox;
        box->setObjectName(QLatin1String(name));
        box->setAccessibleName(what);
        box->setToolTip(what);
        box->addItems(choices);
        return box;
    };
    m_show = makeChoice("dataShow", tr("Which rows are shown"),
                        {tr("All rows"), tr("Rows in trouble"), tr("Writable rows")});
    m_group = makeChoice("dataGroup", tr("What rows stand together by"),
                         {tr("No groups"), tr("By server"), tr("By folder")});
    connect(m_show, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this](int index) { m_filter->setShow(static_cast<QlumDaFilter::Show>(index)); });
    connect(m_group, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this](int index) {
        m_filter->setGroup(static_cast<QlumDaFilter::Group>(index));
        markModified();
    });
    m_progress = new QProgressBar;
    m_progress->setObjectName(QStringLiteral("dataProgress"));
    m_progress->setAccessibleName(tr("Variables that are added"));
    m_progress->hide();
    auto* commands = new QPushButton;
    commands->setObjectName(QStringLiteral("dataCommands"));
    commands->setText(tr("&Commands"));
    commands->setToolTip(tr("What can be done with rows and with the view."));
    m_menu = new QMenu(commands);
    m_menu->addActions(m_actions.list({EditValue, OpenValue, AddParts, Plot, EndPlot, RowSettings,
                                       ViewSettings, AskAgain, ResetCounts, MoveUp, MoveDown, Remove}));
    commands->setMenu(m_menu);
    for (QWidget* widget :
         std::initializer_list<QWidget*>{m_filterText, m_show, m_group, m_progress, commands})
        bar->add(widget);
    return bar;
}

QWidget* QlumDaView::makeVerdictPage()
{
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("verdictPage"));
    m_verdictWord = new QLabel;
    m_verdictWord->setObjectName(QStringLiteral("verdictWord"));
    m_verdictReason = new QLabel;
    m_verdictReason->setObjectName(QStringLiteral("verdictReason"));
    for (QLabel* label : {m_verdictWord, m_verdictReason}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    }
    QFont bold = m_verdictWord->font();
    bold.setBold(true);
    m_verdictWord->setFont(bold);
    m_remedy = new QPushButton;
    m_remedy->setObjectName(QStringLiteral("remedy"));
    m_remedy->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    m_remedy->setToolTip(tr("Sets for the selected rows what would have sufficed."));
    m_remedy->setWhatsThis(m_remedy->toolTip());
    connect(m_remedy, &QPushButton::clicked, this, &QlumDaView::takeRemedy);
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(m_verdictWord);
    layout->addWidget(m_verdictReason);
    layout->addWidget(m_remedy);
    layout->addStretch(1);
    return page;
}

QWidget* QlumDaView::makeStatusLine()
{
    m_traffic = new QlumElidedLabel;
    m_traffic->setObjectName(QStringLiteral("dataTraffic"));
    m_traffic->setAccessibleName(tr("Traffic"));
    m_traffic->setMargin(2);
    return m_traffic;
}

void QlumDaView::makeParts()
{
    addPage(makeVerdictPage(), tr("Where Did My Values Go?"));
    m_plot = new QlumDaPlot(*m_model, m_monitoring);
    addPage(m_plot, tr("Plot"));
    m_parts = qlumMakeDaParts(*this);
    const auto filler =
        std::find_if(m_parts.begin(), m_parts.end(), [](const auto& part) { return part->hasNewValues(); });
    m_newValues = filler == m_parts.end() ? nullptr : filler->get();
    m_model->setNewValues(m_newValues);
}

void QlumDaView::connectParts()
{
    connect(m_model, &QlumDaModel::valuesTaken, this, [this](const std::vector<quint32>& keys) {
        paintValues(keys);
        for (const auto& part : m_parts)
            part->valuesChanged(keys);
    });
    connect(m_watch, &QlumDaWatch::refused, this, &QlumDaView::tellRefused);
    connect(m_watch, &QlumDaWatch::changeRefused, this, [this](unsigned int id, int count, UaStatusCode why) {
        tell({QlumMessage::Warning,
              QStringLiteral("settings"),
              tr("%1 did not take the new settings of %n row(s).", nullptr, count).arg(serverName(id)),
              tr("%1. They go on as before.").arg(qlumResultInWords(UaStatus(why.code()))),
              {},
              {}});
    });
    connect(m_watch, &QlumDaWatch::progressed, this, [this](int done, int total) {
        m_progress->setMaximum(total);
        m_progress->setValue(done);
        m_progress->setVisible(done < total);
    });
    connect(m_table, &QAbstractItemView::doubleClicked, this, &QlumDaView::openCell);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &QlumDaView::showVerdict);
    connect(
        m_delegate, &QlumDaDelegate::entered, this,
        [this](const QModelIndex& index, const UaVariant& value) {
            takeEntered(index.data(QlumDaModel::KeyRole).toUInt(), index.column(), value);
        });
    connect(m_delegate, &QlumValueDelegate::refused, this, [this](const QString& why) {
        m_messages->tell({QlumMessage::Warning, QStringLiteral("write"), why, {}, {}, {}});
    });
    constexpr int second = 1000, soon = 200;
    m_regroup.setInterval(soon);
    m_regroup.setSingleShot(true);
    connect(&m_regroup, &QTimer::timeout, this, [this] {
        if (m_filter->group() != QlumDaFilter::NoGroups)
            m_filter->lookAgain();
    });
    m_groups.setInterval(0);
    m_groups.setSingleShot(true);
    connect(&m_groups, &QTimer::timeout, this, &QlumDaView::showGroups);
    for (const auto change : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(m_filter, change, &m_groups, QOverload<>::of(&QTimer::start));
    connect(m_filter, &QAbstractItemModel::layoutChanged, this, &QlumDaView::showGroups);
    connect(m_filter, &QAbstractItemModel::modelReset, this, &QlumDaView::showGroups);
    m_second.setInterval(second);
    connect(&m_second, &QTimer::timeout, this, &QlumDaView::showEachSecond);
}

// The first row of each group is as high as two, and has the group's heading at its top.
void QlumDaView::showGroups()
{
    const QHash<int, QString> headings = m_filter->headings();
    if (headings.isEmpty() && !std::exchange(m_hasGroups, false))
        return;
    m_hasGroups = !headings.isEmpty();
    m_delegate->setHeadings(headings);
    QHeaderView* const rows = m_table->verticalHeader();
    const int usual = rows->defaultSectionSize();
    for (int row = 0; row < m_filter->rowCount(); ++row)
        if (const int wanted = headings.contains(row) ? 2 * usual : usual; rows->sectionSize(row) != wanted)
            rows->resizeSection(row, wanted);
    m_table->viewport()->update();
}

// ---- parts

void QlumDaView::addPage(QWidget* page, const QString& title)
{
    m_pages->addTab(page == m_plot ? page : qlumScrollablePage(page),
                    title); // a plot shows less in less room
}

void QlumDaView::showPage(QWidget* page)
{
    for (int i = 0; i < m_pages->count(); ++i)
        if (m_pages->widget(i) == page || m_pages->widget(i)->isAncestorOf(page))
            m_pages->setCurrentIndex(i);
}

void QlumDaView::addCommands(const QString& title, const QList<QAction*>& actions)
{
    QMenu* menu = m_menu->addMenu(title);
    menu->addActions(actions);
    m_table->addAction(menu->menuAction()); // below their title: there are many
}

void QlumDaView::tell(const QlumMessage& message)
{
    m_messages->tell(message);
}

void QlumDaView::dismiss(const QString& topic)
{
    m_messages->dismiss(topic);
}

void QlumDaView::markModified()
{
    if (!m_isLoading)
        m_application.setModified();
}

std::vector<quint32> QlumDaView::selectedKeys() const
{
    QList<int> places;
    for (const QModelIndex& index : m_table->selectionModel()->selectedRows())
        places.append(index.row());
    std::sort(places.begin(), places.end());
    std::vector<quint32> keys;
    keys.reserve(static_cast<std::size_t>(places.size()));
    for (const int row : places)
        keys.push_back(m_filter->index(row, 0).data(QlumDaModel::KeyRole).toUInt());
    return keys;
}

std::vector<quint32> QlumDaView::shownKeys() const
{
    std::vector<quint32> keys;
    keys.reserve(static_cast<std::size_t>(m_filter->rowCount()));
    for (int row = 0; row < m_filter->rowCount(); ++row)
        keys.push_back(m_filter->index(row, 0).data(QlumDaModel::KeyRole).toUInt());
    return keys;
}

quint32 QlumDaView::currentKey() const
{
    const QModelIndex current = m_table->currentIndex();
    return current.isValid() ? current.data(QlumDaModel::KeyRole).toUInt() : 0;
}
