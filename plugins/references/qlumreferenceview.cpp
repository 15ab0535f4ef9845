#include <plugins/references/qlumreferenceview.h>

#include <app/api/qlumactiontable.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_identifiers.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumnodecommands.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/qlumwrappingbar.h>
#include <uawidgets/table/qlumemptytext.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemView>
#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QModelIndex>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSizePolicy>
#include <QStringList>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <initializer_list>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumReferenceView", text)

namespace {
enum TableAction { Jump, CopyNodeId };

constexpr QlumActionRow actionRows[] = {
    {Jump, "jumpToTarget", TEXT("&Go to Target"), "", qlumNoKey,
     TEXT("Select the target of the reference in the address space window"),
     TEXT("<b>Go to Target</b><br>Selects the target of the reference in the address space window, so that "
          "its own references are shown here.")},
    {CopyNodeId, "copyTargetId", TEXT("Copy Node &Id"), "", qlumNoKey, "",
     TEXT("<b>Copy Node Id</b><br>Copies the node ids of the selected targets.")},
};

// What can be chosen before the types of the server are known, and on every server.
struct Common
{
    OpcUa_UInt32 id;
    const char* name;
};
constexpr Common commonTypes[] = {
    {0, TEXT("All References")},
    {OpcUaId_HierarchicalReferences, TEXT("Hierarchical References")},
    {OpcUaId_NonHierarchicalReferences, TEXT("Other References")},
};
constexpr int commonCount = 3;

QString keyOf(const UaNodeId& id)
{
    return id.isNull() ? QString() : toQString(id.toXmlString());
}
} // namespace

QlumReferenceView::QlumReferenceView(QlumReferenceModel* model, QAction* refresh, QWidget* parent)
    : QWidget(parent), m_model(model), m_filter(new QlumTableFilter(this)), m_table(new QTreeView(this)),
      m_direction(new QComboBox(this)), m_type(new QComboBox(this)), m_subtypes(new QCheckBox(this)),
      m_text(new QLineEdit(this)),
      m_state(std::make_unique<QlumViewState>(QStringLiteral("QlumReferenceView"), nullptr))
{
    m_filter->setSourceModel(model);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeBar(refresh));
    setupTable();
    layout->addWidget(m_table);
    layout->addWidget(makeMoreBar());
    connect(m_direction, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &QlumReferenceView::optionsChanged);
    connect(m_type, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &QlumReferenceView::optionsChanged);
    connect(m_subtypes, &QCheckBox::toggled, this, &QlumReferenceView::optionsChanged);
    connect(m_text, &QLineEdit::textChanged, this, &QlumReferenceView::sltFilter);
}

QlumReferenceView::~QlumReferenceView() = default;

// ---- widgets

QWidget* QlumReferenceView::makeBar(QAction* refresh)
{
    auto* button = new QToolButton(this);
    button->setDefaultAction(refresh);
    button->setAutoRaise(true);
    button->setAccessibleName(qlumBareLabel(refresh->text()));
    qlumDescribeField(
        m_direction, {QStringLiteral("referenceDirection"),
                      tr("Direction"),
                      tr("<b>Direction</b><br>Forward references begin at the node, inverse ones end there."),
                      {}});
    m_direction->addItem(tr("Both"), OpcUa_BrowseDirection_Both);
    m_direction->addItem(tr("Forward"), OpcUa_BrowseDirection_Forward);
    m_direction->addItem(tr("Inverse"), OpcUa_BrowseDirection_Inverse);
    qlumDescribeField(m_type, {QStringLiteral("referenceType"),
                               tr("Reference type"),
                               tr("<b>Reference Type</b><br>Shows references of this type only."),
                               {}});
    for (const Common& common : commonTypes)
        addType(tr(common.name), common.id == 0 ? UaNodeId() : UaNodeId(common.id));
    m_subtypes->setText(tr("Subt&ypes"));
    m_subtypes->setChecked(true);
    qlumDescribeField(m_subtypes,
                      {QStringLiteral("referenceSubtypes"), tr("Subtypes"),
                       tr("<b>Subtypes</b><br>Shows references of the types that derive from it, too."),
                       tr("References of derived types, too")});
    qlumDescribeField(m_text, {QStringLiteral("referenceFilter"),
                               tr("Text to filter the references by"),
                               {},
                               tr("Show references that hold this text")});
    m_text->setPlaceholderText(tr("Filter"));
    m_text->setClearButtonEnabled(true);
    m_direction->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    auto* bar = new QlumWrappingBar(this);
    // a narrow dock must not be widened by its longest text
    m_type->setSizePolicy(QSizePolicy::Ignored, m_type->sizePolicy().verticalPolicy());
    m_type->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_type->setMinimumContentsLength(tr("All References").length() + 1); // what it begins with is not cut
    for (QWidget* widget : std::initializer_list<QWidget*>{button, m_direction, m_type, m_subtypes, m_text})
        bar->add(widget);
    return bar;
}

QWidget* QlumReferenceView::makeMoreBar()
{
    m_moreBar = new QWidget(this);
    m_moreText = new QLabel(m_moreBar);
    m_moreText->setObjectName(QStringLiteral("referencesMoreText"));
    m_more = new QPushButton(tr("&More"), m_moreBar);
    m_more->setObjectName(QStringLiteral("referencesMore"));
    m_more->setAccessibleName(tr("More references"));
    m_more->setToolTip(tr("Read the next references"));
    m_more->setWhatsThis(tr("<b>More</b><br>Reads the next references of the node from the server."));
    connect(m_more, &QPushButton::clicked, this, &QlumReferenceView::moreWanted);
    auto* layout = new QHBoxLayout(m_moreBar);
    layout->setContentsMargins(4, 0, 0, 0);
    layout->addWidget(m_moreText, 1);
    layout->addWidget(m_more);
    m_moreBar->hide();
    return m_moreBar;
}

