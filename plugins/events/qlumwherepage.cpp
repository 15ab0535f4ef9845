#include <plugins/events/qlumwherepage.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvalueeditor.h>
#include <uawidgets/editors/qlumvaluetext.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumwrappingbar.h>
#include <uawidgets/table/qlumstatuslook.h>
#include <uawidgets/table/qlumtable.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QModelIndex>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <deque>
#include <map>
#include <utility>

namespace {
const UaNodeId baseEventType(OpcUaId_BaseEventType);

// What the standard says of fields; of others the user does.
OpcUa_BuiltInType typeOfField(const QString& name)
{
    static const std::map<QString, OpcUa_BuiltInType> known{
        {QStringLiteral("BranchId"), OpcUaType_NodeId},
        {QStringLiteral("ConditionClassId"), OpcUaType_NodeId},
        {QStringLiteral("ConditionId"), OpcUaType_NodeId},
        {QStringLiteral("EventId"), OpcUaType_ByteString},
        {QStringLiteral("EventType"), OpcUaType_NodeId},
        {QStringLiteral("LastSeverity"), OpcUaType_UInt16},
        {QStringLiteral("Quality"), OpcUaType_StatusCode},
        {QStringLiteral("Retain"), OpcUaType_Boolean},
        {QStringLiteral("Severity"), OpcUaType_UInt16},
        {QStringLiteral("SourceNode"), OpcUaType_NodeId}};
    if (const auto found = known.find(name); found != known.end())
        return found->second;
    if (name.endsWith(QLatin1String("CurrentState/Id")))
        return OpcUaType_NodeId;
    if (name.endsWith(QLatin1String("State/Id")))
        return OpcUaType_Boolean;
    return name.endsWith(QLatin1String("Time")) ? OpcUaType_DateTime : OpcUaType_String;
}
} // namespace

// ---- rows

QlumWhereModel::QlumWhereModel(QObject* parent)
    : QlumTableModel({tr("Join"), tr("Condition"), tr("Server")}, parent),
      m_typeName([](const UaNodeId& id) { return toQString(id.toXmlString()); })
{
}

void QlumWhereModel::setConditions(const QlumEventConditions& conditions)
{
    if (conditions == this->conditions())
        return;
    std::deque<QlumWhereRow> fresh;
    for (const QlumEventCondition& condition : conditions)
        fresh.push_back({condition, std::nullopt});
    reset(std::move(fresh));
}

QlumEventConditions QlumWhereModel::conditions() const
{
    QlumEventConditions conditions;
    for (const QlumWhereRow& row : rows())
        conditions.push_back(row.condition);
    return conditions;
}

void QlumWhereModel::add(const QlumEventCondition& condition)
{
    append(std::deque<QlumWhereRow>{{condition, std::nullopt}});
}

void QlumWhereModel::removeRow(int row)
{
    remove(row, 1);
}

void QlumWhereModel::setResults(const std::vector<QlumElementResult>& results)
{
    std::vector<int> rowOfElement;
    static_cast<void>(qlumWhereClause(conditions(), &rowOfElement));
    for (std::size_t i = 0; i < results.size() && i < rowOfElement.size(); ++i) {
        if (rowOfElement[i] < 0)
            continue;
        OpcUa_StatusCode status = results[i].status;
        for (const OpcUa_StatusCode operand : results[i].operands)
            if (OpcUa_IsGood(status) && OpcUa_IsBad(operand))
                status = operand;
        change(rowOfElement[i], [status](QlumWhereRow& row) { row.status = status; });
    }
}

