#include <uawidgets/editors/qlumcelleditors_p.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/editors/qlumvaluetext.h>

#include <QAbstractItemView>
#include <QAction>
#include <QCompleter>
#include <QDate>
#include <QDateTime>
#include <QIcon>
#include <QLineEdit>
#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStyle>
#include <QTime>
#include <QValidator>
#include <QVariant>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace {
constexpr int longestLine = 4096;     // what a line lays out and checks within a keystroke
constexpr int mostNamesShown = 5000;  // more can be typed
constexpr int longestNameShown = 200; // of hostile servers

QString noValueText(const QString& text, OpcUa_BuiltInType type, const QString& hint)
{
    const QString what = QObject::tr("'%1' is no %2.").arg(qlumCutText(text, 40), qlumBuiltinTypeName(type));
    return hint.isEmpty() ? what : QObject::tr("%1 It takes: %2").arg(what, hint);
}
} // namespace

// ---- what all have

bool QlumCellEditor::readChange(UaVariant& value) const
{
    UaVariant entered;
    if (!read(entered) || entered == m_cell.value)
        return false;
    value = entered;
    return true;
}

QlumValueCheck QlumCellEditor::check() const
{
    UaVariant entered;
    if (!readChange(entered))
        return {};
    QlumValueCheck check = qlumCheckElement(entered, m_cell.context);
    if (!m_cell.context.accessFault.isEmpty())
        check.add({m_cell.context.accessFault, {}});
    return check;
}

QlumFaultMark::QlumFaultMark(QLineEdit* line)
    : m_line(line), m_mark(line->addAction(QIcon(), QLineEdit::TrailingPosition))
{
    m_mark->setObjectName(QStringLiteral("valueFault"));
    m_mark->setVisible(false);
}

void QlumFaultMark::show(const QString& fault, const QlumValueCheck& check, const QString& otherwise)
{
    const QString text = fault.isEmpty() ? check.text() : fault;
    const bool isNote = fault.isEmpty() && check.refused.isEmpty();
    const auto picture = isNote ? QStyle::SP_MessageBoxInformation : QStyle::SP_MessageBoxWarning;
    if (!text.isEmpty())
        m_mark->setIcon(m_line->style()->standardIcon(picture, nullptr, m_line));
    m_mark->setVisible(!text.isEmpty());
    m_mark->setToolTip(qlumPlainToolTip(text));
    m_line->setToolTip(qlumPlainToolTip(text.isEmpty() ? otherwise : text));
    m_line->setAccessibleDescription(text);
}

// ---- Boolean

QlumBoolCell::QlumBoolCell(const QlumCellValue& cell, QWidget* parent)
    : QComboBox(parent), QlumCellEditor(cell)
{
    for (const bool state : {false, true}) {
        const QString word = state ? QStringLiteral("true") : QStringLiteral("false");
        const QString name = qlumSingleLine(toQString(cell.enumeration.valueName(state)));
        addItem(name.isEmpty() ? word
                               : QStringLiteral("%1 (%2)").arg(qlumCutText(name, longestNameShown), word),
                state);
    }
    enter(cell.value);
}

bool QlumBoolCell::read(UaVariant& value) const
{
    value.setBool(currentData().toBool());
    return currentIndex() >= 0;
}

void QlumBoolCell::enter(const UaVariant& value)
{
    setCurrentIndex(value.isNull() ? -1 : value.toBool() ? 1 : 0);
}

void QlumBoolCell::onEdited(QObject* receiver, const std::function<void()>& edited)
{
    QObject::connect(this, qOverload<int>(&QComboBox::currentIndexChanged), receiver, edited);
}

// ---- numbers with names

QlumNamesCell::QlumNamesCell(const QlumCellValue& cell, QWidget* parent)
    : QComboBox(parent), QlumCellEditor(cell), m_mark((setEditable(true), lineEdit()))
{
    setInsertPolicy(QComboBox::NoInsert);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(12);
    if (cell.type == OpcUaType_StatusCode)
        fillStatusCodes();
    else
        fillEnumeration();
    completer()->setFilterMode(Qt::MatchContains);
    completer()->setCompletionMode(QCompleter::PopupCompletion);
    lineEdit()->setMaxLength(longestLine);
    lineEdit()->setAccessibleName(QObject::tr("Value"));
    enter(cell.value);
    m_shown = currentText();
    QObject::connect(this, &QComboBox::currentTextChanged, this, [this] { showState(); });
    showState();
}

void QlumNamesCell::fillEnumeration()
{
    const UaEnumDefinition& definition = cell().enumeration;
    for (int i = 0; i < std::min(definition.valueCount(), mostNamesShown); ++i) {
        const UaEnumValue value = definition.valueAt(i);
        const QString text = qlumEnumerationText(value.value, definition);
        if (text.size() > longestNameShown)
            continue; // a shortened one could not be read back
        addItem(text);
        const QString description = toQString(value.description.text());
        if (!description.isEmpty())
            setItemData(count() - 1, qlumPlainToolTip(qlumCutText(description)), Qt::ToolTipRole);
    }
}

