#include <uawidgets/qlumviewheading.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <uawidgets/qlumelidedlabel.h>

#include <QCoreApplication>
#include <QFont>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLocale>
#include <QPixmap>
#include <QSizePolicy>
#include <QStyle>
#include <QTimer>

#include <initializer_list>
#include <utility>

namespace {
constexpr int second = 1000; // ms

QString text(const char* source)
{
    return QCoreApplication::translate("QlumViewHeading", source);
}

template <typename Label>
Label* nameLabel(Label* label, const char* name, const QString& accessibleName)
{
    label->setObjectName(QLatin1String(name));
    label->setAccessibleName(accessibleName);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel* makeLabel(const char* name, const QString& accessibleName, QWidget* parent)
{
    return nameLabel(new QLabel(parent), name, accessibleName);
}

// A long name must not make the view wide.
void showName(QLabel* label, const QString& name)
{
    label->setText(qlumCutText(qlumSingleLine(name), 80));
    label->setToolTip(name.isEmpty() ? QString() : qlumPlainToolTip(name));
}
} // namespace

QString qlumConnectionText(QlumConnectionStatus status)
{
    switch (status) {
    case QlumConnectionStatus::Disconnected:
        return text(QT_TRANSLATE_NOOP("QlumViewHeading", "disconnected"));
    case QlumConnectionStatus::Connecting:
        return text(QT_TRANSLATE_NOOP("QlumViewHeading", "connecting"));
    case QlumConnectionStatus::Connected:
    case QlumConnectionStatus::NewSessionCreated:
        return text(QT_TRANSLATE_NOOP("QlumViewHeading", "connected"));
    case QlumConnectionStatus::ConnectFailed:
        return text(QT_TRANSLATE_NOOP("QlumViewHeading", "not connected"));
    case QlumConnectionStatus::ConnectionError:
        return text(QT_TRANSLATE_NOOP("QlumViewHeading", "connection lost"));
    }
    return {};
}

QlumViewHeading::QlumViewHeading(QWidget* parent, Clock clock)
    : QWidget(parent), m_clock(std::move(clock)),
      m_server(nameLabel(new QlumElidedLabel(Qt::ElideRight, this), "server", tr("Server"))),
      m_node(nameLabel(new QlumElidedLabel(Qt::ElideMiddle, this), "node", tr("Node"))),
      m_activity(makeLabel("activity", tr("Activity"), this)), m_icon(new QLabel(this)),
      m_status(makeLabel("status", tr("Connection"), this)), m_age(makeLabel("age", tr("Received"), this)),
      m_timer(new QTimer(this))
{
    setObjectName(QStringLiteral("viewHeading"));
    setWhatsThis(tr("<b>What is shown</b><br>The server and the node, whether the connection stands, and how "
                    "long ago the content was received."));
    QFont bold = m_server->font();
    bold.setBold(true);
    m_server->setFont(bold);
    m_server->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_timer->setInterval(second);
    connect(m_timer, &QTimer::timeout, this, &QlumViewHeading::refreshAge);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(4, 2, 4, 2);
    row->addWidget(m_server);
    row->addWidget(m_node, 1);
    row->addWidget(m_activity);
    row->addWidget(m_icon);
    row->addWidget(m_status);
    row->addWidget(m_age);
}

void QlumViewHeading::setServer(const QString& name)
{
    showName(m_server, name);
}

void QlumViewHeading::setNode(const QString& name)
{
    showName(m_node, name);
}

void QlumViewHeading::setActivity(const QString& activity)
{
    m_activity->setText(activity);
    m_activity->setVisible(!activity.isEmpty());
    m_age->setVisible(activity.isEmpty());
}

void QlumViewHeading::setStatus(QlumConnectionStatus status)
{
    const bool stands =
        status == QlumConnectionStatus::Connected || status == QlumConnectionStatus::NewSessionCreated;
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    m_icon->setPixmap(
        stands ? QPixmap() : style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this).pixmap(size));
    m_icon->setVisible(!stands);
    m_status->setText(qlumConnectionText(status));
}

void QlumViewHeading::forget()
{
    m_received = QDateTime();
    refreshAge();
}

void QlumViewHeading::clear()
{
    m_received = QDateTime();
    for (QLabel* label : std::initializer_list<QLabel*>{m_server, m_node, m_activity, m_status, m_age})
        label->clear();
    m_icon->hide();
}

// ---- age

void QlumViewHeading::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    refreshAge();
    m_timer->start();
}

void QlumViewHeading::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_timer->stop(); // nobody sees it
}

void QlumViewHeading::refreshAge()
{
    m_age->setText(ageText(m_clock()));
    QString received = qlumShowDateTime(m_received);
    if (m_received.isValid() && !qlumTimeLook().isUtc)
        received += QLatin1Char(' ') + m_received.timeZoneAbbreviation();
    m_age->setToolTip(received);
}

QString QlumViewHeading::ageText(const QDateTime& now) const
{
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    constexpr qint64 day = 24 * hour;
    if (!m_received.isValid())
        return {};
    const qint64 age = m_received.secsTo(now);
    if (age < 0 || age >= day) // also when somebody has set the clock
        return qlumShowMinute(m_received);
    if (age < 2)
        return tr("received now"); // it stands beside the state of the connection, whose age it is not
    if (age < minute)
        return tr("received %1 s ago").arg(age);
    return age < hour ? tr("received %1 min ago").arg(age / minute) : tr("received %1 h ago").arg(age / hour);
}
