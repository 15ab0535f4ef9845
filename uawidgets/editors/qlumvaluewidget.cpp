#include <uawidgets/editors/qlumvaluewidget.h>

#include <app/api/qlumtext.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumscalarpage.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluepages.h>
#include <uawidgets/qlumformrow.h>

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace {
// The one place where a page is chosen. The context's type is that of the value or of what is to be given.
QlumValuePage* makePage(const UaVariant& value, const QlumValueContext& context, QWidget* parent)
{
    if (QlumValuePage* parts = qlumCreatePartsPage(qlumKindOf(value, context), context, parent))
        return parts;
    return new QlumScalarPage(context, parent);
}

bool isFree(const QlumValueContext& context)
{
    return qlumAllowedTypes(context).size() > 1;
}
} // namespace

QlumValueWidget::QlumValueWidget(QlumValueContext context, QWidget* parent)
    : QlumValuePage(parent), m_context(std::move(context))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    if (isFree(m_context))
        makeTypeRow();
}

void QlumValueWidget::makeTypeRow()
{
    m_typeRow = new QWidget(this);
    m_type = new QComboBox(m_typeRow);
    qlumDescribeField(m_type, {QStringLiteral("type"), tr("T&ype:"), QString(),
                               tr("The type with which the value is sent")});
    m_type->setMaxVisibleItems(25);
    for (const OpcUa_BuiltInType type : qlumAllowedTypes(m_context))
        m_type->addItem(qlumBuiltinTypeName(type), type);
    m_array = new QCheckBox(tr("&Array"), m_typeRow);
    qlumDescribeField(m_array,
                      {QStringLiteral("array"), tr("&Array"), QString(), tr("Several values of that type")});
    m_array->setEnabled(m_context.valueRank == -2 || m_context.valueRank == -3);
    auto* label = new QLabel(tr("T&ype:"), m_typeRow);
    label->setBuddy(m_type);
    auto* row = new QHBoxLayout(m_typeRow);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(label);
    row->addWidget(m_type);
    row->addWidget(m_array);
    row->addStretch(1);
    layout()->addWidget(m_typeRow);
    connect(m_type, qOverload<int>(&QComboBox::activated), this, &QlumValueWidget::sltTypeChosen);
    connect(m_array, &QCheckBox::clicked, this, &QlumValueWidget::sltTypeChosen);
}

void QlumValueWidget::setValue(const UaVariant& value)
{
    m_isRetyped = false;
    const OpcUa_BuiltInType declared = isFree(m_context) ? OpcUaType_Null : m_context.builtInType;
    showPage(value, value.isNull() ? declared : value.type(),
             value.isNull() ? m_context.valueRank >= 0 : !value.isScalar());
}

void QlumValueWidget::showPage(const UaVariant& value, OpcUa_BuiltInType type, bool isArray)
{
    QlumValueContext context = m_context;
    if (isFree(m_context)) {
        context.builtInType = type;
        context.valueRank = isArray ? std::max(m_context.valueRank, 1) : -1;
        showType(type, isArray);
    }
    delete m_page;
    m_page = makePage(value, context, this);
    layout()->addWidget(m_page);
    setFocusProxy(m_page);
    m_page->setValue(value);
    m_page->setReadOnly(m_isReadOnly);
    const UaVariant shape = value.isNull() && !isArray ? UaVariant(true) : value;
    m_placeRemark = isArray ? m_context.accessFault : qlumCheckShape(shape, m_context).refused;
    connect(m_page, &QlumValuePage::edited, this, &QlumValuePage::edited);
}

void QlumValueWidget::showType(OpcUa_BuiltInType type, bool isArray)
{
    const QSignalBlocker quiet(m_array);
    m_type->setCurrentIndex(m_type->findData(type));
    m_array->setChecked(isArray);
}

// What is there is kept as far as it can be said in the other type.
void QlumValueWidget::sltTypeChosen()
{
    const auto type = static_cast<OpcUa_BuiltInType>(m_type->currentData().toInt());
    const bool isArray = m_array->isChecked();
    UaVariant now;
    if (m_page->value(now) && now.changeType(type, isArray).isBad())
        now = UaVariant();
    m_isRetyped = true;
    showPage(now, type, isArray);
    emit edited();
}

bool QlumValueWidget::value(UaVariant& value) const
{
    return m_page && m_page->value(value);
}

bool QlumValueWidget::isModified() const
{
    return m_isRetyped || (m_page && m_page->isModified());
}

QString QlumValueWidget::fault() const
{
    return m_page ? m_page->fault() : QString();
}

QString QlumValueWidget::remark() const
{
    if (!m_page)
        return {};
    QlumValueCheck all{m_placeRemark, {}};
    all.add({{}, m_page->remark()});
    return all.text();
}

QString QlumValueWidget::refusal() const
{
    QlumValueCheck all{m_placeRemark, {}};
    if (m_page)
        all.add({m_page->refusal(), {}});
    return all.refused;
}

void QlumValueWidget::setReadOnly(bool readOnly)
{
    m_isReadOnly = readOnly;
    if (m_typeRow)
        m_typeRow->setEnabled(!readOnly);
    if (m_page)
        m_page->setReadOnly(readOnly);
}
