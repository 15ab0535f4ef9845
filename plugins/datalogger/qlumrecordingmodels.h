// Tables of what is in a recording.
#pragma once
#include <recording/recordreader.h>
#include <recording/recordtypes.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QHash>
#include <QObject>
#include <QString>
#include <QVariant>

#include <vector>

/// Its items.
class QlumRecordedItemModel : public QlumTableModel<recording::RecordReader::Item>
{
    Q_OBJECT
public:
    /// Empty.
    explicit QlumRecordedItemModel(QObject* parent = nullptr);
    /// Instead of those that are there.
    void setItems(const std::vector<recording::RecordReader::Item>& items);
    /// "Plant: Speed"; empty for a number that is none.
    [[nodiscard]] QString nameOf(recording::ItemNumber number) const { return m_names.value(number); }

protected:
    [[nodiscard]] QVariant cell(const recording::RecordReader::Item& row, int column,
                                int role) const override;

private:
    QHash<recording::ItemNumber, QString> m_names;
};

/// What happened, newest first.
class QlumMarkModel : public QlumTableModel<recording::Mark>
{
    Q_OBJECT
public:
    /// The items must outlive it.
    explicit QlumMarkModel(const QlumRecordedItemModel& items, QObject* parent = nullptr);
    /// Instead of those that are there.
    void setMarks(const std::vector<recording::Mark>& marks);

protected:
    [[nodiscard]] QVariant cell(const recording::Mark& row, int column, int role) const override;

private:
    const QlumRecordedItemModel& m_items;
};

/// Values.
class QlumRecordModel : public QlumTableModel<recording::Record>
{
    Q_OBJECT
public:
    /// The items must outlive it.
    explicit QlumRecordModel(const QlumRecordedItemModel& items, QObject* parent = nullptr);
    /// Instead of those that are there.
    void setRecords(const std::vector<recording::Record>& records);

protected:
    [[nodiscard]] QVariant cell(const recording::Record& row, int column, int role) const override;

private:
    const QlumRecordedItemModel& m_items;
};

/// What a mark says, for the user.
[[nodiscard]] QString qlumMarkText(recording::MarkKind kind);
/// Whether it says that something is missing.
[[nodiscard]] bool qlumIsGap(recording::MarkKind kind);
