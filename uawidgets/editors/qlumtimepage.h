#pragma once
#include <uabase/values/uadatetime.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QDateTime>
#include <QString>
#include <QWidget>

class QComboBox;
class QDateTimeEdit;
class QLabel;
class QPushButton;
class QSpinBox;

/// Edits a date and time down to 100 ns, in UTC or local time. GUI thread.
class QlumTimePage : public QlumValuePage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    explicit QlumTimePage(const QlumValueContext& context, QWidget* parent = nullptr);

    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    [[nodiscard]] bool isModified() const override;
    [[nodiscard]] QString fault() const override { return {}; }
    void setReadOnly(bool readOnly) override;

private:
    void makeButtons();
    void showFields();
    void showOther();
    void enter(const UaDateTime& time);
    void takeFields();

    const QlumValueContext m_context;
    QDateTimeEdit* m_time;
    QSpinBox* m_fine;
    QComboBox* m_zone;
    QPushButton* m_now;
    QPushButton* m_none;
    QLabel* m_other; ///< the same in the other zone
    UaDateTime m_value;
    bool m_hasValue = false;
    bool m_isModified = false;
    bool m_isShowing = false;
};
