#include <uawidgets/editors/qlumvaluedialog.h>

#include <app/api/qlumdisplaytext.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumjsonpage.h>
#include <uawidgets/editors/qlumnumbertext.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluewidget.h>

#include <QAccessible>
#include <QAccessibleEvent>
#include <QAction>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QString>
#include <QStringList>
#include <QStyle>
#include <QTabWidget>
#include <QVBoxLayout>
#include <QVariant>
#include <QWidget>

#include <optional>
#include <utility>

namespace {
enum Tab { ValueTab, JsonTab };

void addRange(QStringList& parts, const QString& name, const std::optional<QlumValueRange>& range,
              const QString& unit)
{
    if (range && range->low < range->high)
        parts << QlumValueDialog::tr("%1 %2 to %3%4")
                     .arg(name, qlumDoubleText(range->low), qlumDoubleText(range->high),
                          unit.isEmpty() ? QString() : QLatin1Char(' ') + unit);
}

// What the server has declared of the place, on a line.
QString declaredText(const QlumValueContext& context)
{
    QStringList parts{qlumDeclaredTypeName(context)};
    if (context.valueRank != -1) // a scalar is the usual thing
        parts << qlumRankText(context);
    addRange(parts, QlumValueDialog::tr("EURange"), context.euRange, context.unit);
    addRange(parts, QlumValueDialog::tr("InstrumentRange"), context.instrumentRange, context.unit);
    if (context.maxStringLength.value_or(0) > 0)
        parts << QlumValueDialog::tr("at most %1 bytes").arg(*context.maxStringLength);
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}
} // namespace

