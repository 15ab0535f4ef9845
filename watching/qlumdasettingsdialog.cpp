#include <watching/qlumdasettingsdialog.h>

#include <uabase/values/uanumericrange.h>
#include <uaclientsdk/subscriptionsettings.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/table/qlumstatuslook.h>
#include <watching/qlumwatchsettings.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QSpinBox>
#include <QString>
#include <QStringList>
#include <QVBoxLayout>
#include <QWidget>

#include <initializer_list>
#include <limits>
#include <optional>
#include <type_traits>

namespace {
constexpr double mostOfAnInterval = std::numeric_limits<int>::max();
}

QlumDaSettingsDialog::QlumDaSettingsDialog(const QString& heading, const QlumDataSettings& settings,
                                           const std::optional<Revised>& revised, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumDaSettingsDialog"), parent), m_publishing(new QDoubleSpinBox),
      m_sampling(new QDoubleSpinBox), m_queue(new QSpinBox), m_discardOldest(new QCheckBox),
      m_deadband(new QComboBox), m_deadbandValue(new QDoubleSpinBox), m_trigger(new QComboBox),
      m_timestamps(new QComboBox), m_mode(new QComboBox), m_priority(new QSpinBox), m_lifetime(new QSpinBox),
      m_read(new QDoubleSpinBox), m_indexRange(new QLineEdit), m_rangeFault(new QLabel),
      m_asView(new QCheckBox), m_form(new QFormLayout)
{
    setWindowTitle(tr("How Values Are Watched"));
    auto* title = new QLabel(heading);
    title->setTextFormat(Qt::PlainText);
    title->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    makeTimes(m_form, settings, revised);
    makeFilter(m_form, settings);
    makeRest(m_form, settings, revised);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    makeRowsOwn(m_form, revised.has_value());
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addLayout(m_form);
    layout->addStretch(1);
    layout->addWidget(buttons);
    m_touched.clear();
}

// What the server has made of a wish; another value than the wish bears a mark.
QLabel* QlumDaSettingsDialog::revisedLabel(const QString& text, bool isOther)
{
    auto* label = new QLabel(text.isEmpty() ? QString() : tr("the server: %1").arg(text));
    label->setTextFormat(Qt::PlainText);
    if (isOther) {
        label->setText(tr("the server: %1 (revised)").arg(text));
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, qlumStatusColor(QlumStatusLevel::Uncertain, palette));
        label->setPalette(palette);
    }
    return label;
}

void QlumDaSettingsDialog::addInterval(QFormLayout* form, QDoubleSpinBox* field, const char* name,
                                       const QString& label, const QString& explanation, double value,
                                       QLabel* revised)
{
    field->setDecimals(0);
    field->setRange(field->minimum(), mostOfAnInterval);
    field->setSuffix(tr(" ms"));
    field->setValue(value);
    connect(field, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            [this, field] { touch(field); });
    auto* line = new QHBoxLayout;
    line->addWidget(field, 1);
    if (revised != nullptr)
        line->addWidget(revised, 1);
    qlumAddRow(form, field, {QLatin1String(name), label, explanation, explanation}, line);
}

void QlumDaSettingsDialog::makeTimes(QFormLayout* form, const QlumDataSettings& settings,
                                     const std::optional<Revised>& revised)
{
    m_publishing->setMinimum(1);
    m_sampling->setMinimum(-1);
    m_sampling->setSpecialValueText(tr("as often as published"));
    const double sampling =
        settings.samplingInterval < 0 ? settings.publishingInterval : settings.samplingInterval;
    const bool isKnown = revised && revised->publishing > 0;
    addInterval(form, m_publishing, "publishingInterval", tr("&Publishing interval:"),
                tr("How often the server sends what has changed."), settings.publishingInterval,
                isKnown ? revisedLabel(qlumDaInterval(revised->publishing),
                                       revised->publishing != settings.publishingInterval)
                        : nullptr);
    addInterval(
        form, m_sampling, "samplingInterval", tr("&Sampling interval:"),
        tr("How often the server looks at the value; 0: as often as it can."), settings.samplingInterval,
        isKnown ? revisedLabel(qlumDaInterval(revised->sampling), revised->sampling != sampling) : nullptr);
    m_queue->setRange(1, std::numeric_limits<int>::max());
    m_queue->setValue(static_cast<int>(settings.queueSize));
    connect(m_queue, QOverload<int>::of(&QSpinBox::valueChanged), this, [this] { touch(m_queue); });
    auto* line = new QHBoxLayout;
    line->addWidget(m_queue, 1);
    if (isKnown)
        line->addWidget(revisedLabel(QString::number(revised->queue), revised->queue != settings.queueSize),
                        1);
    qlumAddRow(form, m_queue,
               {QStringLiteral("queueSize"), tr("&Queue size:"),
                tr("How many values the server keeps until it sends them."),
                tr("How many values the server keeps until it sends them.")},
               line);
    m_discardOldest->setText(tr("Discard the &oldest value when the queue is full"));
    m_discardOldest->setChecked(settings.discardOldest);
    connect(m_discardOldest, &QCheckBox::toggled, this, [this] { touch(m_discardOldest); });
    qlumAddWideRow(form, m_discardOldest, {QStringLiteral("discardOldest"), m_discardOldest->text(), {}, {}});
}

