#include <plugins/methods/qlummethoddialog.h>

#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/methods/qlummethodcallmodel.h>
#include <plugins/methods/qlummethodjob.h>
#include <plugins/methods/qlummethodwords.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumargumentpanel.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumdefaultvalue.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemView>
#include <QAction>
#include <QByteArray>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>

#include <memory>
#include <utility>

namespace {
constexpr int longestTimeout = 24 * 60 * 60; // seconds
constexpr int second = 1000;                 // ms
const QString timeoutKey = QStringLiteral("Timeout");
const QString methodTopic = QStringLiteral("method");

QString ownerText(const QlumMethodOwner& owner)
{
    const QString id = toQString(owner.id.toXmlString());
    return owner.name.isEmpty() ? id
                                : QStringLiteral("%1 (%2)").arg(qlumCutText(qlumSingleLine(owner.name)), id);
}

QString inputKey(int input)
{
    return QStringLiteral("Input %1").arg(input);
}

// Project files are shown around.
bool isSecret(const QString& name)
{
    for (const char* word : {"password", "passwd", "secret", "privatekey"})
        if (name.contains(QLatin1String(word), Qt::CaseInsensitive))
            return true;
    return false;
}

QWidget* titled(const QString& title, QWidget* content, QWidget* parent)
{
    auto* box = new QWidget(parent);
    auto* label = new QLabel(title, box);
    label->setBuddy(content);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(content, 1);
    return box;
}

QScrollArea* scrolled(QWidget* content, const QString& name)
{
    auto* area = new QScrollArea;
    area->setObjectName(name);
    area->setWidget(content);
    area->setWidgetResizable(true);
    return area;
}
} // namespace

