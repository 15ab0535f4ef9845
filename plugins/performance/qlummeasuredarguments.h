// With which arguments a run calls methods.
#pragma once
#include <plugins/performance/qlummeasurement.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumeditorstore.h>
#include <uawidgets/editors/qlummethodarguments.h>

#include <QDialog>
#include <QStringList>
#include <QWidget>

#include <vector>

class QLabel;
class QlumArgumentPanel;

/// What a run of Call would call.
struct QlumCallCheck
{
    QlumMeasurementPlan plan;                ///< with the methods that can be called, and their arguments
    std::vector<QlumMethodArguments> inputs; ///< of each of them
    QStringList leftOut;                     ///< the others, each with its reason

    /// Whether there is anything to be asked for.
    [[nodiscard]] bool hasInputs() const;
};

/// Asks for the arguments of methods, which are the same for each call. Accepted when all can be sent.
class QlumMeasuredArgumentsDialog : public QDialog, public QlumEditorStore
{
    Q_OBJECT
public:
    /// Begins with the arguments of the plan, and with values that suit where it has none.
    explicit QlumMeasuredArgumentsDialog(const QlumCallCheck& check, QWidget* parent = nullptr);

    /// Of each method; empty for one that takes none.
    [[nodiscard]] std::vector<std::vector<UaVariant>> values() const;
    void accept() override;

private:
    std::vector<QlumArgumentPanel*> m_panels; ///< one a method; null without arguments
    QLabel* m_fault;
};
