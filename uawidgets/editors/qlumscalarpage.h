#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QString>
#include <QWidget>

/// Edits one scalar value of a built-in type, with room to say what is wrong with it: texts and bytes of any
/// length, times down to 100 ns, the bits of an option set; what fits a line on the line that a cell has,
/// too. What has no editor is shown. GUI thread.
class QlumScalarPage : public QlumValuePage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    explicit QlumScalarPage(const QlumValueContext& context, QWidget* parent = nullptr);

    /// A null value gives an editor for the declared type that holds none yet.
    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    [[nodiscard]] bool isModified() const override;
    [[nodiscard]] QString fault() const override;
    [[nodiscard]] QString remark() const override;
    [[nodiscard]] QString refusal() const override;
    void setReadOnly(bool readOnly) override;

private:
    [[nodiscard]] QlumValuePage* makePage(const UaVariant& value);

    const QlumValueContext m_context;
    QlumValuePage* m_page = nullptr;
    bool m_isReadOnly = false;
};
