#include <app/services/qlumservicetimeline.h>

#include <app/services/qlumservicesmodel.h>

#include <QApplication>
#include <QColor>
#include <QModelIndexList>
#include <QObject>
#include <QPalette>
#include <QRect>
#include <QString>
#include <QStyle>

#include <algorithm>
#include <limits>

namespace {
constexpr int margin = 2;

// A server keeps a Publish until it has something to tell: with its end nothing else could be seen.
qint64 endOf(const QlumServiceRecord& record)
{
    if (record.service == QLatin1String("Publish"))
        return record.passed;
    return record.passed + (record.hasEnded ? std::max<qint64>(record.times.ended, 0) : 0);
}
} // namespace

std::vector<QlumServicePhase> qlumServicePhases(const QlumServiceRecord& record, qint64 now)
{
    const QlumServiceRecord::Times& times = record.times;
    const qint64 end = record.hasEnded ? times.ended : now - record.passed;
    const qint64 sent = record.hasEnded && times.sent >= 0 ? std::min(times.sent, end) : 0;
    const qint64 answered = record.hasEnded && times.firstByte >= 0
                                ? std::clamp(times.firstByte, sent, std::max(sent, end))
                                : end;
    std::vector<QlumServicePhase> phases;
    for (const QlumServicePhase& phase :
         {QlumServicePhase{0, sent, false}, {sent, answered, true}, {answered, end, false}})
        if (phase.to > phase.from)
            phases.push_back(phase);
    return phases;
}

QlumServiceTimeline::QlumServiceTimeline(const QSortFilterProxyModel& shown, const QlumServicesModel& model,
                                         QObject* parent)
    : QStyledItemDelegate(parent), m_shown(shown), m_model(model)
{
}

const QlumServiceRecord& QlumServiceTimeline::recordAt(const QModelIndex& index) const
{
    return m_model.rowAt(m_shown.mapToSource(index));
}

void QlumServiceTimeline::setScale(const QModelIndexList& rows)
{
    m_begin = std::numeric_limits<qint64>::max();
    m_end = 0;
    if (rows.size() > 1)
        for (const QModelIndex& index : rows)
            reach(index);
    else
        for (int row = 0; row < m_shown.rowCount(); ++row)
            reach(m_shown.index(row, 0));
}

void QlumServiceTimeline::reach(const QModelIndex& index)
{
    const QlumServiceRecord& record = recordAt(index);
    m_begin = std::min(m_begin, record.passed);
    m_end = std::max(m_end, endOf(record));
}

void QlumServiceTimeline::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    cell.text.clear();
    const QStyle* style = cell.widget ? cell.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    if (m_end <= m_begin)
        return;
    const QlumServiceRecord& record = recordAt(index);
    const QRect room = cell.rect.adjusted(margin, margin * 2, -margin, -margin * 2);
    const auto place = [&](qint64 time) { // those beside the scale are at its ends
        const double part = static_cast<double>(time - m_begin) / static_cast<double>(m_end - m_begin);
        return room.left() + static_cast<int>(std::clamp(part, 0.0, 1.0) * (room.width() - 1));
    };
    const bool isSelected = (cell.state & QStyle::State_Selected) != 0;
    QColor work = cell.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Highlight);
    QColor waiting = cell.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
    waiting.setAlphaF(0.4);
    for (const QlumServicePhase& phase : qlumServicePhases(record, m_end)) {
        const int left = place(record.passed + phase.from);
        const int right = place(record.passed + phase.to);
        painter->fillRect(QRect(left, room.top(), std::max(right - left, 1), room.height()),
                          phase.isWaiting ? waiting : work);
    }
}
