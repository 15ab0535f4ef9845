#include <uawidgets/editors/qlumlinepage.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumnumbertext.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvalueeditor.h>
#include <uawidgets/editors/qlumvaluetext.h>
#include <uawidgets/editors/qlumvaluetype.h>
#include <uawidgets/qlumformrow.h>

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>

namespace {
const auto baseKey = QStringLiteral("numberBase");
} // namespace

QlumLinePage::QlumLinePage(const QlumValueContext& context, QWidget* parent)
    : QlumValuePage(parent), m_context(context)
{
}

void QlumLinePage::setValue(const UaVariant& value)
{
    m_shown = value;
    m_isModified = false;
    m_editor = qlumCreateValueEditor(value, m_context, this);
    if (!m_editor)
        return;
    auto* row = new QHBoxLayout;
    row->addWidget(m_editor, 1);
    if (!m_context.unit.isEmpty()) {
        auto* unit = new QLabel(m_context.unit, this);
        unit->setObjectName(QStringLiteral("unit"));
        unit->setTextFormat(Qt::PlainText);
        row->addWidget(unit);
    }
    const OpcUa_BuiltInType type = value.isNull() ? m_context.builtInType : value.type();
    if (qlumIsInteger(type) && qlumValueNames(type, m_context).valueCount() == 0)
        addBases(row);
    if (type == OpcUaType_Guid)
        addNewGuid(row);
    m_hint = new QLabel(this);
    m_hint->setObjectName(QStringLiteral("hint"));
    m_hint->setTextFormat(Qt::PlainText);
    m_hint->setWordWrap(true);
    m_hint->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(row);
    layout->addWidget(m_hint);
    layout->addStretch(1);
    setFocusProxy(m_editor);
    showHint();
    qlumOnEdited(m_editor, this, [this] {
        m_isModified = true;
        showHint();
        emit edited();
    });
}

bool QlumLinePage::value(UaVariant& value) const
{
    if (!m_editor || !fault().isEmpty())
        return false;
    UaVariant entered;
    const bool isChanged = qlumValueFromEditor(m_editor, entered);
    if (!isChanged && m_shown.isNull())
        return false;
    value = isChanged ? entered : m_shown;
    return true;
}

QString QlumLinePage::fault() const
{
    return m_editor ? qlumEditorFault(m_editor) : QString();
}

QString QlumLinePage::remark() const
{
    return m_editor ? qlumEditorCheck(m_editor).text() : QString();
}

QString QlumLinePage::refusal() const
{
    return m_editor ? qlumEditorCheck(m_editor).refused : QString();
}

void QlumLinePage::setReadOnly(bool readOnly)
{
    if (m_editor)
        qlumSetEditorReadOnly(m_editor, readOnly);
    if (auto* button = findChild<QPushButton*>(QStringLiteral("newGuid")))
        button->setVisible(!readOnly);
}

void QlumLinePage::addBases(QHBoxLayout* row)
{
    auto* bases = new QComboBox(this);
    qlumDescribeField(bases, {QStringLiteral("base"), tr("Base"), QString(),
                              tr("How the number is written; 0x and 0b may always be typed")});
    bases->addItem(tr("Decimal"), static_cast<int>(QlumNumberBase::Decimal));
    bases->addItem(tr("Hexadecimal"), static_cast<int>(QlumNumberBase::Hexadecimal));
    bases->addItem(tr("Binary"), static_cast<int>(QlumNumberBase::Binary));
    row->addWidget(bases);
    const int kept = bases->findData(qlumEditorSetting(m_context, baseKey, 10).toInt());
    bases->setCurrentIndex(qMax(kept, 0));
    setBase(bases->currentData().toInt());
    connect(bases, qOverload<int>(&QComboBox::activated), this, [this, bases] {
        const bool wasModified = m_isModified; // the number stays what it is
        setBase(bases->currentData().toInt());
        m_isModified = wasModified;
        qlumKeepEditorSetting(m_context, baseKey, bases->currentData());
    });
}

void QlumLinePage::setBase(int base)
{
    qlumSetEditorBase(m_editor, static_cast<QlumNumberBase>(base));
}

void QlumLinePage::addNewGuid(QHBoxLayout* row)
{
    auto* button = new QPushButton(tr("&New"), this);
    qlumDescribeField(button,
                      {QStringLiteral("newGuid"), tr("New"), QString(), tr("Takes a random identifier")});
    button->setAutoDefault(false);
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this,
            [this] { qlumSetEditorValue(m_editor, UaVariant(UaGuid::create())); });
}

// What the type takes, or what the value means.
void QlumLinePage::showHint()
{
    UaVariant now;
    const OpcUa_BuiltInType type = m_shown.isNull() ? m_context.builtInType : m_shown.type();
    if (type == OpcUaType_StatusCode && value(now)) {
        const QString number = toQString(now.toStatusCode().toHexString());
        const QString words = qlumStatusWords(qlumStatusText(now.toStatusCode().code()));
        m_hint->setText(words.isEmpty() ? number : number + QLatin1String(": ") + words);
    } else if (qlumIsInteger(type) && qlumValueNames(type, m_context).valueCount() > 0) {
        m_hint->setText(tr("A name, or a number: %1").arg(qlumEditHint(type)));
    } else {
        m_hint->setText(type == OpcUaType_StatusCode ? QString() : qlumEditHint(type));
    }
}
