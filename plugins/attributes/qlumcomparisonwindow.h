#pragma once
#include <plugins/attributes/qlumcomparison.h>
#include <uawidgets/models/qlumtablemodel.h>
#include <uawidgets/qlumbasewidget.h>

#include <QObject>
#include <QString>
#include <QVariant>
#include <QWidget>

#include <deque>
#include <utility>

class QLabel;

/// The rows of two nodes beside each other; those that differ are bold.
class QlumComparisonModel : public QlumTableModel<QlumComparedRow>
{
    Q_OBJECT
public:
    enum Column { NameColumn, LeftColumn, RightColumn };

    /// With the names of the nodes as titles.
    QlumComparisonModel(const QString& left, const QString& right, QObject* parent = nullptr);

    /// Shows these.
    void setRows(std::deque<QlumComparedRow> rows) { reset(std::move(rows)); }

protected:
    [[nodiscard]] QVariant cell(const QlumComparedRow& row, int column, int role) const override;
};

/// A node that was kept and another one, as they were when they were read. Shows what it was given: it asks
/// no server, and stays when one goes. GUI thread.
class QlumComparisonWindow : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// A node as it was shown.
    struct Node
    {
        QString name; ///< with that of its server
        QlumShownRows rows;
    };

    /// The first node stands on the left.
    QlumComparisonWindow(const Node& left, const Node& right, QWidget* parent);

private:
    void showRows(bool differencesOnly);

    const std::deque<QlumComparedRow> m_rows;
    QlumComparisonModel* m_model;
    QLabel* m_summary;
};
