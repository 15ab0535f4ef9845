#include <app/mainwindow/qlumworkindicator.h>

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPoint>
#include <QProgressBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr int refreshInterval = 200; // ms
constexpr int barWidth = 120;
constexpr int listWidth = 420;

QLabel* makeText(const QString& name, QWidget* parent)
{
    auto* text = new QLabel(parent);
    text->setObjectName(name);
    text->setTextFormat(Qt::PlainText);
    return text;
}

QProgressBar* makeBar(const QString& name, QWidget* parent)
{
    auto* bar = new QProgressBar(parent);
    bar->setObjectName(name);
    bar->setTextVisible(false);
    bar->setFixedWidth(barWidth);
    return bar;
}

QToolButton* makeButton(const QString& name, const QString& text, const QString& help, QWidget* parent)
{
    auto* button = new QToolButton(parent);
    button->setObjectName(name);
    button->setText(text);
    button->setToolTip(help);
    button->setWhatsThis(help);
    return button;
}
} // namespace

struct QlumWorkIndicator::Line : public QWidget
{
    Line(quint64 ofWork, QWidget* parent) : QWidget(parent), number(ofWork) {}

    const quint64 number;
    QLabel* text = nullptr;
    QProgressBar* progress = nullptr;
    QToolButton* cancel = nullptr;
};

QlumWorkIndicator::QlumWorkIndicator(QlumRunningWork& work, QWidget* parent) : QWidget(parent), m_work(work)
{
    setObjectName(QStringLiteral("workIndicator"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_text = makeText(QStringLiteral("workText"), this);
    m_progress = makeBar(QStringLiteral("workProgress"), this);
    m_progress->setAccessibleName(tr("Progress"));
    m_cancel = makeButton(QStringLiteral("workCancel"), tr("Cancel"), tr("Ends this work"), this);
    m_all = makeButton(QStringLiteral("workAll"), QString(), tr("Shows all work that is under way"), this);
    m_all->setAccessibleName(tr("Work under way"));
    for (QWidget* widget : {static_cast<QWidget*>(m_text), static_cast<QWidget*>(m_progress),
                            static_cast<QWidget*>(m_cancel), static_cast<QWidget*>(m_all)})
        layout->addWidget(widget);
    m_list = new QFrame(this, Qt::Popup);
    m_list->setObjectName(QStringLiteral("workList"));
    m_list->setAccessibleName(tr("Work under way"));
    m_list->setFrameStyle(QFrame::StyledPanel);
    m_list->setMinimumWidth(listWidth);
    m_lines = new QVBoxLayout(m_list);
    m_timer.setInterval(refreshInterval);
    connect(&m_timer, &QTimer::timeout, this, &QlumWorkIndicator::refresh);
    connect(&m_work, &QlumRunningWork::begun, this, &QlumWorkIndicator::watch);
    connect(m_cancel, &QToolButton::clicked, this, [this] {
        m_work.cancel(m_first);
        refresh();
    });
    connect(m_all, &QToolButton::clicked, this, &QlumWorkIndicator::showList);
    hide();
    if (!m_work.isIdle())
        watch();
}

QlumWorkIndicator::~QlumWorkIndicator() = default;

void QlumWorkIndicator::watch()
{
    m_timer.start();
}

QString QlumWorkIndicator::textOf(const QlumRunningWorkRow& row)
{
    constexpr qint64 second = 1000;
    const QLocale locale;
    if (row.isCancelled)
        return tr("%1: being cancelled").arg(row.text);
    if (row.isWaiting)
        return tr("%1: waiting").arg(row.text);
    if (row.done <= 0)
        return row.text;
    const QString done = locale.toString(row.done);
    if (row.total <= 0)
        return tr("%1: %2").arg(row.text, done);
    const QString total = locale.toString(row.total);
    if (!row.left)
        return tr("%1: %2 of %3").arg(row.text, done, total);
    const qint64 seconds = (*row.left + second - 1) / second;
    return tr("%1: %2 of %3, %4 s left").arg(row.text, done, total, locale.toString(seconds));
}

void QlumWorkIndicator::showProgress(QProgressBar& bar, const QlumRunningWorkRow& row)
{
    constexpr int steps = 1000; // the numbers may be larger than the bar can count
    const bool isKnown = row.total > 0;
    bar.setRange(0, isKnown ? steps : 0);
    if (isKnown)
        bar.setValue(static_cast<int>(static_cast<double>(steps) *
                                      static_cast<double>(std::clamp<qint64>(row.done, 0, row.total)) /
                                      static_cast<double>(row.total)));
}

void QlumWorkIndicator::refresh()
{
    const QList<QlumRunningWorkRow> rows = m_work.rows();
    if (m_work.isIdle())
        m_timer.stop();
    setVisible(!rows.isEmpty());
    fillList(rows);
    if (rows.isEmpty()) {
        m_list->hide();
        return;
    }
    const QlumRunningWorkRow& first = rows.first();
    m_first = first.number;
    m_text->setText(textOf(first));
    showProgress(*m_progress, first);
    m_cancel->setEnabled(!first.isCancelled);
    m_all->setVisible(rows.size() > 1);
    m_all->setText(tr("%n running", nullptr, rows.size()));
}

void QlumWorkIndicator::showList()
{
    refresh();
    m_list->adjustSize();
    m_list->move(m_all->mapToGlobal(QPoint(m_all->width() - m_list->width(), -m_list->height())));
    m_list->show();
}

QlumWorkIndicator::Line* QlumWorkIndicator::addLine(quint64 number)
{
    auto* line = new Line(number, m_list);
    line->setObjectName(QStringLiteral("workLine"));
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    line->text = makeText(QStringLiteral("lineText"), line);
    line->progress = makeBar(QStringLiteral("lineProgress"), line);
    line->cancel = makeButton(QStringLiteral("lineCancel"), tr("Cancel"), tr("Ends this work"), line);
    layout->addWidget(line->text, 1);
    layout->addWidget(line->progress);
    layout->addWidget(line->cancel);
    connect(line->cancel, &QToolButton::clicked, this, [this, number] {
        m_work.cancel(number);
        refresh();
    });
    m_lines->addWidget(line);
    m_shown.append(line);
    return line;
}

// Lines stay where they are while their work goes on: somebody may be about to press one's button.
void QlumWorkIndicator::fillList(const QList<QlumRunningWorkRow>& rows)
{
    for (int i = m_shown.size() - 1; i >= 0; --i) {
        const auto isThis = [&](const QlumRunningWorkRow& row) {
            return row.number == m_shown.at(i)->number;
        };
        if (std::none_of(rows.begin(), rows.end(), isThis))
            m_shown.takeAt(i)->deleteLater();
    }
    for (const QlumRunningWorkRow& row : rows) {
        const auto found = std::find_if(m_shown.begin(), m_shown.end(),
                                        [&](const Line* line) { return line->number == row.number; });
        Line* line = found == m_shown.end() ? addLine(row.number) : *found;
        line->text->setText(textOf(row));
        line->cancel->setAccessibleName(tr("Cancel %1").arg(row.text));
        line->progress->setAccessibleName(tr("Progress of %1").arg(row.text));
        showProgress(*line->progress, row);
        line->cancel->setEnabled(!row.isCancelled);
    }
}
