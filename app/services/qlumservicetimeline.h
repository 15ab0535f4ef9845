#pragma once
#include <app/api/qlumservicerecorder.h>

#include <QModelIndex>
#include <QModelIndexList>
#include <QObject>
#include <QPainter>
#include <QSortFilterProxyModel>
#include <QStyleOptionViewItem>
#include <QStyledItemDelegate>
#include <QtGlobal>

#include <vector>

class QlumServicesModel;

/// Part of a call on the time line, in nanoseconds from its begin.
struct QlumServicePhase
{
    qint64 from;
    qint64 to;
    bool isWaiting; ///< for the server; else work of this side

    friend bool operator==(const QlumServicePhase&, const QlumServicePhase&) = default;
};

/// The parts of a call, one after the other: until it was sent, until its answer came, until it was handed
/// over. What was not measured is waiting; one that runs waits until now, by the clock of the records.
[[nodiscard]] std::vector<QlumServicePhase> qlumServicePhases(const QlumServiceRecord& record, qint64 now);

/// Draws each call as a bar on one scale, so that calls side by side and one after the other can be told
/// apart: the scale runs from the first to the last of the calls of interest, the end of a Publish left out.
/// GUI thread.
class QlumServiceTimeline : public QStyledItemDelegate
{
    Q_OBJECT
public:
    QlumServiceTimeline(const QSortFilterProxyModel& shown, const QlumServicesModel& model,
                        QObject* parent = nullptr);

    /// The scale for those rows of the shown ones; for all when there are fewer than two.
    void setScale(const QModelIndexList& rows);
    /// Begin and end of the scale, by the clock of the records.
    [[nodiscard]] qint64 begin() const { return m_begin; }
    [[nodiscard]] qint64 end() const { return m_end; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    [[nodiscard]] const QlumServiceRecord& recordAt(const QModelIndex& index) const;
    void reach(const QModelIndex& index);

    const QSortFilterProxyModel& m_shown;
    const QlumServicesModel& m_model;
    qint64 m_begin = 0;
    qint64 m_end = 0;
};
