#pragma once
#include <uawidgets/table/qlumtablefilter.h>

#include <QAbstractItemModel>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

class QlumLogModel;

/// Lets rows of the log through that are serious enough and hold a text in any column, and makes one of equal
/// ones that follow each other: it says how many they are and shows the time of the last. What a message
/// means stands beside it as an icon, and in words in its tool tip.
class QlumLogFilter : public QlumTableFilter
{
    Q_OBJECT
public:
    explicit QlumLogFilter(QObject* parent = nullptr);

    void setFilter(int minimumLevel, const QString& text);
    /// A log.
    void setSourceModel(QAbstractItemModel* model) override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

protected:
    [[nodiscard]] bool acceptsRow(int row, const QModelIndex& parent) const override;

private:
    void tellRepeated(int row);
    [[nodiscard]] int lastOfRun(int row) const;
    [[nodiscard]] QString toolTip(int row) const;

    const QlumLogModel* m_log = nullptr;
    int m_minimumLevel = 0;
};