QlumMethodDialog::QlumMethodDialog(QlumMethodWorld& world, unsigned int serverId, const UaNodeId& objectId,
                                   const UaNodeId& methodId, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumMethodDialog"), parent, Qt::Window), m_world(world),
      m_serverId(serverId), m_objectId(objectId), m_methodId(methodId),
      m_state(new QlumViewState(QStringLiteral("QlumMethodDialog/view"), this))
{
    // the index of a namespace is another one tomorrow
    const QString uri = world.application.namespaceUriFromIndex(serverId, methodId.namespaceIndex());
    const UaExpandedNodeId lasting(methodId, toUaString(uri));
    m_memoryKey = {serverId, toQString(lasting.toString())};
    setObjectName(QStringLiteral("methodDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Call Method"));
    build();
    m_tick.setInterval(second);
    connect(&m_tick, &QTimer::timeout, this, &QlumMethodDialog::tellElapsed);
    sltReload();
}

QlumMethodDialog::~QlumMethodDialog()
{
    m_world.pool.giveUp(m_reading);
    m_world.pool.giveUp(m_calling);
    m_world.pool.giveUp(m_cancelling);
}

// ---- widgets

void QlumMethodDialog::build()
{
    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->setObjectName(QStringLiteral("methodSplitter"));
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(makeInputs());
    splitter->addWidget(makeOutputs());
    splitter->addWidget(makeCalls());
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    splitter->setStretchFactor(2, 1);
    m_state->keep(splitter, QStringLiteral("splitter"));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(makeTop());
    layout->addWidget(splitter, 1);
    layout->addLayout(makeButtons());
    resize(fontMetrics().averageCharWidth() * 100, fontMetrics().height() * 42);
}

QLayout* QlumMethodDialog::makeTop()
{
    m_heading = new QlumViewHeading(this);
    m_messages = new QlumMessageBar(this);
    m_description = new QLabel(this);
    m_description->setObjectName(QStringLiteral("methodDescription"));
    m_description->setTextFormat(Qt::PlainText);
    m_description->setWordWrap(true);
    m_ownerRow = new QWidget(this);
    m_owner = new QComboBox(m_ownerRow);
    qlumDescribeField(m_owner, {QStringLiteral("methodObject"), tr("Object"),
                                tr("<b>Object</b><br>The method was found on a type; this is the object of "
                                   "that type on which it is called."),
                                tr("The object on which the method is called")});
    auto* label = new QLabel(tr("&Object:"), m_ownerRow);
    label->setBuddy(m_owner);
    auto* row = new QHBoxLayout(m_ownerRow);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(label);
    row->addWidget(m_owner, 1);
    m_chooseOwner = new QPushButton(tr("C&hoose..."), m_ownerRow);
    m_chooseOwner->setObjectName(QStringLiteral("chooseObject"));
    m_chooseOwner->setAutoDefault(false);
    m_chooseOwner->setToolTip(tr("Choose the object in the address space"));
    m_chooseOwner->setWhatsThis(tr("<b>Choose</b><br>Not every server tells which objects of a type it has. "
                                   "This chooses one in the address space."));
    connect(m_chooseOwner, &QPushButton::clicked, this, &QlumMethodDialog::sltChooseOwner);
    row->addWidget(m_chooseOwner);
    m_ownerRow->hide();
    auto* layout = new QVBoxLayout;
    for (QWidget* widget : {static_cast<QWidget*>(m_heading), static_cast<QWidget*>(m_messages),
                            static_cast<QWidget*>(m_description), m_ownerRow})
        layout->addWidget(widget);
    return layout;
}

QWidget* QlumMethodDialog::makeInputs()
{
    m_inputs = new QlumArgumentPanel(QStringLiteral("methodInputs"));
    connect(m_inputs, &QlumArgumentPanel::edited, this, [this] { m_mayRepeat = false; });
    QWidget* box = titled(tr("&Inputs"), scrolled(m_inputs, QStringLiteral("methodInputArea")), this);
    m_addArgument = new QPushButton(tr("&Add Argument"), box);
    m_addArgument->setObjectName(QStringLiteral("addArgument"));
    m_addArgument->setToolTip(tr("Send one argument more than the method declares"));
    m_addArgument->setWhatsThis(tr("<b>Add Argument</b><br>Some servers describe their methods wrongly. This "
                                   "sends one argument more, of any type."));
    m_removeArgument = new QPushButton(tr("&Remove Last"), box);
    m_removeArgument->setObjectName(QStringLiteral("removeArgument"));
    m_removeArgument->setToolTip(tr("Send one argument less"));
    m_removeArgument->setWhatsThis(tr("<b>Remove Last</b><br>Sends the method without its last argument."));
    for (QPushButton* button : {m_addArgument, m_removeArgument})
        button->setAutoDefault(false);
    connect(m_addArgument, &QPushButton::clicked, this, &QlumMethodDialog::sltAddArgument);
    connect(m_removeArgument, &QPushButton::clicked, this, [this] {
        m_inputs->removeLastArgument();
        showState();
    });
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(m_addArgument);
    row->addWidget(m_removeArgument);
    qobject_cast<QVBoxLayout*>(box->layout())->addLayout(row);
    return box;
}

QWidget* QlumMethodDialog::makeOutputs()
{
    m_outputs = new QlumArgumentPanel(QStringLiteral("methodOutputs"));
    QWidget* box = titled(tr("&Results"), scrolled(m_outputs, QStringLiteral("methodOutputArea")), this);
    m_outcomeIcon = new QLabel(box);
    m_outcome = new QLabel(box);
    m_outcome->setObjectName(QStringLiteral("methodOutcome"));
    m_outcome->setAccessibleName(tr("What became of the call"));
    m_outcome->setTextFormat(Qt::PlainText);
    m_outcome->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_outcome->setWordWrap(true);
    auto* row = new QHBoxLayout;
    row->addWidget(m_outcomeIcon);
    row->addWidget(m_outcome, 1);
    qobject_cast<QVBoxLayout*>(box->layout())->insertLayout(1, row);
    return box;
}

QWidget* QlumMethodDialog::makeCalls()
{
    m_calls = new QlumMethodCallModel(this);
    m_table = new QTreeView;
    m_table->setObjectName(QStringLiteral("methodCalls"));
    m_table->setAccessibleName(tr("Calls so far"));
    m_table->setRootIsDecorated(false);
    m_table->setUniformRowHeights(true);
    m_table->setAlternatingRowColors(true);
    m_table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_table->setModel(m_calls);
    m_table->header()->resizeSection(QlumMethodCallModel::TimeColumn, fontMetrics().averageCharWidth() * 30);
    auto* use = new QAction(tr("&Show This Call Again"), m_table);
    use->setObjectName(QStringLiteral("useInputs"));
    use->setToolTip(tr("Take the inputs of this call over, and show what it returned"));
    use->setWhatsThis(tr(
        "<b>Show This Call Again</b><br>Takes the inputs of the selected call over, so that it can be made "
        "again or changed, and shows what it returned."));
    connect(use, &QAction::triggered, this, &QlumMethodDialog::sltUseInputs);
    connect(m_table, &QTreeView::activated, this, &QlumMethodDialog::sltUseInputs);
    m_table->addAction(use);
    qlumMakeTable(m_table,
                  {tr("No call has been made yet."), tr("method-calls"), m_state, QStringLiteral("calls")});
    return titled(tr("Calls &so far"), m_table, this);
}

QLayout* QlumMethodDialog::makeButtons()
{
    m_timeout = new QSpinBox(this);
    m_timeout->setRange(1, longestTimeout);
    m_timeout->setSuffix(tr(" s"));
    m_timeout->setValue(static_cast<int>((qlumCallTimeout() + second - 1) / second));
    qlumDescribeField(m_timeout,
                      {QStringLiteral("methodTimeout"), tr("Time-out"),
                       tr("<b>Time-out</b><br>How long the call waits for the server. A method that "
                          "takes longer goes on there, and its results are lost."),
                       tr("How long the call waits for the server")});
    auto* label = new QLabel(tr("&Time-out:"), this);
    label->setBuddy(m_timeout);
    m_callButton = new QPushButton(tr("&Call"), this);
    m_callButton->setObjectName(QStringLiteral("callMethodNow"));
    m_callButton->setDefault(true);
    m_callButton->setToolTip(tr("Call the method with these inputs"));
    m_cancelButton = new QPushButton(tr("Ca&ncel"), this);
    m_cancelButton->setObjectName(QStringLiteral("cancelCall"));
    m_cancelButton->setToolTip(tr("Give the call up and ask the server to end it"));
    auto* close = new QPushButton(tr("Close"), this);
    close->setObjectName(QStringLiteral("closeMethod"));
    for (QPushButton* button : {m_cancelButton, close})
        button->setAutoDefault(false);
    connect(m_callButton, &QPushButton::clicked, this, &QlumMethodDialog::sltCall);
    connect(m_cancelButton, &QPushButton::clicked, this, &QlumMethodDialog::sltCancel);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_timeout);
    row->addStretch(1);
    for (QPushButton* button : {m_callButton, m_cancelButton, close})
        row->addWidget(button);
    return row;
}

