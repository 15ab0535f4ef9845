#include <plugins/events/qlumwherepage.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/table/qlumstatuslook.h>
#include <uawidgets/table/qlumtable.h>

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QModelIndex>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <deque>
#include <map>
#include <utility>

namespace {
const UaNodeId baseEventType(OpcUaId_BaseEventType);
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
      m_operator(makeCombo("whereOperator", tr("Operator"))), m_value(new QLineEdit(this)),
      m_closes(makeCombo("whereCloses", tr("Brackets that close behind it"))),
      m_add(new QPushButton(tr("A&dd"), this)), m_remove(new QPushButton(tr("Re&move"), this))
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
        m_opens->addItem(QString(count, QLatin1Char('(')));
        m_closes->addItem(QString(count, QLatin1Char(')')));
    }
    m_opens->setMinimumContentsLength(1);
    m_closes->setMinimumContentsLength(1);
    m_kind->addItems({tr("Type"), tr("Severity"), tr("Source"), tr("Field")});
    m_kind->setCurrentIndex(QlumEventCondition::Severity);
    for (const QlumFieldOperator& one : qlumFieldOperators())
        m_operator->addItem(QLatin1String(one.text), static_cast<int>(one.filterOperator));
    qlumDescribeField(m_not,
                      {QStringLiteral("whereNot"), tr("not"), {}, tr("The condition must not be met")});
    qlumDescribeField(m_value, {QStringLiteral("whereValue"), tr("Value"), {}, {}});
    m_value->setPlaceholderText(tr("Value"));
    m_add->setObjectName(QStringLiteral("addCondition"));
    m_remove->setObjectName(QStringLiteral("removeCondition"));
    auto* first = new QHBoxLayout;
    for (QWidget* const widget :
         std::initializer_list<QWidget*>{m_join, m_opens, m_not, m_kind, m_type, m_field})
        first->addWidget(widget);
    auto* second = new QHBoxLayout;
    for (QWidget* const widget :
         std::initializer_list<QWidget*>{m_operator, m_value, m_closes, m_add, m_remove})
        second->addWidget(widget);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(m_note);
    layout->addWidget(m_view, 1);
    layout->addLayout(first);
    layout->addLayout(second);
    connect(m_kind, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &QlumWherePage::showKind);
    connect(m_operator, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &QlumWherePage::showKind);
    connect(m_add, &QPushButton::clicked, this, &QlumWherePage::sltAdd);
    connect(m_value, &QLineEdit::textChanged, this, &QlumWherePage::showKind);
    connect(m_value, &QLineEdit::returnPressed, this, &QlumWherePage::sltAdd);
    connect(m_remove, &QPushButton::clicked, this, &QlumWherePage::sltRemove);
    setOffer(nullptr, {});
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

void QlumWherePage::setOffer(const QlumEventTypes::Tree& types, const QStringList& fields)
{
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
    m_field->clear();
    m_field->addItems(fields);
    m_field->setCurrentText(field);
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
    const bool takesValue = m_operator->currentData().toInt() != OpcUa_FilterOperator_IsNull;
    m_value->setPlaceholderText(kind == QlumEventCondition::Severity ? tr("1 to 1000") : tr("Value"));
    m_value->setVisible(kind != QlumEventCondition::OfType &&
                        (kind != QlumEventCondition::Field || takesValue));
    m_add->setEnabled(isComplete());
}

// A condition without a value, or a severity that is no number, would be refused or mean something else.
bool QlumWherePage::isComplete() const
{
    const int kind = m_kind->currentIndex();
    bool isNumber = false;
    static_cast<void>(m_value->text().toUShort(&isNumber));
    if (kind == QlumEventCondition::OfType)
        return m_type->count() > 0;
    if (kind == QlumEventCondition::Severity)
        return isNumber;
    if (kind == QlumEventCondition::Field && m_field->count() == 0)
        return false;
    return !m_value->text().isEmpty() || (kind == QlumEventCondition::Field &&
                                          m_operator->currentData().toInt() == OpcUa_FilterOperator_IsNull);
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
    condition.value = m_value->text();
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
