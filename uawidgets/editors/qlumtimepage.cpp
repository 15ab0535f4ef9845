#include <uawidgets/editors/qlumtimepage.h>

#include <app/api/qlumtext.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlumformrow.h>

#include <QComboBox>
#include <QDate>
#include <QDateTime>
#include <QDateTimeEdit>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QString>
#include <QTime>
#include <QWidget>

#include <algorithm>

namespace {
constexpr OpcUa_Int64 ticksPerMillisecond = 10000;
const auto zoneKey = QStringLiteral("timeZone");

QDateTime firstTime()
{
    return {QDate(1601, 1, 1), QTime(0, 0), Qt::UTC};
}

QDateTime lastTime()
{
    return {QDate(9999, 12, 31), QTime(23, 59, 59, 999), Qt::UTC};
}

// What the field can show: the ends stand for no date, and mean other things to Qt.
QDateTime shownTime(const UaDateTime& value)
{
    if (value.value() <= 0)
        return firstTime();
    const QDateTime time = qlumDateTime(value.value());
    return time.isValid() ? std::min(time.toUTC(), lastTime()) : lastTime();
}
} // namespace

QlumTimePage::QlumTimePage(const QlumValueContext& context, QWidget* parent)
    : QlumValuePage(parent), m_context(context), m_time(new QDateTimeEdit(this)), m_fine(new QSpinBox(this)),
      m_zone(new QComboBox(this)), m_now(new QPushButton(tr("&Now"), this)),
      m_none(new QPushButton(tr("N&ot Set"), this)), m_other(new QLabel(this))
{
    m_time->setCalendarPopup(true);
    m_time->setSpecialValueText(tr("not set"));
    const QString widest = QStringLiteral("0000-00-00T00:00:00.000Z000"); // and the button
    m_time->setMinimumWidth(m_time->fontMetrics().horizontalAdvance(widest));
    qlumDescribeField(m_time, {QStringLiteral("time"), tr("Date and time"), QString(),
                               tr("Year, month, day, hour, minute, second and millisecond")});
    m_fine->setRange(0, ticksPerMillisecond - 1);
    m_fine->setPrefix(tr("+ "));
    m_fine->setSuffix(tr(" x 100 ns"));
    qlumDescribeField(m_fine, {QStringLiteral("fine"), tr("Below a millisecond"), QString(),
                               tr("What the time has below a millisecond, in steps of 100 ns")});
    qlumDescribeField(m_zone, {QStringLiteral("zone"), tr("Time zone"), QString(),
                               tr("How it is shown; it is always sent as UTC")});
    m_zone->addItem(tr("UTC"), static_cast<int>(Qt::UTC));
    m_zone->addItem(tr("Local time"), static_cast<int>(Qt::LocalTime));
    m_zone->setCurrentIndex(qlumEditorSetting(context, zoneKey, 0).toInt() == 1 ? 1 : 0);
    m_other->setObjectName(QStringLiteral("other"));
    m_other->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_time, 0, 0);
    layout->addWidget(m_fine, 0, 1);
    layout->addWidget(m_zone, 0, 2);
    layout->addWidget(m_other, 1, 0, 1, 3);
    layout->setColumnStretch(3, 1);
    layout->setRowStretch(3, 1);
    setFocusProxy(m_time);
    makeButtons();
    connect(m_time, &QDateTimeEdit::dateTimeChanged, this, &QlumTimePage::takeFields);
    connect(m_fine, qOverload<int>(&QSpinBox::valueChanged), this, &QlumTimePage::takeFields);
    connect(m_zone, qOverload<int>(&QComboBox::activated), this, [this](int index) {
        qlumKeepEditorSetting(m_context, zoneKey, index);
        showFields();
    });
    showFields();
}

void QlumTimePage::makeButtons()
{
    qlumDescribeField(m_now, {QStringLiteral("now"), tr("Now"), QString(), tr("Takes the present time")});
    qlumDescribeField(m_none, {QStringLiteral("none"), tr("Not set"), QString(),
                               tr("Takes the date that stands for none, 1601-01-01")});
    m_now->setAutoDefault(false);
    m_none->setAutoDefault(false);
    connect(m_now, &QPushButton::clicked, this, [this] {
        enter(UaDateTime::now());
        showFields();
    });
    connect(m_none, &QPushButton::clicked, this, [this] {
        enter(UaDateTime());
        showFields();
    });
    auto* row = new QHBoxLayout;
    row->addWidget(m_now);
    row->addWidget(m_none);
    row->addStretch(1);
    static_cast<QGridLayout*>(layout())->addLayout(row, 2, 0, 1, 3);
}

void QlumTimePage::setValue(const UaVariant& value)
{
    m_hasValue = !value.isNull();
    m_value = value.toDateTime();
    m_isModified = false;
    showFields();
}

bool QlumTimePage::value(UaVariant& value) const
{
    if (m_hasValue)
        value.setDateTime(m_value);
    return m_hasValue;
}

bool QlumTimePage::isModified() const
{
    return m_isModified;
}

void QlumTimePage::setReadOnly(bool readOnly)
{
    m_time->setReadOnly(readOnly);
    m_fine->setReadOnly(readOnly);
    m_now->setVisible(!readOnly);
    m_none->setVisible(!readOnly);
}

void QlumTimePage::showFields()
{
    m_isShowing = true;
    const bool isLocal = m_zone->currentIndex() == 1;
    m_time->setTimeSpec(isLocal ? Qt::LocalTime : Qt::UTC);
    m_time->setDisplayFormat(isLocal ? QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")
                                     : QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'"));
    const auto inZone = [isLocal](const QDateTime& time) { return isLocal ? time.toLocalTime() : time; };
    m_time->setDateTimeRange(inZone(firstTime()), inZone(lastTime()));
    const QDateTime shown = shownTime(m_value);
    m_time->setDateTime(inZone(shown));
    const bool isWithin = m_value.value() > 0 && shown < lastTime();
    m_fine->setValue(isWithin ? static_cast<int>(m_value.value() % ticksPerMillisecond) : 0);
    m_isShowing = false;
    showOther();
}

void QlumTimePage::showOther()
{
    if (!m_hasValue)
        return m_other->setText(tr("no value yet"));
    const QString local =
        shownTime(m_value).toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz t"));
    m_other->setText(m_zone->currentIndex() == 1 ? tr("UTC: %1").arg(toQString(m_value.toFullString()))
                                                 : tr("Local time: %1").arg(local));
}

void QlumTimePage::enter(const UaDateTime& time)
{
    m_value = time;
    m_hasValue = true;
    m_isModified = true;
    emit edited();
}

// The fields themselves stay as they are: the user is typing in them.
void QlumTimePage::takeFields()
{
    if (m_isShowing)
        return;
    enter(UaDateTime(qlumUaDateTime(m_time->dateTime()) + m_fine->value()));
    showOther();
}
