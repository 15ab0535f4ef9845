#include <uawidgets/editors/qlumscalarpage.h>

#include <uabase/structures/uagenericoptionsetvalue.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumbytespage.h>
#include <uawidgets/editors/qlumlinepage.h>
#include <uawidgets/editors/qlumlocalizedtextpage.h>
#include <uawidgets/editors/qlumoptionsetpage.h>
#include <uawidgets/editors/qlumshownpage.h>
#include <uawidgets/editors/qlumtimepage.h>
#include <uawidgets/editors/qlumvalueeditor.h>

#include <QString>
#include <QVBoxLayout>
#include <QWidget>

namespace {
// A definition that does not fit what is sent is no help.
bool isOptionSet(const UaVariant& value, OpcUa_BuiltInType type, const UaOptionSetDefinition& definition)
{
    if (definition.isNull() || definition.builtInType() != type)
        return false;
    UaGenericOptionSetValue decoded;
    return value.isNull() || decoded.decode(value, definition).isGood();
}
} // namespace

QlumScalarPage::QlumScalarPage(const QlumValueContext& context, QWidget* parent)
    : QlumValuePage(parent), m_context(context)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

QlumValuePage* QlumScalarPage::makePage(const UaVariant& value)
{
    const OpcUa_BuiltInType type = value.isNull() ? m_context.builtInType : value.type();
    const UaOptionSetDefinition optionSet = qlumOptionSetDefinition(m_context);
    if (isOptionSet(value, type, optionSet))
        return new QlumOptionSetPage(m_context, optionSet, this);
    switch (type) {
    case OpcUaType_String:
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return new QlumBytesPage(m_context, type, this);
    case OpcUaType_DateTime:
        return new QlumTimePage(m_context, this);
    case OpcUaType_LocalizedText:
        return new QlumLocalizedTextPage(this);
    default:
        break;
    }
    if (qlumWhyNoValueEditor(value, m_context).isEmpty())
        return new QlumLinePage(m_context, this);
    return new QlumShownPage(m_context, this);
}

void QlumScalarPage::setValue(const UaVariant& value)
{
    delete m_page;
    m_page = makePage(value);
    layout()->addWidget(m_page);
    setFocusProxy(m_page);
    m_page->setValue(value);
    m_page->setReadOnly(m_isReadOnly);
    connect(m_page, &QlumValuePage::edited, this, &QlumValuePage::edited);
}

bool QlumScalarPage::value(UaVariant& value) const
{
    return m_page && m_page->value(value);
}

bool QlumScalarPage::isModified() const
{
    return m_page && m_page->isModified();
}

QString QlumScalarPage::fault() const
{
    return m_page ? m_page->fault() : QString();
}

QString QlumScalarPage::remark() const
{
    return m_page ? m_page->remark() : QString();
}

QString QlumScalarPage::refusal() const
{
    return m_page ? m_page->refusal() : QString();
}

void QlumScalarPage::setReadOnly(bool readOnly)
{
    m_isReadOnly = readOnly;
    if (m_page)
        m_page->setReadOnly(readOnly);
}