void QlumReferenceView::setupTable()
{
    m_table->setObjectName(QStringLiteral("referenceTable"));
    m_table->setAccessibleName(tr("References"));
    m_table->setRootIsDecorated(false);
    m_table->setUniformRowHeights(true);
    m_table->setAlternatingRowColors(true);
    m_table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_table->setSortingEnabled(true);
    m_table->setModel(m_filter);
    m_table->sortByColumn(-1, Qt::AscendingOrder); // the server's order until the user wants another
    const int em = fontMetrics().averageCharWidth();
    m_table->header()->resizeSection(QlumReferenceModel::TypeColumn, em * 20);
    m_table->header()->resizeSection(QlumReferenceModel::DirectionColumn, em * 10);
    m_table->header()->resizeSection(QlumReferenceModel::TargetColumn, em * 26);
    const QlumActionTable actions(actionRows, "QlumReferenceView", m_table);
    const auto jump = [this](const QModelIndex& index) {
        if (const QlumReference* reference = referenceAt(index))
            emit jumpWanted(*reference);
    };
    connect(actions[Jump], &QAction::triggered, this, [this, jump] { jump(m_table->currentIndex()); });
    connect(m_table, &QTreeView::activated, this, jump);
    connect(actions[CopyNodeId], &QAction::triggered, this, &QlumReferenceView::sltCopyNodeId);
    m_table->addActions(actions.list({Jump, CopyNodeId}));
    new QlumNodeCommands(
        m_table, [this] { return selectedNodes(); }, QlumNodeCommands::Reveal);
    qlumMakeTable(m_table, {{}, tr("references"), m_state.get(), QStringLiteral("header")});
    m_empty = new QlumEmptyText(m_table, {});
}

// ---- what is wanted

void QlumReferenceView::addType(const QString& name, const UaNodeId& id)
{
    m_type->addItem(name, keyOf(id));
}

int QlumReferenceView::indexOf(const UaNodeId& id) const
{
    return m_type->findData(keyOf(id));
}

QlumReferenceQuery QlumReferenceView::options() const
{
    QlumReferenceQuery query;
    query.direction = static_cast<OpcUa_BrowseDirection>(m_direction->currentData().toInt());
    query.typeId = UaNodeId::fromString(m_type->currentData().toString().toStdString());
    query.includeSubtypes = m_subtypes->isChecked();
    return query;
}

void QlumReferenceView::setOptions(const QlumReferenceQuery& options)
{
    const QSignalBlocker quiet(this);
    m_direction->setCurrentIndex(m_direction->findData(options.direction));
    if (indexOf(options.typeId) < 0)
        addType(keyOf(options.typeId), options.typeId);
    m_type->setCurrentIndex(indexOf(options.typeId));
    m_subtypes->setChecked(options.includeSubtypes);
}

void QlumReferenceView::setTypes(const std::vector<QlumReferenceType>& types)
{
    const QSignalBlocker quiet(this);
    const UaNodeId chosen = options().typeId;
    while (m_type->count() > commonCount)
        m_type->removeItem(commonCount);
    for (const QlumReferenceType& type : types)
        if (indexOf(type.id) < 0)
            addType(QString(2 * type.depth, QLatin1Char(' ')) + type.name, type.id);
    if (indexOf(chosen) < 0)
        addType(keyOf(chosen), chosen); // of another server; its references are none here, and that is said
    m_type->setCurrentIndex(indexOf(chosen));
}

// ---- what is shown

void QlumReferenceView::setNode(unsigned int serverId, const UaNodeId& nodeId)
{
    m_serverId = serverId;
    m_nodeId = nodeId;
}

void QlumReferenceView::setEmptyText(const QString& text)
{
    m_emptyText = text;
    sltFilter(m_text->text());
}

void QlumReferenceView::setMore(bool hasMore, bool isReading)
{
    m_moreText->setText(tr("%1 references; there are more.").arg(QLocale().toString(m_model->rowCount())));
    m_more->setEnabled(!isReading);
    m_moreBar->setVisible(hasMore);
}

void QlumReferenceView::sltFilter(const QString& text)
{
    m_filter->setText(text);
    m_empty->setText(text.isEmpty() || m_model->rowCount() == 0 ? m_emptyText
                                                                : tr("No reference holds this text."));
}

const QlumReference* QlumReferenceView::referenceAt(const QModelIndex& index) const
{
    const QModelIndex source = m_filter->mapToSource(index);
    return source.isValid() ? &m_model->rowAt(source) : nullptr;
}

QlumToolNodes QlumReferenceView::selectedNodes() const
{
    QlumToolNodes nodes;
    for (const QModelIndex& index : m_table->selectionModel()->selectedRows()) {
        const QlumReference* reference = referenceAt(index);
        if (!reference || reference->target.isNull() || m_serverId == qlumNoServer)
            continue;
        nodes.push_back({m_serverId, reference->target, reference->nodeClass, {}, reference->displayName});
        if (reference->isForward && reference->nodeClass == OpcUa_NodeClass_Method)
            nodes.back().parentId = m_nodeId; // an object, or a type that the dialog knows how to take
    }
    return nodes;
}

void QlumReferenceView::sltCopyNodeId() const
{
    QStringList lines;
    for (const QModelIndex& index : m_table->selectionModel()->selectedRows())
        if (const QlumReference* reference = referenceAt(index))
            lines.append(reference->targetText);
    if (!lines.isEmpty())
        QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}
