#include <plugins/datalogger/qlumloggerpanel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <uabase/values/uadatetime.h>
#include <uawidgets/qlumelidedlabel.h>
#include <uawidgets/qlumwrappingbar.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QFont>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLocale>
#include <QPalette>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>
QString qlumLoggerBytes(qint64 bytes)
{
    return bytes < 0 ? QStringLiteral("?") : QLocale().formattedDataSize(bytes);
}

QlumLoggerPanel::QlumLoggerPanel(QWidget* parent)
    : QWidget(parent), m_icon(new QLabel), m_state(makeFigure("loggerState", tr("State"))),
      m_path(new QlumElidedLabel(Qt::ElideMiddle)), m_since(makeFigure("loggerSince", tr("Recording since"))),
      m_records(makeFigure("loggerRecords", tr("Records"))), m_rate(makeFigure("loggerRate", tr("Rate"))),
      m_queue(makeFigure("loggerQueue", tr("Queue"))), m_size(makeFigure("loggerSize", tr("Size"))),
      m_free(makeFigure("loggerFree", tr("Free space"))), m_lost(makeFigure("loggerLost", tr("Lost"))),
      m_error(makeFigure("loggerError", tr("Last error")))
{
    QFont large = m_state->font();
    large.setBold(true);
    m_state->setFont(large);
    m_queue->setToolTip(tr("Values that wait to be written, and how many may."));
    m_lost->setToolTip(tr("Values that could not be recorded because the disk was too slow or full. Marks in "
                          "the recording say when."));
    m_path->setObjectName(QStringLiteral("loggerPath"));
    m_path->setAccessibleName(tr("File"));
    m_error->setWordWrap(true);
    auto* top = new QHBoxLayout;
    top->addWidget(m_icon);
    top->addWidget(m_state);
    top->addWidget(m_path, 1);
    auto* figures =
        new QlumWrappingBar; // one beside the other they would be wider than a window has room for
    for (QLabel* figure : {m_since, m_records, m_rate, m_queue, m_size, m_free, m_lost}) {
        auto* pair = new QWidget;
        auto* below = new QVBoxLayout(pair);
        below->setContentsMargins(0, 0, 12, 0);
        below->addWidget(new QLabel(figure->accessibleName() + QLatin1Char(':')));
        below->addWidget(figure);
        figures->add(pair);
    }
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addLayout(top);
    layout->addWidget(figures);
    layout->addWidget(m_error);
    show(recording::RecorderStatus(), false);
}

QLabel* QlumLoggerPanel::makeFigure(const char* name, const QString& what)
{
    auto* label = new QLabel;
    label->setObjectName(QLatin1String(name));
    label->setAccessibleName(what);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

void QlumLoggerPanel::showState(const recording::RecorderStatus& status, bool isStopping, int cutOffItems)
{
    using State = recording::RecorderState;
    QlumStatusLevel level = QlumStatusLevel::Inactive;
    QString text = tr("Not recording");
    switch (status.state) {
    case State::Idle:
        if (isStopping)
            text = tr("Closing the file...");
        else if (status.since != 0)
            text = tr("Stopped");
        break;
    case State::Recording:
        level = cutOffItems > 0 ? QlumStatusLevel::Uncertain : QlumStatusLevel::Good;
        text = cutOffItems > 0 ? tr("Recording, without connection for %n item(s)", nullptr, cutOffItems)
                               : tr("Recording");
        break;
    case State::NoSpace:
        level = QlumStatusLevel::Uncertain;
        text = tr("Paused: the disk is nearly full. It goes on when there is room.");
        break;
    case State::Failing:
        level = QlumStatusLevel::Bad;
        text = tr("Cannot write. It is tried again and again.");
        break;
    }
    m_state->setText(text);
    const int size = m_state->fontMetrics().height();
    m_icon->setPixmap(qlumStatusIcon(level).pixmap(size, size));
    QPalette palette = m_state->palette();
    palette.setColor(QPalette::WindowText, level == QlumStatusLevel::Inactive
                                               ? this->palette().color(QPalette::WindowText)
                                               : qlumStatusColor(level, this->palette()));
    m_state->setPalette(palette);
}

void QlumLoggerPanel::show(const recording::RecorderStatus& status, bool isStopping, int cutOffItems)
{
    const QLocale locale;
    const OpcUa_DateTime now = UaDateTime::now().value();
    const bool isRunning = status.state != recording::RecorderState::Idle;
    const double seconds = static_cast<double>(now - m_before) / 1e7;
    if (status.records < m_recordsBefore || !isRunning)
        m_perSecond = 0;
    else if (m_before != 0 && seconds > 0)
        m_perSecond = static_cast<double>(status.records - m_recordsBefore) / seconds;
    m_before = now;
    m_recordsBefore = status.records;
    showState(status, isStopping, cutOffItems);
    const bool isKnown = status.since != 0;
    const auto set = [](QLabel* label, const QString& text) {
        label->setText(text.isEmpty() ? QStringLiteral("-") : text);
    };
    set(m_since, isKnown ? qlumShowDateTime(status.since) : QString());
    set(m_records, isKnown ? locale.toString(static_cast<qulonglong>(status.records)) : QString());
    set(m_rate,
        isRunning ? tr("%1/s").arg(locale.toString(m_perSecond, 'f', m_perSecond < 10 ? 1 : 0)) : QString());
    set(m_queue, isRunning ? tr("%1 of %2")
                                 .arg(locale.toString(static_cast<qulonglong>(status.queued)),
                                      locale.toString(static_cast<qulonglong>(status.queueSize)))
                           : QString());
    set(m_size, isKnown ? qlumLoggerBytes(status.bytes) : QString());
    set(m_free, isKnown ? qlumLoggerBytes(status.freeBytes) : QString());
    QString lost = isKnown ? locale.toString(static_cast<qulonglong>(status.lost)) : QString();
    if (status.dropped > 0)
        lost += tr(" (%1 old ones deleted)").arg(locale.toString(static_cast<qulonglong>(status.dropped)));
    set(m_lost, lost);
    QPalette lostPalette = palette();
    if (status.lost > 0)
        lostPalette.setColor(QPalette::WindowText, qlumStatusColor(QlumStatusLevel::Bad, palette()));
    m_lost->setPalette(lostPalette);
    m_path->setText(status.path);
    m_path->setToolTip(qlumPlainToolTip(status.path));
    m_error->setVisible(!status.error.isEmpty());
    m_error->setText(tr("Last error, %1: %2").arg(qlumShowDateTime(status.errorTime), status.error));
}