bool QlumMethodDialog::canCall() const
{
    return m_isKnown && m_calling == 0 && m_serverId != qlumNoServer && qlumIsConnected(m_status) &&
           (!m_info.isOfType || m_owner->currentIndex() >= 0);
}

void QlumMethodDialog::showState()
{
    const bool isCalling = m_calling != 0;
    if (m_serverId != qlumNoServer)
        m_heading->setServer(m_world.application.serverName(m_serverId));
    const QString id = toQString(m_methodId.toXmlString());
    m_heading->setNode(m_isKnown ? tr("%1 (%2)").arg(qlumSingleLine(m_info.name), id) : id);
    m_heading->setStatus(m_status);
    if (m_awaitsTypes)
        m_heading->setActivity(tr("data types are being read..."));
    else
        m_heading->setActivity(m_reading != 0 ? tr("reading...") : isCalling ? tr("calling...") : QString());
    m_callButton->setEnabled(canCall());
    m_callButton->setText(m_calls->rowCount() > 0 ? tr("&Call Again") : tr("&Call"));
    m_cancelButton->setEnabled(isCalling);
    m_inputs->setEnabled(m_isKnown && !isCalling);
    m_chooseOwner->setEnabled(!isCalling && m_serverId != qlumNoServer && QlumToolServices::instance() &&
                              QlumToolServices::instance()->canChooseNode());
    m_addArgument->setEnabled(m_isKnown && !isCalling);
    m_removeArgument->setEnabled(m_isKnown && !isCalling && m_inputs->count() > 0);
}

// ---- the method

void QlumMethodDialog::sltReload()
{
    if (m_serverId == qlumNoServer)
        return;
    m_messages->dismiss(methodTopic);
    m_inputs->setEmptyText(tr("The arguments are being read..."));
    const auto function = [this, serverId = m_serverId, objectId = m_objectId, methodId = m_methodId,
                           services = m_world.services](QlumJob& job) {
        const std::shared_ptr<QlumSessionServices> session = services(serverId);
        QlumMethodInfo info;
        UaStatus status(OpcUa_BadServerNotConnected);
        if (session)
            status = qlumReadMethod(session, job, objectId, methodId, info,
                                    [this, &job] { job.post([this] { awaitTypes(); }); });
        job.post([this, status, info] { takeInfo(status, info); });
    };
    m_world.pool.giveUp(m_reading);
    m_awaitsTypes = false;
    m_reading = m_world.pool.add({tr("Reading the arguments of a method"), m_serverId}, function,
                                 [this](QlumWorkEnd end) {
                                     if (end != QlumWorkEnd::Done)
                                         takeInfo(UaStatus(OpcUa_BadRequestCancelledByClient), {});
                                 });
    showState();
}