void QlumNamesCell::fillStatusCodes()
{
    for (const OpcUa_StatusCode code : qlumStatusCodeNames())
        addItem(qlumStatusText(code));
}

QString QlumNamesCell::textOf(const UaVariant& value) const
{
    if (value.isNull())
        return {};
    return cell().type == OpcUaType_StatusCode ? qlumEditText(value)
                                               : qlumEnumerationText(value.toInt64(), cell().enumeration);
}

bool QlumNamesCell::read(UaVariant& value) const
{
    if (currentText() == m_shown) {
        value = cell().value;
        return !value.isNull();
    }
    if (cell().type == OpcUaType_StatusCode)
        return qlumFromEditText(currentText(), cell().type, value);
    OpcUa_Int64 number = 0;
    if (!qlumFromEnumerationText(currentText(), cell().enumeration, number))
        return false;
    UaVariant chosen(number);
    if (chosen.changeType(cell().type, false).isBad())
        return false;
    value = chosen;
    return true;
}

void QlumNamesCell::enter(const UaVariant& value)
{
    const QString text = textOf(value);
    setCurrentIndex(text.isEmpty() ? -1 : findText(text));
    setEditText(text);
}

QString QlumNamesCell::fault() const
{
    UaVariant ignored;
    if (currentText() == m_shown || read(ignored))
        return {};
    return cell().type == OpcUaType_StatusCode
               ? noValueText(currentText(), cell().type, qlumEditHint(cell().type))
               : QObject::tr("'%1' is neither a name nor a number of the enumeration.")
                     .arg(qlumCutText(currentText(), 40));
}

void QlumNamesCell::setReadOnly(bool readOnly)
{
    setEnabled(!readOnly);
}

void QlumNamesCell::onEdited(QObject* receiver, const std::function<void()>& edited)
{
    QObject::connect(this, &QComboBox::currentTextChanged, receiver, edited);
}

// A table that is scrolled must not choose another value on its way.
void QlumNamesCell::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}

void QlumNamesCell::showState()
{
    m_mark.show(fault(), check(), QString());
}

// ---- date and time