void QlumDaSettingsDialog::makeFilter(QFormLayout* form, const QlumDataSettings& settings)
{
    const auto add = [this, form](QComboBox* box, const char* name, const QString& label,
                                  const QStringList& choices, int current) {
        box->addItems(qlumDaWords(choices));
        box->setCurrentIndex(current);
        connect(box, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this, box] { touch(box); });
        qlumAddRow(form, box, {QLatin1String(name), label, {}, {}});
    };
    add(m_trigger, "trigger", tr("&Trigger:"), qlumDaTriggers(), static_cast<int>(settings.trigger));
    add(m_deadband, "deadband", tr("Dead&band:"), qlumDaDeadbands(), static_cast<int>(settings.deadband));
    m_deadbandValue->setDecimals(6);
    m_deadbandValue->setRange(0, mostOfAnInterval);
    m_deadbandValue->setValue(settings.deadbandValue);
    m_deadbandValue->setEnabled(settings.deadband != QlumDeadband::None);
    connect(
        m_deadband, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
        [this](int index) { m_deadbandValue->setEnabled(index != 0); });
    connect(m_deadbandValue, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            [this] { touch(m_deadbandValue); });
    qlumAddRow(form, m_deadbandValue,
               {QStringLiteral("deadbandValue"),
                tr("Deadband &value:"),
                tr("In the unit of the value, or in percent of the range that the variable says it has."),
                {}});
    add(m_timestamps, "timestamps", tr("Ti&mes:"), qlumDaTimestamps(), static_cast<int>(settings.timestamps));
    add(m_mode, "monitoringMode", tr("Monitorin&g mode:"), qlumDaModes(), static_cast<int>(settings.mode));
}

void QlumDaSettingsDialog::makeRest(QFormLayout* form, const QlumDataSettings& settings,
                                    const std::optional<Revised>& revised)
{
    m_priority->setRange(0, std::numeric_limits<quint8>::max());
    m_priority->setValue(settings.priority);
    connect(m_priority, QOverload<int>::of(&QSpinBox::valueChanged), this, [this] { touch(m_priority); });
    qlumAddRow(form, m_priority,
               {QStringLiteral("priority"),
                tr("P&riority:"),
                tr("Of the subscription; higher ones are sent first. Servers take it as it is."),
                {}});
    m_lifetime->setRange(3, std::numeric_limits<int>::max());
    m_lifetime->setValue(static_cast<int>(settings.lifetimeCount));
    connect(m_lifetime, QOverload<int>::of(&QSpinBox::valueChanged), this, [this] { touch(m_lifetime); });
    auto* line = new QHBoxLayout;
    line->addWidget(m_lifetime, 1);
    if (revised && revised->lifetime > 0)
        line->addWidget(
            revisedLabel(QString::number(revised->lifetime), revised->lifetime != settings.lifetimeCount), 1);
    qlumAddRow(form, m_lifetime,
               {QStringLiteral("lifetimeCount"),
                tr("&Lifetime:"),
                tr("After so many publishing intervals without a connection the server forgets it."),
                {}},
               line);
    if (revised && revised->keepAlive > 0) {
        const quint32 asked = UaClientSdk::SubscriptionSettings().maxKeepAliveCount;
        QLabel* keepAlive = revisedLabel(QString::number(revised->keepAlive), revised->keepAlive != asked);
        keepAlive->setObjectName(QStringLiteral("keepAliveCount"));
        keepAlive->setToolTip(
            tr("After so many publishing intervals without news the server shows that it is there; %1 are "
               "asked for.")
                .arg(asked));
        form->addRow(tr("Keep-alive:"), keepAlive);
    }
    m_read->setMinimum(0);
    m_read->setSpecialValueText(tr("no: it is watched"));
    addInterval(form, m_read, "readInterval", tr("R&ead instead, every:"),
                tr("Reads the value that often instead of having it watched, for servers that refuse."),
                settings.readInterval, nullptr);
}

