#include <uawidgets/editors/qlumscalarpage.h>

#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvalueeditor.h>

#include <QComboBox>
#include <QDateTimeEdit>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QString>
#include <QWidget>

namespace {
UaEnumDefinition enumDefinitionOf(const QlumValueContext& context)
{
    return context.dictionary && !context.dataType.isNull()
               ? context.dictionary->enumDefinition(context.dataType)
               : UaEnumDefinition();
}
} // namespace

QlumScalarPage::QlumScalarPage(const QlumValueContext& context, QWidget* parent)
    : QlumValuePage(parent), m_context(context)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

void QlumScalarPage::setValue(const UaVariant& value)
{
    delete m_editor;
    m_shown = value;
    m_modified = false;
    const UaEnumDefinition definition = enumDefinitionOf(m_context);
    m_editor = value.isNull() ? qlumCreateValueEditor(m_context.builtInType, definition, this)
                              : qlumCreateValueEditor(value, definition, this);
    if (!m_editor)
        return;
    layout()->addWidget(m_editor);
    setFocusProxy(m_editor);
    setReadOnly(m_readOnly);
    const auto changed = [this] {
        m_modified = true;
        emit edited();
    };
    if (auto* line = qobject_cast<QLineEdit*>(m_editor))
        connect(line, &QLineEdit::textEdited, this, changed);
    else if (auto* box = qobject_cast<QComboBox*>(m_editor))
        connect(box, &QComboBox::currentTextChanged, this, changed);
    else if (auto* time = qobject_cast<QDateTimeEdit*>(m_editor))
        connect(time, &QDateTimeEdit::dateTimeChanged, this, changed);
}

bool QlumScalarPage::value(UaVariant& value) const
{
    if (!m_editor || !fault().isEmpty())
        return false;
    UaVariant entered;
    const bool changed = qlumValueFromEditor(m_editor, entered);
    if (!changed && m_shown.isNull())
        return false;
    value = changed ? entered : m_shown;
    return true;
}

bool QlumScalarPage::isModified() const
{
    return m_modified;
}

QString QlumScalarPage::fault() const
{
    return m_editor ? qlumEditorFault(m_editor) : QString();
}

void QlumScalarPage::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    if (auto* line = qobject_cast<QLineEdit*>(m_editor))
        line->setReadOnly(readOnly);
    else if (m_editor)
        m_editor->setEnabled(!readOnly);
}
