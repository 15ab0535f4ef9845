#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QString>
#include <QWidget>

class QComboBox;
class QHBoxLayout;
class QLabel;

/// Edits a value on the line that a cell has, with the help for which a cell has no room: another base for
/// whole numbers, the unit, new identifiers. GUI thread.
class QlumLinePage : public QlumValuePage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    explicit QlumLinePage(const QlumValueContext& context, QWidget* parent = nullptr);

    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    [[nodiscard]] bool isModified() const override { return m_isModified; }
    [[nodiscard]] QString fault() const override;
    [[nodiscard]] QString remark() const override;
    [[nodiscard]] QString refusal() const override;
    void setReadOnly(bool readOnly) override;

private:
    void addBases(QHBoxLayout* row);
    void addNewGuid(QHBoxLayout* row);
    void setBase(int index);
    void showHint();

    const QlumValueContext m_context;
    UaVariant m_shown;
    QWidget* m_editor = nullptr;
    QLabel* m_hint = nullptr;
    bool m_isModified = false;
};
