#include <uawidgets/editors/qlumvalueeditor.h>

#include <app/api/qlumtext.h>
#include <uabase/values/uadatetime.h>
#include <uawidgets/editors/qlumvaluetext.h>

#include <QComboBox>
#include <QDate>
#include <QDateTime>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QObject>
#include <QRegularExpression>
#include <QString>
#include <QTime>
#include <QValidator>
#include <QVariant>
#include <QWidget>

namespace {
// Each editor knows the value that it started with.
class ValueEditor
{
public:
    explicit ValueEditor(const UaVariant& value) : m_initial(value) {}
    virtual ~ValueEditor() = default;
    ValueEditor(const ValueEditor&) = delete;
    ValueEditor& operator=(const ValueEditor&) = delete;

    [[nodiscard]] virtual bool read(UaVariant& value) const = 0;
    [[nodiscard]] const UaVariant& initial() const { return m_initial; }

private:
    const UaVariant m_initial;
};

class BoolEditor final : public QComboBox, public ValueEditor
{
public:
    BoolEditor(const UaVariant& value, QWidget* parent) : QComboBox(parent), ValueEditor(value)
    {
        addItem(QStringLiteral("false"), false);
        addItem(QStringLiteral("true"), true);
        setCurrentIndex(value.toBool() ? 1 : 0);
    }
    bool read(UaVariant& value) const override
    {
        value.setBool(currentData().toBool());
        return true;
    }
};

class EnumEditor final : public QComboBox, public ValueEditor
{
public:
    EnumEditor(const UaVariant& value, const UaEnumDefinition& definition, QWidget* parent)
        : QComboBox(parent), ValueEditor(value)
    {
        const OpcUa_Int64 current = value.toInt64();
        for (int i = 0; i < definition.valueCount(); ++i)
            add(definition.valueAt(i).value, definition);
        if (!definition.hasValue(current))
            add(current, definition);
        setCurrentIndex(findData(QVariant::fromValue<qlonglong>(current)));
    }
    bool read(UaVariant& value) const override
    {
        UaVariant chosen(static_cast<OpcUa_Int64>(currentData().toLongLong()));
        if (chosen.changeType(initial().type(), false).isBad())
            return false;
        value = chosen;
        return true;
    }

private:
    void add(OpcUa_Int64 number, const UaEnumDefinition& definition)
    {
        addItem(qlumEnumerationText(number, definition), QVariant::fromValue<qlonglong>(number));
    }
};

class DateTimeEditor final : public QDateTimeEdit, public ValueEditor
{
public:
    DateTimeEditor(const UaVariant& value, QWidget* parent) : QDateTimeEdit(parent), ValueEditor(value)
    {
        setDisplayFormat(qlumDateTimeFormat());
        setMinimumDateTime(QDateTime(QDate(1601, 1, 1), QTime(0, 0)));
        setMaximumDateTime(QDateTime(QDate(9999, 12, 31), QTime(23, 59, 59, 999)));
        setCalendarPopup(true);
        const QDateTime initialTime = qlumDateTime(value.toDateTime().value());
        setDateTime(initialTime.isValid() ? initialTime : QDateTime::currentDateTime());
        m_shown = dateTime();
    }
    bool read(UaVariant& value) const override
    {
        if (dateTime() == m_shown && !initial().toDateTime().isNull())
            return false; // the value may be finer than what is shown
        value.setDateTime(UaDateTime(qlumUaDateTime(dateTime())));
        return true;
    }

private:
    QDateTime m_shown;
};

class TypeValidator final : public QValidator
{
public:
    TypeValidator(OpcUa_BuiltInType type, QObject* parent) : QValidator(parent), m_type(type) {}
    State validate(QString& text, int&) const override
    {
        UaVariant ignored;
        return qlumFromEditText(text, m_type, ignored) ? Acceptable : Intermediate;
    }

private:
    const OpcUa_BuiltInType m_type;
};

class LineEditor final : public QLineEdit, public ValueEditor
{
public:
    LineEditor(const UaVariant& value, QWidget* parent) : QLineEdit(parent), ValueEditor(value)
    {
        setMaxLength(16 * 1024 * 1024);
        setText(qlumEditText(value));
        setValidator(new TypeValidator(value.type(), this));
        setToolTip(qlumEditHint(value.type()));
        m_shown = text(); // a line cannot hold every character
    }
    bool read(UaVariant& value) const override
    {
        UaVariant entered = initial();
        if (text() == m_shown || !qlumFromEditText(text(), initial().type(), entered))
            return false;
        value = entered;
        return true;
    }

private:
    QString m_shown;
};

bool hasLineBreaks(const UaVariant& value)
{
    return qlumEditText(value).contains(QRegularExpression(QStringLiteral("[\\r\\n]")));
}
} // namespace

QWidget* qlumCreateValueEditor(const UaVariant& value, const UaEnumDefinition& enumDefinition,
                               QWidget* parent)
{
    if (!value.isScalar() || !qlumIsTextEditable(value.type()))
        return nullptr;
    if (hasLineBreaks(value))
        return nullptr; // a line would lose them
    QWidget* editor = nullptr;
    if (value.type() == OpcUaType_Boolean)
        editor = new BoolEditor(value, parent);
    else if (!enumDefinition.isNull() && qlumMayBeEnumeration(value.type()))
        editor = new EnumEditor(value, enumDefinition, parent);
    else if (value.type() == OpcUaType_DateTime)
        editor = new DateTimeEditor(value, parent);
    else
        editor = new LineEditor(value, parent);
    editor->setObjectName(QStringLiteral("valueEditor"));
    editor->setAccessibleName(QObject::tr("Value"));
    return editor;
}

bool qlumValueFromEditor(const QWidget* editor, UaVariant& value)
{
    const auto* valueEditor = dynamic_cast<const ValueEditor*>(editor);
    UaVariant entered;
    if (!valueEditor || !valueEditor->read(entered) || entered == valueEditor->initial())
        return false;
    value = entered;
    return true;
}
