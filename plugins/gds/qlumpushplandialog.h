#pragma once
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QStringList>
#include <QWidget>

class QCheckBox;
class QPushButton;

/// What is about to be sent, for the user to agree to.
struct QlumPushPlan
{
    QString title;
    QStringList steps;    ///< calls, in their order
    QStringList warnings; ///< what he should know
    QString danger;       ///< what he has to agree to besides; empty for nothing
};

/// As a text to copy and keep.
[[nodiscard]] QString qlumPushPlanText(const QlumPushPlan& plan);

/// Shows a plan and asks whether it is to be carried out. A dangerous one needs a second yes.
class QlumPushPlanDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    explicit QlumPushPlanDialog(const QlumPushPlan& plan, QWidget* parent = nullptr);

private:
    void makeButtons(const QlumPushPlan& plan, class QVBoxLayout* layout);
    void save(const QString& text);
};

/// Writes a text to a file that the user chooses. What went wrong; empty when nothing did, or he gave up.
[[nodiscard]] QString qlumSavePushText(QWidget* parent, const QString& title, const QString& name,
                                       const QString& text);