// What rows have and views have not.
void QlumDaSettingsDialog::makeRowsOwn(QFormLayout* form, bool isOfRows)
{
    connect(m_indexRange, &QLineEdit::textChanged, this, &QlumDaSettingsDialog::checkRange);
    connect(m_indexRange, &QLineEdit::textEdited, this, [this] { touch(m_indexRange); });
    qlumAddRow(form, m_indexRange,
               {QStringLiteral("indexRange"),
                tr("&Index range:"),
                tr("Elements of an array: 3, 0:9, or 1,0:4 for a matrix. Empty for all."),
                {}});
    m_rangeFault->setObjectName(QStringLiteral("indexRangeFault"));
    m_rangeFault->setTextFormat(Qt::PlainText);
    m_rangeFault->setWordWrap(true);
    QPalette palette = m_rangeFault->palette();
    palette.setColor(QPalette::WindowText, qlumStatusColor(QlumStatusLevel::Bad, palette));
    m_rangeFault->setPalette(palette);
    m_rangeFault->hide();
    form->addRow(m_rangeFault);
    m_asView->setText(tr("As the &view has it"));
    connect(m_asView, &QCheckBox::toggled, this, [this](bool on) {
        const std::initializer_list<QWidget*> fields{
            m_publishing, m_sampling,   m_queue, m_discardOldest, m_deadband, m_deadbandValue,
            m_trigger,    m_timestamps, m_mode,  m_priority,      m_lifetime, m_read};
        for (QWidget* field : fields)
            field->setEnabled(!on && (field != m_deadbandValue || m_deadband->currentIndex() != 0));
    });
    qlumAddWideRow(
        form, m_asView,
        {QStringLiteral("asView"), m_asView->text(), tr("Gives up what these rows have of their own."), {}});
    if (!isOfRows) {
        form->labelForField(m_indexRange)->hide();
        m_indexRange->hide();
        m_asView->hide();
    }
}

// A server would only say that the range is invalid.
void QlumDaSettingsDialog::checkRange()
{
    bool isRange = true;
    static_cast<void>(UaNumericRange::fromString(m_indexRange->text().trimmed().toStdString(), &isRange));
    m_rangeFault->setText(isRange ? QString() : tr("This is no index range, as 3, 0:9 or 1,0:4 are."));
    m_rangeFault->setVisible(!isRange);
    m_ok->setEnabled(isRange);
}

void QlumDaSettingsDialog::touch(const QWidget* field)
{
    m_touched.insert(field);
}

void QlumDaSettingsDialog::setIndexRange(const QString& range)
{
    m_indexRange->setText(range);
}

void QlumDaSettingsDialog::offerNoReading()
{
    m_read->hide();
    for (QLabel* label : findChildren<QLabel*>())
        if (label->buddy() == m_read)
            label->hide();
}

std::optional<QString> QlumDaSettingsDialog::indexRange() const
{
    return isTouched(m_indexRange) ? std::optional(m_indexRange->text().trimmed()) : std::nullopt;
}

bool QlumDaSettingsDialog::isAsView() const
{
    return m_asView->isChecked();
}

QlumDataSettings QlumDaSettingsDialog::applied(QlumDataSettings settings) const
{
    const auto take = [this](const QWidget* field, auto& member, auto value) {
        if (isTouched(field))
            member = static_cast<std::remove_reference_t<decltype(member)>>(value);
    };
    take(m_publishing, settings.publishingInterval, m_publishing->value());
    take(m_sampling, settings.samplingInterval, m_sampling->value());
    take(m_queue, settings.queueSize, m_queue->value());
    take(m_discardOldest, settings.discardOldest, m_discardOldest->isChecked());
    take(m_deadband, settings.deadband, m_deadband->currentIndex());
    take(m_deadbandValue, settings.deadbandValue, m_deadbandValue->value());
    take(m_trigger, settings.trigger, m_trigger->currentIndex());
    take(m_timestamps, settings.timestamps, m_timestamps->currentIndex());
    take(m_mode, settings.mode, m_mode->currentIndex());
    take(m_priority, settings.priority, m_priority->value());
    take(m_lifetime, settings.lifetimeCount, m_lifetime->value());
    take(m_read, settings.readInterval, m_read->value());
    return settings;
}
