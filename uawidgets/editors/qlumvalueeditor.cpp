#include <uawidgets/editors/qlumvalueeditor.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <uabase/values/uadatetime.h>
#include <uawidgets/editors/qlumvaluetext.h>

#include <QAction>
#include <QComboBox>
#include <QDate>
#include <QDateTime>
#include <QDateTimeEdit>
#include <QIcon>
#include <QLineEdit>
#include <QObject>
#include <QString>
#include <QStyle>
#include <QTime>
#include <QValidator>
#include <QVariant>
#include <QWidget>

namespace {
// Each editor knows the value that it started with.
class ValueEditor
{
public:
    ValueEditor(const UaVariant& value, OpcUa_BuiltInType type) : m_initial(value), m_type(type) {}
    virtual ~ValueEditor() = default;
    ValueEditor(const ValueEditor&) = delete;
    ValueEditor& operator=(const ValueEditor&) = delete;

    [[nodiscard]] virtual bool read(UaVariant& value) const = 0;
    [[nodiscard]] virtual QString fault() const { return {}; }
    // Null for a value that is still to be given.
    [[nodiscard]] const UaVariant& initial() const { return m_initial; }
    [[nodiscard]] OpcUa_BuiltInType type() const { return m_type; }

private:
    const UaVariant m_initial;
    const OpcUa_BuiltInType m_type;
};

class BoolEditor final : public QComboBox, public ValueEditor
{
public:
    BoolEditor(const UaVariant& value, QWidget* parent)
        : QComboBox(parent), ValueEditor(value, OpcUaType_Boolean)
    {
        addItem(QStringLiteral("false"), false);
        addItem(QStringLiteral("true"), true);
        setCurrentIndex(value.isNull() ? -1 : value.toBool() ? 1 : 0);
    }
    bool read(UaVariant& value) const override
    {
        value.setBool(currentData().toBool());
        return currentIndex() >= 0;
    }
};

class EnumEditor final : public QComboBox, public ValueEditor
{
public:
    EnumEditor(const UaVariant& value, OpcUa_BuiltInType type, const UaEnumDefinition& definition,
               QWidget* parent)
        : QComboBox(parent), ValueEditor(value, type)
    {
        const OpcUa_Int64 current = value.toInt64();
        for (int i = 0; i < definition.valueCount(); ++i)
            add(definition.valueAt(i).value, definition);
        if (!value.isNull() && !definition.hasValue(current))
            add(current, definition);
        setCurrentIndex(value.isNull() ? -1 : findData(QVariant::fromValue<qlonglong>(current)));
    }
    bool read(UaVariant& value) const override
    {
        UaVariant chosen(static_cast<OpcUa_Int64>(currentData().toLongLong()));
        if (currentIndex() < 0 || chosen.changeType(type(), false).isBad())
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
    DateTimeEditor(const UaVariant& value, QWidget* parent)
        : QDateTimeEdit(parent), ValueEditor(value, OpcUaType_DateTime)
    {
        setTimeSpec(Qt::UTC); // as the value is shown
        setDisplayFormat(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'"));
        setMinimumDateTime(QDateTime(QDate(1601, 1, 1), QTime(0, 0), Qt::UTC));
        setMaximumDateTime(QDateTime(QDate(9999, 12, 31), QTime(23, 59, 59, 999), Qt::UTC));
        setCalendarPopup(true);
        const QDateTime initialTime = qlumDateTime(value.toDateTime().value());
        setDateTime(initialTime.isValid() ? initialTime.toUTC() : QDateTime::currentDateTimeUtc());
        m_shown = dateTime();
    }
    bool read(UaVariant& value) const override
    {
        if (dateTime() == m_shown)
            return false; // the value may be finer than what is shown, or none at all
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
    LineEditor(const UaVariant& value, OpcUa_BuiltInType type, QWidget* parent)
        : QLineEdit(parent), ValueEditor(value, type)
    {
        setMaxLength(16 * 1024 * 1024);
        setText(value.isNull() ? QString() : qlumEditText(value));
        setValidator(new TypeValidator(type, this));
        m_shown = text(); // a line cannot hold every character
        const QIcon icon = style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this);
        m_warning = addAction(icon, QLineEdit::TrailingPosition);
        m_warning->setObjectName(QStringLiteral("valueFault"));
        connect(this, &QLineEdit::textChanged, this, [this] { showFault(); });
        showFault();
    }
    bool read(UaVariant& value) const override
    {
        UaVariant entered = initial();
        if (text() == m_shown || !qlumFromEditText(text(), type(), entered))
            return false;
        value = entered;
        return true;
    }
    QString fault() const override
    {
        if (text() == m_shown || hasAcceptableInput())
            return {};
        const QString hint = qlumEditHint(type());
        const QString what =
            QObject::tr("'%1' is no %2.").arg(qlumCutText(text(), 40), qlumBuiltinTypeName(type()));
        return hint.isEmpty() ? what : QObject::tr("%1 It takes: %2").arg(what, hint);
    }

private:
    void showFault()
    {
        const QString why = fault();
        m_warning->setVisible(!why.isEmpty());
        m_warning->setToolTip(qlumPlainToolTip(why));
        setToolTip(why.isEmpty() ? qlumEditHint(type()) : qlumPlainToolTip(why));
        setAccessibleDescription(why);
    }

    QAction* m_warning = nullptr;
    QString m_shown;
};

QWidget* makeEditor(const UaVariant& value, OpcUa_BuiltInType type, const UaEnumDefinition& definition,
                    QWidget* parent)
{
    QWidget* editor = nullptr;
    if (type == OpcUaType_Boolean)
        editor = new BoolEditor(value, parent);
    else if (!definition.isNull() && qlumMayBeEnumeration(type))
        editor = new EnumEditor(value, type, definition, parent);
    else if (type == OpcUaType_DateTime)
        editor = new DateTimeEditor(value, parent);
    else
        editor = new LineEditor(value, type, parent);
    editor->setObjectName(QStringLiteral("valueEditor"));
    editor->setAccessibleName(QObject::tr("Value"));
    return editor;
}
} // namespace

QWidget* qlumCreateValueEditor(const UaVariant& value, const UaEnumDefinition& enumDefinition,
                               QWidget* parent)
{
    if (!value.isScalar() || !qlumIsTextEditable(value.type()))
        return nullptr;
    if (qlumHasLineBreaks(value))
        return nullptr; // a line would lose them
    return makeEditor(value, value.type(), enumDefinition, parent);
}

QWidget* qlumCreateValueEditor(OpcUa_BuiltInType type, const UaEnumDefinition& enumDefinition,
                               QWidget* parent)
{
    return qlumIsTextEditable(type) ? makeEditor(UaVariant(), type, enumDefinition, parent) : nullptr;
}

QString qlumEditorFault(const QWidget* editor)
{
    const auto* valueEditor = dynamic_cast<const ValueEditor*>(editor);
    return valueEditor ? valueEditor->fault() : QString();
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