QlumTimeCell::QlumTimeCell(const QlumCellValue& cell, QWidget* parent)
    : QDateTimeEdit(parent), QlumCellEditor(cell)
{
    setTimeSpec(Qt::UTC); // as the value is shown
    setDisplayFormat(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'"));
    setMinimumDateTime(QDateTime(QDate(1601, 1, 1), QTime(0, 0), Qt::UTC));
    setMaximumDateTime(QDateTime(QDate(9999, 12, 31), QTime(23, 59, 59, 999), Qt::UTC));
    setCalendarPopup(true);
    enter(cell.value);
    m_shown = dateTime();
}

bool QlumTimeCell::read(UaVariant& value) const
{
    if (dateTime() == m_shown)
        return false; // the value may be finer than what is shown, or none at all
    value.setDateTime(UaDateTime(qlumUaDateTime(dateTime())));
    return true;
}

void QlumTimeCell::enter(const UaVariant& value)
{
    const QDateTime time = qlumDateTime(value.toDateTime().value());
    setDateTime(time.isValid() ? time.toUTC() : QDateTime::currentDateTimeUtc());
}

void QlumTimeCell::onEdited(QObject* receiver, const std::function<void()>& edited)
{
    QObject::connect(this, &QDateTimeEdit::dateTimeChanged, receiver, edited);
}

// ---- a line

QlumLineCell::QlumLineCell(const QlumCellValue& cell, QWidget* parent)
    : QLineEdit(parent), QlumCellEditor(cell), m_mark(this)
{
    setMaxLength(longestLine);
    setText(textOf(cell.value));
    m_shown = text(); // a line cannot hold every character
    if (cell.optionSet.bitCount() > 0 && qlumIsUnsigned(cell.type))
        addBits();
    if (cell.context.browseNode && (cell.type == OpcUaType_NodeId || cell.type == OpcUaType_ExpandedNodeId))
        addBrowse();
    QObject::connect(this, &QLineEdit::inputRejected, this, [this] {
        m_wasCut = true;
        showState();
    });
    QObject::connect(this, &QLineEdit::textChanged, this, [this] {
        m_wasCut = m_wasCut && text().size() == maxLength();
        showState();
    });
    showState();
}

QString QlumLineCell::textOf(const UaVariant& value) const
{
    if (value.isNull())
        return {};
    if (cell().optionSet.bitCount() > 0 && qlumIsUnsigned(cell().type) && m_base == QlumNumberBase::Decimal)
        return qlumOptionSetText(value.toUInt64(), cell().optionSet);
    return qlumIsInteger(cell().type) ? qlumIntegerText(value, m_base) : qlumEditText(value);
}

bool QlumLineCell::readText(UaVariant& value) const
{
    UaVariant entered = cell().value;
    OpcUa_UInt64 bits = 0;
    if (qlumFromEditText(text(), cell().type, entered)) {
        value = entered;
        return true;
    }
    if (!qlumIsUnsigned(cell().type) || !qlumFromOptionSetText(text(), cell().optionSet, bits))
        return false;
    entered = UaVariant(bits);
    if (entered.changeType(cell().type, false).isBad())
        return false;
    value = entered;
    return true;
}

bool QlumLineCell::read(UaVariant& value) const
{
    return text() != m_shown && !m_wasCut && readText(value);
}

void QlumLineCell::enter(const UaVariant& value)
{
    setText(textOf(value));
}

QString QlumLineCell::fault() const
{
    if (m_wasCut)
        return QObject::tr("A line takes %1 characters at most; the rest was left out.").arg(maxLength());
    UaVariant ignored;
    if (text() == m_shown || readText(ignored))
        return {};
    return noValueText(text(), cell().type, qlumEditHint(cell().type));
}

void QlumLineCell::setBase(QlumNumberBase base)
{
    UaVariant entered = cell().value;
    const bool isUntouched = text() == m_shown;
    const bool isValue = isUntouched || read(entered);
    m_base = base;
    if (!qlumIsInteger(cell().type))
        return;
    m_shown = textOf(cell().value);
    if (isValue)
        setText(isUntouched ? m_shown : textOf(entered));
}

void QlumLineCell::setReadOnly(bool readOnly)
{
    QLineEdit::setReadOnly(readOnly);
    if (m_help)
        m_help->setEnabled(!readOnly);
}

void QlumLineCell::onEdited(QObject* receiver, const std::function<void()>& edited)
{
    QObject::connect(this, &QLineEdit::textChanged, receiver, edited);
}

void QlumLineCell::addBits()
{
    const QIcon icon = style()->standardIcon(QStyle::SP_TitleBarUnshadeButton, nullptr, this);
    m_help = addAction(icon, QLineEdit::TrailingPosition);
    m_help->setObjectName(QStringLiteral("bits"));
    m_help->setText(QObject::tr("Bits"));
    m_help->setToolTip(QObject::tr("Tick the bits of the option set"));
    QObject::connect(m_help, &QAction::triggered, this, [this] {
        UaVariant entered = cell().value;
        static_cast<void>(readText(entered));
        OpcUa_UInt64 number = entered.toUInt64();
        QMenu menu(this);
        for (int i = 0; i < std::min(cell().optionSet.bitCount(), 64); ++i) {
            const UaEnumValue bit = cell().optionSet.bitAt(i);
            if (bit.value < 0 || bit.value > 63)
                continue;
            QString name = qlumCutText(toQString(cell().optionSet.bitName(bit.value)), 60);
            QAction* action = menu.addAction(name.replace(QLatin1Char('&'), QLatin1String("&&")));
            action->setCheckable(true);
            action->setChecked(number >> bit.value & 1u);
            action->setData(static_cast<int>(bit.value));
        }
        if (const QAction* chosen = menu.exec(mapToGlobal(rect().bottomLeft()))) {
            number ^= OpcUa_UInt64{1} << chosen->data().toInt();
            setText(qlumOptionSetText(number, cell().optionSet));
        }
    });
}

void QlumLineCell::addBrowse()
{
    const QIcon icon = style()->standardIcon(QStyle::SP_DirOpenIcon, nullptr, this);
    m_help = addAction(icon, QLineEdit::TrailingPosition);
    m_help->setObjectName(QStringLiteral("browse"));
    m_help->setText(QObject::tr("Browse"));
    m_help->setToolTip(QObject::tr("Choose a node of the server"));
    QObject::connect(m_help, &QAction::triggered, this, [this] {
        UaVariant entered = cell().value;
        static_cast<void>(readText(entered));
        const UaNodeId start =
            cell().type == OpcUaType_NodeId ? entered.toNodeId() : entered.toExpandedNodeId().nodeId();
        const QPointer<QlumLineCell> alive(this); // the choice takes its time, and the cell may go
        const auto browse = cell().context.browseNode;
        const UaNodeId chosen = browse(this, start); // as its parent, or the cell is closed meanwhile
        if (!alive || chosen.isNull())
            return;
        setText(cell().type == OpcUaType_NodeId ? toQString(chosen.toXmlString())
                                                : toQString(UaExpandedNodeId(chosen).toString()));
    });
}

void QlumLineCell::showState()
{
    const QString wrong = fault();
    QString hint = qlumEditHint(cell().type);
    UaVariant entered = cell().value;
    if (wrong.isEmpty() && qlumIsInteger(cell().type) && (text() == m_shown || read(entered)) &&
        !entered.isNull())
        hint += QLatin1Char('\n') + qlumIntegerText(entered, QlumNumberBase::Hexadecimal) +
                QLatin1Char('\n') + qlumIntegerText(entered, QlumNumberBase::Binary);
    m_mark.show(wrong, wrong.isEmpty() ? check() : QlumValueCheck(), hint);
}