// Of a server that has many types this takes longer than a call.
void QlumMethodDialog::awaitTypes()
{
    m_awaitsTypes = true;
    if (m_reading != 0)
        m_inputs->setEmptyText(tr("The data types of the server are being read; those of the arguments are "
                                  "among them..."));
    else
        tellElapsed();
    showState();
}

void QlumMethodDialog::takeInfo(const UaStatus& status, const QlumMethodInfo& info)
{
    m_reading = 0;
    m_awaitsTypes = false;
    if (status.isBad()) {
        loseMethod(qlumStatusWithName(status.code()));
        return;
    }
    m_isKnown = true;
    m_info = info;
    showInfo();
    showState();
    if (m_inputs->count() > 0)
        m_inputs->focusArgument(0);
    else
        m_callButton->setFocus();
}

void QlumMethodDialog::loseMethod(const QString& why)
{
    m_inputs->setEmptyText(tr("The arguments are not known."));
    m_messages->tell({QlumMessage::Error, methodTopic, tr("The method cannot be called."), why,
                      tr("Try &Again"), [this] { sltReload(); }});
    showState();
}

void QlumMethodDialog::showInfo()
{
    const QString object = m_info.isOfType || m_info.owners.empty() ? QString() : m_info.owners.front().name;
    setWindowTitle(object.isEmpty() ? tr("Call %1").arg(qlumCutText(qlumSingleLine(m_info.name)))
                                    : tr("Call %1 of %2")
                                          .arg(qlumCutText(qlumSingleLine(m_info.name)),
                                               qlumCutText(qlumSingleLine(object))));
    m_description->setText(m_info.description);
    m_description->setVisible(!m_info.description.isEmpty());
    m_owner->clear();
    for (const QlumMethodOwner& owner : m_info.owners)
        m_owner->addItem(
            tr("%1 (%2)").arg(qlumCutText(qlumSingleLine(owner.name)), toQString(owner.id.toXmlString())));
    m_ownerRow->setVisible(m_info.isOfType);
    m_inputs->setArguments(m_info.inputs, rememberedValues(), false);
    m_inputs->setEmptyText(m_info.argumentsFault.isEmpty() ? tr("The method takes no arguments.")
                                                           : tr("The arguments are not known."));
    m_outputs->setEmptyText(tr("The method has not been called yet."));
    if (!m_info.argumentsFault.isEmpty())
        m_messages->tell({QlumMessage::Warning, methodTopic,
                          tr("What arguments the method takes could not be read. They can be added by hand."),
                          m_info.argumentsFault, tr("Try &Again"), [this] { sltReload(); }});
    else if (m_info.isOfType && m_info.owners.empty())
        m_messages->tell({QlumMessage::Warning, methodTopic, tr("The method cannot be called."),
                          tr("It belongs to a type, and the server does not tell its objects. Choose one."),
                          tr("Try &Again"), [this] { sltReload(); }});
    else if (!m_info.isExecutable)
        m_messages->tell({QlumMessage::Note,
                          methodTopic,
                          tr("The server says that the method cannot be executed at the moment."),
                          tr("It can be called all the same; the server then decides."),
                          {},
                          {}});
}

void QlumMethodDialog::sltChooseOwner()
{
    const QPointer<QlumMethodDialog> self(this);
    const UaNodeId chosen = QlumToolServices::instance()
                                ? QlumToolServices::instance()->chooseNode(this, m_serverId, UaNodeId())
                                : UaNodeId();
    if (!self || chosen.isNull() || !m_info.isOfType)
        return; // choosing has an event loop of its own
    m_info.owners.push_back({chosen, {}});
    m_owner->addItem(ownerText(m_info.owners.back()));
    m_owner->setCurrentIndex(m_owner->count() - 1);
    m_messages->dismiss(methodTopic);
    showState();
}