QVariant QlumWhereModel::cell(const QlumWhereRow& row, int column, int role) const
{
    if (column == Answer && row.status && role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return qlumStatusCell(qlumStatusLevel(*row.status), role);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    QString text;
    if (column == Join)
        text = &row == &rows().front() ? QString() : row.condition.isOr ? tr("or") : tr("and");
    else if (column == Condition)
        text = qlumSingleLine(qlumConditionText(row.condition, m_typeName));
    else if (row.status)
        text = OpcUa_IsGood(*row.status) ? tr("accepted") : qlumStatusWords(qlumStatusText(*row.status));
    return role == Qt::ToolTipRole ? qlumPlainToolTip(text) : text;
}

// ---- page

QlumWherePage::QlumWherePage(QWidget* parent)
    : QWidget(parent), m_model(new QlumWhereModel(this)), m_view(new QTreeView(this)),
      m_note(new QLabel(this)), m_join(makeCombo("whereJoin", tr("How it is joined"))),
      m_opens(makeCombo("whereOpens", tr("Brackets that open before it"))),
      m_not(new QCheckBox(tr("&not"), this)), m_kind(makeCombo("whereKind", tr("What is looked at"))),
      m_type(makeCombo("whereType", tr("Event type"))), m_field(makeCombo("whereField", tr("Field"))),
      m_operator(makeCombo("whereOperator", tr("Operator"))),
      m_valueType(makeCombo("whereValueType", tr("Type of the value"))), m_valueRow(new QHBoxLayout),
      m_closes(makeCombo("whereCloses", tr("Brackets that close behind it"))),
      m_add(new QPushButton(tr("&Add"), this)), m_remove(new QPushButton(tr("Re&move"), this))
{
    m_view->setObjectName(QStringLiteral("whereConditions"));
    m_view->setAccessibleName(tr("Conditions"));
    m_view->setRootIsDecorated(false);
    m_view->setModel(m_model);
    m_view->header()->resizeSection(QlumWhereModel::Join, fontMetrics().averageCharWidth() * 6);
    m_view->header()->resizeSection(QlumWhereModel::Condition, fontMetrics().averageCharWidth() * 26);
    qlumMakeTable(m_view,
                  {tr("All events are received. Add a condition to have the server leave others out."),
                   tr("conditions"),
                   nullptr,
                   {}});
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->setObjectName(QStringLiteral("whereNote"));
    m_join->addItems({tr("and"), tr("or")});
    for (int count = 0; count <= qlumMostBrackets; ++count) {
        const bool isNone = count == 0; // a box without a text would look broken
        m_opens->addItem(isNone ? QStringLiteral("–") : QString(count, QLatin1Char('(')));
        m_closes->addItem(isNone ? QStringLiteral("–") : QString(count, QLatin1Char(')')));
    }
    m_opens->setMinimumContentsLength(1);
    m_closes->setMinimumContentsLength(1);
    m_kind->addItems({tr("Type"), tr("Severity"), tr("Source"), tr("Field")});
    m_kind->setCurrentIndex(QlumEventCondition::Severity);
    for (const QlumFieldOperator& one : qlumFieldOperators())
        m_operator->addItem(QLatin1String(one.text), static_cast<int>(one.filterOperator));
    qlumDescribeField(m_not,
                      {QStringLiteral("whereNot"), tr("not"), {}, tr("The condition must not be met")});
    for (const OpcUa_BuiltInType type : qlumAllowedTypes({}))
        if (qlumIsTextEditable(type))
            m_valueType->addItem(qlumBuiltinTypeName(type), type);
    m_add->setObjectName(QStringLiteral("addCondition"));
    m_remove->setObjectName(QStringLiteral("removeCondition"));
    // the log stands beside them: what does not fit into the row goes into the next one
    auto* subject = new QlumWrappingBar(this);
    for (QWidget* const widget :
         std::initializer_list<QWidget*>{m_join, m_opens, m_not, m_kind, m_type, m_field, m_operator})
        subject->add(widget);
    m_valueRow->addWidget(m_valueType);
    auto* buttons = new QlumWrappingBar(this);
    for (QWidget* const widget : std::initializer_list<QWidget*>{m_closes, m_add, m_remove})
        buttons->add(widget);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(m_note);
    layout->addWidget(m_view, 1);
    layout->addWidget(subject);
    layout->addLayout(m_valueRow);
    layout->addWidget(buttons);
    connect(m_kind, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &QlumWherePage::showKind);
    connect(m_operator, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &QlumWherePage::showKind);
    connect(m_add, &QPushButton::clicked, this, &QlumWherePage::sltAdd);
    connect(m_valueType, QOverload<int>::of(&QComboBox::activated), this, &QlumWherePage::showKind);
    connect(m_field, &QComboBox::currentTextChanged, this, &QlumWherePage::suggestType);
    connect(m_remove, &QPushButton::clicked, this, &QlumWherePage::sltRemove);
    setOffer(qlumNoServer, nullptr, {});
    setConditions({}, false);
    showKind();
}

QComboBox* QlumWherePage::makeCombo(const char* name, const QString& title)
{
    auto* combo = new QComboBox(this);
    qlumDescribeField(combo, {QLatin1String(name), title, {}, {}});
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(6);
    return combo;
}

void QlumWherePage::setOffer(unsigned int serverId, const QlumEventTypes::Tree& types,
                             const QStringList& fields)
{
    m_serverId = serverId;
    std::map<UaNodeId, QString> names{{baseEventType, QStringLiteral("BaseEventType")},
                                      {UaNodeId(OpcUaId_ConditionType), QStringLiteral("ConditionType")},
                                      {UaNodeId(OpcUaId_AuditEventType), QStringLiteral("AuditEventType")}};
    if (types)
        types->visit([&names](const QlumEventNodeTypeTree& node) {
            if (node.kind() == QlumEventNodeTypeTree::EventType && node.parent())
                names[node.nodeId()] = toQString(node.browseName().name());
        });
    const QString type = m_type->currentText();
    m_type->clear();
    std::vector<std::pair<QString, UaNodeId>> sorted;
    for (const auto& [id, name] : names)
        sorted.emplace_back(qlumSingleLine(qlumCutText(name)), id);
    std::sort(sorted.begin(), sorted.end());
    for (const auto& [name, id] : sorted)
        m_type->addItem(name, toQString(id.toXmlString()));
    m_type->setCurrentText(type);
    const QString field = m_field->currentText();
    {
        const QSignalBlocker quiet(m_field); // the value that is being entered stays
        m_field->clear();
        m_field->addItems(fields);
        m_field->setCurrentText(field);
    }
    if (m_field->currentText() != field)
        suggestType();
    m_model->setTypeName([names](const UaNodeId& id) {
        const auto found = names.find(id);
        return found != names.end() ? found->second : toQString(id.toXmlString());
    });
}

void QlumWherePage::setConditions(const QlumEventConditions& conditions, bool isHere)
{
    m_model->setConditions(conditions);
    m_note->setText(tr("The server refuses these conditions. The events are filtered by this program; the "
                       "server sends all of them."));
    m_note->setVisible(isHere && !conditions.empty());
}

void QlumWherePage::showKind()
{
    const int kind = m_kind->currentIndex();
    m_type->setVisible(kind == QlumEventCondition::OfType);
    m_field->setVisible(kind == QlumEventCondition::Field);
    m_operator->setVisible(kind == QlumEventCondition::Field);
    m_valueType->setVisible(kind == QlumEventCondition::Field && takesValue() && !isPattern());
    showEditor();
    m_value->setVisible(takesValue());
    m_add->setEnabled(isComplete());
}

// ---- the value

bool QlumWherePage::takesValue() const
{
    const int kind = m_kind->currentIndex();
    return kind != QlumEventCondition::OfType &&
           (kind != QlumEventCondition::Field ||
            m_operator->currentData().toInt() != OpcUa_FilterOperator_IsNull);
}

bool QlumWherePage::isPattern() const
{
    return m_operator->currentData().toInt() == OpcUa_FilterOperator_Like;
}

OpcUa_BuiltInType QlumWherePage::wantedType() const
{
    switch (m_kind->currentIndex()) {
    case QlumEventCondition::Severity:
        return OpcUaType_UInt16;
    case QlumEventCondition::Field:
        return isPattern() ? OpcUaType_String
                           : static_cast<OpcUa_BuiltInType>(m_valueType->currentData().toInt());
    default:
        return OpcUaType_String;
    }
}

void QlumWherePage::suggestType()
{
    m_valueType->setCurrentIndex(m_valueType->findData(typeOfField(m_field->currentText())));
    showKind();
}

// What was entered stays while it is of the wanted type.
void QlumWherePage::showEditor()
{
    const OpcUa_BuiltInType type = wantedType();
    if (m_value && type == m_editedType)
        return;
    m_editedType = type;
    delete m_value;
    // a time is chosen from the present one on
    m_initial = type == OpcUaType_DateTime
                    ? UaVariant(UaDateTime(qlumUaDateTime(QDateTime::currentDateTimeUtc())))
                    : UaVariant();
    QlumValueContext context;
    context.builtInType = type;
    context.browseNode = [this](QWidget* parent, const UaNodeId& start) {
        const auto choose = qlumNodeChoice(m_serverId);
        return choose ? choose(parent, start) : UaNodeId();
    };
    m_value = qlumCreateValueEditor(m_initial, context, this);
    qlumDescribeField(m_value, {QStringLiteral("whereValue"), tr("Value"), {}, {}});
    m_valueRow->addWidget(m_value, 1);
    qlumOnEdited(m_value, this, [this] { m_add->setEnabled(isComplete()); });
    if (auto* const line = qobject_cast<QLineEdit*>(m_value)) {
        line->setPlaceholderText(m_kind->currentIndex() == QlumEventCondition::Severity ? tr("1 to 1000")
                                                                                        : tr("Value"));
        connect(line, &QLineEdit::returnPressed, this, &QlumWherePage::sltAdd);
    }
}

bool QlumWherePage::readValue(UaVariant& value) const
{
    if (!m_value || !qlumEditorFault(m_value).isEmpty())
        return false;
    value = m_initial;
    return qlumValueFromEditor(m_value, value) || !value.isNull();
}

// A condition without a value would be refused or mean something else.
bool QlumWherePage::isComplete() const
{
    UaVariant ignored;
    const int kind = m_kind->currentIndex();
    if (kind == QlumEventCondition::OfType)
        return m_type->count() > 0;
    if (kind == QlumEventCondition::Field && m_field->count() == 0)
        return false;
    return !takesValue() || readValue(ignored);
}

void QlumWherePage::sltAdd()
{
    if (!isComplete())
        return;
    QlumEventCondition condition;
    condition.isOr = m_join->currentIndex() == 1;
    condition.isNegated = m_not->isChecked();
    condition.kind = static_cast<QlumEventCondition::Kind>(m_kind->currentIndex());
    condition.type = UaNodeId::fromString(m_type->currentData().toString().toStdString());
    condition.field = m_field->currentText() == QLatin1String("ConditionId")
                          ? BrowsePathList()
                          : BrowsePathList::fromString(m_field->currentText() + QLatin1Char('/'));
    condition.filterOperator = static_cast<OpcUa_FilterOperator>(m_operator->currentData().toInt());
    if (takesValue())
        static_cast<void>(readValue(condition.value)); // it is complete
    condition.opens = m_opens->currentIndex();
    condition.closes = m_closes->currentIndex();
    m_model->add(condition);
    m_opens->setCurrentIndex(0);
    m_closes->setCurrentIndex(0);
    emit conditionsEdited(m_model->conditions());
}

void QlumWherePage::sltRemove()
{
    const QModelIndex current = m_view->currentIndex();
    if (!current.isValid())
        return;
    m_model->removeRow(current.row());
    emit conditionsEdited(m_model->conditions());
}
