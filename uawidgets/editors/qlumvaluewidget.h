#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QString>
#include <QWidget>

class QCheckBox;
class QComboBox;

/// Edits a value of any type: it shows the page that suits the value and its declared type, and lets the user
/// choose the type where several will do. For dialogs, where there is room; the cell of a table takes
/// qlumCreateValueEditor(). GUI thread.
class QlumValueWidget : public QlumValuePage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    explicit QlumValueWidget(QlumValueContext context, QWidget* parent = nullptr);

    /// A null value gives an editor for the declared type that holds none yet.
    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    [[nodiscard]] bool isModified() const override;
    [[nodiscard]] QString fault() const override;
    [[nodiscard]] QString remark() const override;
    [[nodiscard]] QString refusal() const override;
    void setReadOnly(bool readOnly) override;
    /// What was given at construction.
    [[nodiscard]] const QlumValueContext& context() const { return m_context; }

private:
    void makeTypeRow();
    void showPage(const UaVariant& value, OpcUa_BuiltInType type, bool isArray);
    void showType(OpcUa_BuiltInType type, bool isArray);
    void sltTypeChosen();

    const QlumValueContext m_context;
    QWidget* m_typeRow = nullptr; ///< where several types will do
    QComboBox* m_type = nullptr;
    QCheckBox* m_array = nullptr;
    QlumValuePage* m_page = nullptr;
    QString m_placeRemark; ///< about the place, and the shape of a scalar
    bool m_isRetyped = false;
    bool m_isReadOnly = false;
};