// ---- what is remembered

void* QlumMethodDialog::openSettingsStore()
{
    return m_serverId == qlumNoServer ? nullptr : &m_memoryKey;
}

void QlumMethodDialog::closeSettingsStore(void*) {}

QVariant QlumMethodDialog::loadSetting(void* handle, const QString& key)
{
    return handle ? m_world.memory.value(m_memoryKey, key) : QVariant();
}

void QlumMethodDialog::storeSetting(void* handle, const QString& key, const QVariant& value)
{
    if (handle)
        m_world.memory.setValue(m_memoryKey, key, value);
}

// A value of another type than the method has now is of no use.
std::vector<UaVariant> QlumMethodDialog::rememberedValues()
{
    void* store = openSettingsStore();
    if (const int timeout = loadSetting(store, timeoutKey).toInt(); timeout > 0)
        m_timeout->setValue(timeout);
    std::vector<UaVariant> values;
    for (QlumMethodArgument& argument : m_info.inputs) {
        argument.context.settings = this;
        argument.context.browseNode = qlumNodeChoice(m_serverId);
        const QByteArray text =
            loadSetting(store, inputKey(static_cast<int>(values.size()))).toString().toUtf8();
        UaVariant value;
        const bool isKept = !text.isEmpty() &&
                            UaValueText::fromJson({text.constData(), static_cast<std::size_t>(text.size())},
                                                  argument.context.dictionary.get(), value)
                                .isNotBad();
        const OpcUa_BuiltInType type = argument.context.builtInType;
        const bool fits = isKept && (type == OpcUaType_Null || type == value.type()) &&
                          (argument.context.valueRank != -1 || value.isScalar());
        values.push_back(fits ? value : qlumDefaultValue(argument.context));
    }
    closeSettingsStore(store);
    return values;
}

void QlumMethodDialog::remember(const QlumMethodCall& call)
{
    void* store = openSettingsStore();
    storeSetting(store, timeoutKey, m_timeout->value());
    for (std::size_t i = 0; i < call.inputs.size() && i < m_info.inputs.size(); ++i) {
        UaString text;
        const bool isKept =
            !isSecret(m_info.inputs[i].name) && !call.inputs[i].isNull() &&
            UaValueText::toJson(call.inputs[i], m_info.inputs[i].context.dictionary.get(), text).isNotBad();
        storeSetting(store, inputKey(static_cast<int>(i)), isKept ? QVariant(toQString(text)) : QVariant());
    }
    closeSettingsStore(store);
}

// ---- servers

void QlumMethodDialog::statusChanged(unsigned int serverId, QlumConnectionStatus status,
                                     const NamespaceMap& namespaceMap)
{
    if (serverId != m_serverId)
        return;
    const bool wasUp = qlumIsConnected(m_status);
    m_status = status;
    bool isLost = false;
    for (UaNodeId* id : {&m_objectId, &m_methodId})
        if (!namespaceMap.isEmpty() && !id->isNull()) {
            isLost = isLost || !namespaceMap.contains(id->namespaceIndex());
            id->setNamespaceIndex(namespaceMap.value(id->namespaceIndex(), id->namespaceIndex()));
        }
    if (isLost) {
        m_isKnown = false;
        loseMethod(tr("It is not on the server any more: its namespace has gone."));
    } else if (status == QlumConnectionStatus::Connected &&
               (!namespaceMap.isEmpty() || (!wasUp && !m_isKnown))) {
        sltReload(); // what was entered may hold ids of the old table
    }
    showState();
}

void QlumMethodDialog::serverRemoved(unsigned int serverId)
{
    if (serverId != m_serverId)
        return;
    m_world.pool.giveUp(m_reading);
    m_reading = 0;
    if (m_calling != 0 && m_awaitsTypes) {
        endWithoutTypes();
    } else if (m_calling != 0) {
        m_call.milliseconds = m_elapsed.elapsed();
        m_call.end = QlumMethodCall::GivenUp;
        m_world.pool.giveUp(m_calling);
        ended(m_call);
    }
    m_awaitsTypes = false;
    m_serverId = qlumNoServer;
    m_status = QlumConnectionStatus::Disconnected;
    m_messages->tell({QlumMessage::Note,
                      methodTopic,
                      tr("The server was removed from the project."),
                      tr("What was called can still be looked at."),
                      {},
                      {}});
    showState();
}