QlumValueDialog::QlumValueDialog(QlumValueContext context, QWidget* parent, const QString& settingsGroup)
    : QlumBaseWidget(settingsGroup, parent), QlumEditorStore(settingsGroup), m_context(std::move(context)),
      m_heading(new QLabel(this)), m_declared(new QLabel(this)), m_tabs(new QTabWidget(this)),
      m_icon(new QLabel(this)), m_state(new QLabel(this)), m_buttons(new QDialogButtonBox(this))
{
    setWindowTitle(tr("Value"));
    if (!m_context.settings)
        m_context.settings = this;
    for (QLabel* label : {m_heading, m_declared, m_state}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    m_heading->setObjectName(QStringLiteral("heading"));
    m_heading->hide();
    m_icon->hide();
    m_declared->setObjectName(QStringLiteral("declared"));
    m_declared->setText(declaredText(m_context));
    m_declared->setVisible(!m_declared->text().isEmpty());
    m_state->setObjectName(QStringLiteral("state"));
    m_state->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_widget = new QlumValueWidget(m_context, this);
    m_json = new QlumJsonPage(m_context, this);
    makeTabs();
    makeButtons();
    auto* said = new QHBoxLayout;
    said->addWidget(m_icon, 0, Qt::AlignTop);
    said->addWidget(m_state, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_heading);
    layout->addWidget(m_declared);
    layout->addWidget(m_tabs, 1);
    layout->addLayout(said);
    layout->addWidget(m_buttons);
    resize(800, 480); // all commands of the longest page, in every language
    say({}, false);
}

void QlumValueDialog::makeTabs()
{
    m_tabs->setObjectName(QStringLiteral("pages"));
    m_tabs->setAccessibleName(tr("Pages"));
    const auto add = [this](QWidget* page, const QString& title, const QString& toolTip) {
        auto* framed = new QWidget(m_tabs);
        auto* layout = new QVBoxLayout(framed);
        layout->addWidget(page);
        m_tabs->setTabToolTip(m_tabs->addTab(framed, title), toolTip);
    };
    add(m_widget, tr("&Value"), tr("The value by its fields"));
    add(m_json, tr("&JSON"), tr("The value as text, for copying and pasting"));
    connect(m_tabs, &QTabWidget::currentChanged, this, &QlumValueDialog::turnTo);
    connect(m_widget, &QlumValuePage::edited, this, &QlumValueDialog::sltEdited);
    connect(m_json, &QlumValuePage::edited, this, &QlumValueDialog::sltEdited);
}

void QlumValueDialog::makeButtons()
{
    m_buttons->setObjectName(QStringLiteral("buttons"));
    m_buttons->setStandardButtons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QlumValueDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    // in a text of several lines Enter is a new line
    const auto* send = new QShortcut(QKeySequence(QStringLiteral("Ctrl+Return")), this);
    connect(send, &QShortcut::activated, this, &QlumValueDialog::accept);
}

void QlumValueDialog::setHeading(const QString& heading)
{
    m_heading->setText(qlumSingleLine(qlumCutText(heading)));
    m_heading->setVisible(!heading.isEmpty());
}

void QlumValueDialog::setTaker(Taker taker)
{
    m_taker = std::move(taker);
}

void QlumValueDialog::setReadOnly(bool readOnly)
{
    m_isReadOnly = readOnly;
    m_widget->setReadOnly(readOnly);
    m_json->setReadOnly(readOnly);
    m_buttons->setStandardButtons(readOnly ? QDialogButtonBox::Close
                                           : QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    showState();
}

void QlumValueDialog::setValue(const UaVariant& value)
{
    m_isCarried = false;
    m_isWarned = false;
    m_widget->setValue(value);
    m_json->setValue(UaVariant());
    const QSignalBlocker quiet(m_tabs);
    m_tabs->setCurrentIndex(ValueTab);
    m_shown = ValueTab;
    m_widget->setFocus();
    showState();
}

bool QlumValueDialog::value(UaVariant& value) const
{
    return page()->value(value);
}

bool QlumValueDialog::isModified() const
{
    return m_isCarried || page()->isModified();
}

QlumValuePage* QlumValueDialog::page() const
{
    if (m_shown == JsonTab)
        return m_json;
    return m_widget;
}

// ---- two pages of one value

void QlumValueDialog::turnTo(int index)
{
    if (index == m_shown)
        return;
    UaVariant now;
    static_cast<void>(page()->value(now));
    const QString wrong = page()->fault();
    if (!wrong.isEmpty()) { // it is put right where it is wrong
        const QSignalBlocker quiet(m_tabs);
        m_tabs->setCurrentIndex(m_shown);
        say(wrong, true);
        return;
    }
    m_isCarried = isModified();
    m_shown = index;
    page()->setValue(now);
    showState();
}

void QlumValueDialog::sltEdited()
{
    m_isWarned = false;
    showState();
}

// ---- what is said of it

void QlumValueDialog::showState()
{
    if (QPushButton* send = m_buttons->button(QDialogButtonBox::Ok))
        send->setText(m_isWarned ? tr("&Send Anyway") : tr("OK"));
    const QString wrong = page()->fault();
    if (!wrong.isEmpty() || m_isReadOnly)
        return say(wrong, true);
    say(page()->remark(), !page()->refusal().isEmpty());
}

void QlumValueDialog::say(const QString& text, bool isWarning)
{
    if (m_state->text() == text && m_isWarning == isWarning)
        return; // with most keys
    m_isWarning = isWarning;
    const auto picture = isWarning ? QStyle::SP_MessageBoxWarning : QStyle::SP_MessageBoxInformation;
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    m_icon->setVisible(!text.isEmpty());
    m_icon->setPixmap(style()->standardIcon(picture, nullptr, this).pixmap(size, size));
    m_state->setText(text);
    QAccessibleEvent alert(m_state, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

// Warns once of what the server will refuse; the same value again is meant.
bool QlumValueDialog::isConfirmed(const UaVariant& value)
{
    if (m_isWarned && m_warned == value)
        return true;
    const QString why = qlumCheckValue(value, m_context).refused;
    if (why.isEmpty())
        return true;
    m_isWarned = true;
    m_warned = value;
    showState();
    say(tr("The server will refuse this: %1 Press Enter again to send it all the same.").arg(why), true);
    return false;
}

void QlumValueDialog::accept()
{
    UaVariant entered;
    const QString wrong = page()->fault();
    if (m_isReadOnly || !m_buttons->isEnabled())
        return;
    if (!wrong.isEmpty())
        return say(wrong, true);
    if (!page()->value(entered)) {
        const QString late = page()->fault(); // of a text that was too long to be checked before
        return say(late.isEmpty() ? tr("There is no value yet.") : late, true);
    }
    if (!isConfirmed(entered))
        return;
    const QPointer<QlumValueDialog> alive(this);
    const Taker taker = m_taker;
    m_buttons->setEnabled(false); // it is sent once, however long that takes
    bool isClosed = false;        // by the user, who did not want to wait
    const auto closing = connect(this, &QDialog::finished, this, [&isClosed] { isClosed = true; });
    const QString refusal = taker ? taker(entered) : QString();
    if (!alive)
        return;
    disconnect(closing);
    m_buttons->setEnabled(true);
    if (isClosed)
        return;
    if (refusal.isEmpty())
        return QlumBaseWidget::accept();
    showState();
    say(refusal, true);
}
