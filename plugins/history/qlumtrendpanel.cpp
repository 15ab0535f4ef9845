#include <plugins/history/qlumtrendpanel.h>

#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumtimefield.h>

#include <QDate>
#include <QDateTime>
#include <QDateTimeEdit>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QString>
#include <QTime>
#include <QTimeEdit>
#include <QVBoxLayout>
#include <QWidget>

namespace {

QPushButton* makeButton(const QString& name, const QString& text, const QString& whatsThis)
{
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    button->setToolTip(whatsThis);
    button->setWhatsThis(whatsThis);
    return button;
}

} // namespace

QlumTrendPanel::QlumTrendPanel(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("configuration"));
    setAccessibleName(tr("Configuration"));
    m_single = makeSingle();
    m_cyclic = makeCyclic();
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->addWidget(m_single);
    m_layout->addWidget(m_cyclic);
    m_layout->addStretch();
    connect(
        m_single, &QGroupBox::toggled, this, [this](bool on) { setCyclic(!on); });
    connect(m_cyclic, &QGroupBox::toggled, this, [this](bool on) { setCyclic(on); });
    setCyclic(false);
}

QGroupBox* QlumTrendPanel::makeSingle()
{
    auto* group = new QGroupBox(tr("Single Update"));
    group->setObjectName(QStringLiteral("singleUpdate"));
    group->setCheckable(true);
    const QDateTime now = QDateTime::currentDateTime();
    const auto makeField = [&](const QDateTime& time) {
        auto* field = new QDateTimeEdit(time);
        qlumFollowTimeLook(field, QStringLiteral("dd.MM.yy HH:mm:ss.zzz"));
        field->setMinimumDate(QDate(1753, 1, 1));
        field->setCalendarPopup(true);
        connect(field, &QDateTimeEdit::dateTimeChanged, this, &QlumTrendPanel::changed);
        return field;
    };
    m_start = makeField(now.addSecs(-3600));
    m_end = makeField(now);
    auto* getStart =
        makeButton(QStringLiteral("getStartTime"), tr("&Get Start Time"),
                   tr("Retrieves the timestamp of the first value in history from the UA Server."));
    auto* update = makeButton(QStringLiteral("update"), tr("&Update"),
                              tr("Updates trendview with the currently configured time range."));
    connect(getStart, &QPushButton::clicked, this, &QlumTrendPanel::getStartTimeClicked);
    connect(update, &QPushButton::clicked, this, &QlumTrendPanel::updateClicked);
    auto* form = new QFormLayout(group);
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    qlumAddRow(form, m_start,
               {QStringLiteral("startTime"),
                tr("Start Time:"),
                tr("Where the history begins that is read. Later than the end: newest first."),
                {}});
    qlumAddRow(form, m_end, {QStringLiteral("endTime"), tr("&End Time:"), tr("Where it ends."), {}});
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(getStart);
    buttons->addWidget(update);
    form->addRow(buttons);
    return group;
}

QGroupBox* QlumTrendPanel::makeCyclic()
{
    auto* group = new QGroupBox(tr("Cyclic Update"));
    group->setObjectName(QStringLiteral("cyclicUpdate"));
    group->setCheckable(true);
    const auto makeField = [&](const QTime& time) {
        auto* field = new QTimeEdit(time);
        field->setDisplayFormat(QStringLiteral("HH:mm:ss"));
        field->setMinimumTime(QTime(0, 0, 1));
        connect(field, &QTimeEdit::timeChanged, this, &QlumTrendPanel::changed);
        return field;
    };
    m_timespan = makeField(QTime(0, 5));
    m_interval = makeField(QTime(0, 0, 10));
    m_startStop = makeButton(QStringLiteral("startStop"), tr("St&art"),
                             tr("Reads the time span up to now again and again, until you stop it."));
    connect(m_startStop, &QPushButton::clicked, this, &QlumTrendPanel::startStopClicked);
    auto* form = new QFormLayout(group);
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    qlumAddRow(
        form, m_timespan,
        {QStringLiteral("timespan"), tr("&Timespan:"), tr("How much of the time up to now is read."), {}});
    qlumAddRow(form, m_interval,
               {QStringLiteral("updateInterval"),
                tr("Update &Interval:"),
                tr("How long to wait from one update to the next."),
                {}});
    form->addRow(m_startStop);
    return group;
}

void QlumTrendPanel::addGroup(QWidget* group)
{
    m_layout->insertWidget(m_layout->count() - 1, group);
}

// ---- fields

QDateTime QlumTrendPanel::startTime() const
{
    return m_start->dateTime();
}

QDateTime QlumTrendPanel::endTime() const
{
    return m_end->dateTime();
}

void QlumTrendPanel::setStartTime(const QDateTime& time)
{
    qlumSetMoment(m_start, time);
}

void QlumTrendPanel::setEndTime(const QDateTime& time)
{
    qlumSetMoment(m_end, time);
}

QTime QlumTrendPanel::timespan() const
{
    return m_timespan->time();
}

QTime QlumTrendPanel::updateInterval() const
{
    return m_interval->time();
}

void QlumTrendPanel::setTimespan(const QTime& span)
{
    m_timespan->setTime(span);
}

void QlumTrendPanel::setUpdateInterval(const QTime& interval)
{
    m_interval->setTime(interval);
}

bool QlumTrendPanel::isCyclic() const
{
    return m_cyclic->isChecked();
}

void QlumTrendPanel::setCyclic(bool isCyclic)
{
    m_single->setChecked(!isCyclic); // each asks for the other; the second time nothing changes
    m_cyclic->setChecked(isCyclic);
    emit changed();
}

void QlumTrendPanel::setRunning(bool isRunning)
{
    m_startStop->setText(isRunning ? tr("St&op") : tr("St&art"));
    m_single->setEnabled(!isRunning);
    m_timespan->setEnabled(!isRunning);
    m_interval->setEnabled(!isRunning);
}
