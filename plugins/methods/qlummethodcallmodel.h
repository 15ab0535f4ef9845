#pragma once
#include <app/api/qlummodelinterface.h>
#include <plugins/methods/qlummethod.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QObject>
#include <QVariant>

/// The calls that were made in one window, the latest first.
class QlumMethodCallModel : public QlumTableModel<QlumMethodCall>, public QlumModelInterface
{
    Q_OBJECT
public:
    enum Column { TimeColumn, StatusColumn, DurationColumn, InputsColumn, OutputsColumn };

    /// Empty.
    explicit QlumMethodCallModel(QObject* parent = nullptr);

    /// Keeps a call that has ended; the oldest ones go in time.
    void add(const QlumMethodCall& call);

protected:
    [[nodiscard]] QVariant cell(const QlumMethodCall& call, int column, int role) const override;
};
