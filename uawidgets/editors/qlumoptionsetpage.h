#pragma once
#include <uabase/structures/uagenericoptionsetvalue.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QString>
#include <QWidget>

class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

/// Edits an option set by ticking its bits, or as a number; the structured form also says which bits are
/// valid. Bits without a name keep what they are. GUI thread.
class QlumOptionSetPage : public QlumValuePage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    QlumOptionSetPage(const QlumValueContext& context, const UaOptionSetDefinition& definition,
                      QWidget* parent = nullptr);

    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    [[nodiscard]] bool isModified() const override { return m_isModified; }
    [[nodiscard]] QString fault() const override;
    [[nodiscard]] QString remark() const override;
    void setReadOnly(bool readOnly) override;

private:
    void fill();
    void addBit(int bit);
    void showTicks();
    void takeTick(const QTreeWidgetItem& item, int column);
    void takeNumber();

    const QlumValueContext m_context;
    const UaOptionSetDefinition m_definition;
    UaGenericOptionSetValue m_value;
    QLineEdit* m_number; ///< hidden for the structured form
    QTreeWidget* m_bits;
    bool m_hasValue = false;
    bool m_isModified = false;
    bool m_isShowing = false;
    bool m_isReadOnly = false;
    QString m_fault;
};
