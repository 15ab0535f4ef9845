// Small tables of a device: methods, documents, results of a transfer, differences.
#pragma once
#include <plugins/devices/qlumparameterset.h>
#include <uawidgets/models/qlumtablemodel.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QAbstractItemModel>
#include <QDialog>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <initializer_list>
#include <optional>
#include <vector>

class QTableView;
class QlumViewState;

/// A row of texts; the last of them may be a status.
struct QlumDeviceListRow
{
    QStringList texts;
    std::optional<QlumStatusLevel> level = std::nullopt;
};

/// Rows of texts.
class QlumDeviceListModel : public QlumTableModel<QlumDeviceListRow>
{
    Q_OBJECT
public:
    /// A column for each title.
    QlumDeviceListModel(const QStringList& titles, QObject* parent) : QlumTableModel(titles, parent) {}

    void setRows(std::vector<QlumDeviceListRow> rows) { reset({rows.begin(), rows.end()}); }

protected:
    [[nodiscard]] QVariant cell(const QlumDeviceListRow& row, int column, int role) const override;
};

/// The view of one of the tables, as all look. The first columns get the widths, in characters, until the
/// user chooses others.
[[nodiscard]] QTableView* qlumMakeDeviceTable(QAbstractItemModel* model, const QString& name,
                                              const QString& accessibleName, const QString& emptyText,
                                              QlumViewState* state, std::initializer_list<int> widths = {});

/// Differences, of which the user chooses some.
class QlumDifferenceTableModel : public QlumTableModel<QlumParameterDifference>
{
    Q_OBJECT
public:
    enum Column { Name, Now, Then, Remark };

    /// The title is that of the other values.
    QlumDifferenceTableModel(std::vector<QlumParameterDifference> differences, const QString& title,
                             QObject* parent);

    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

protected:
    [[nodiscard]] QVariant cell(const QlumParameterDifference& row, int column, int role) const override;
};

/// Shows what a device would have otherwise, before anything is changed.
class QlumDeviceDifferenceDialog : public QDialog
{
    Q_OBJECT
public:
    /// Plain texts.
    QlumDeviceDifferenceDialog(const QString& heading, const QString& otherTitle,
                               std::vector<QlumParameterDifference> differences, const QStringList& remarks,
                               QWidget* parent);

    /// Those that the user has chosen.
    [[nodiscard]] std::vector<QlumParameterDifference> wanted() const;

private:
    QlumDifferenceTableModel* m_model;
};
