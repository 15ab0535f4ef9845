#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QString>
#include <QWidget>

/// Edits one scalar value of a built-in type, with room to say what is wrong with it. GUI thread.
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
    void setReadOnly(bool readOnly) override;

private:
    const QlumValueContext m_context;
    UaVariant m_shown;
    QWidget* m_editor = nullptr;
    bool m_modified = false;
    bool m_readOnly = false;
};
