#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QString>
#include <QWidget>

class QLabel;
class QlumPagedBytes;

/// Shows what has no editor of its own: values with quality and times, diagnoses, structures that nobody can
/// take apart, whose bytes it shows. It says why, and what can be done. GUI thread.
class QlumShownPage : public QlumValuePage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    explicit QlumShownPage(const QlumValueContext& context, QWidget* parent = nullptr);

    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    [[nodiscard]] bool isModified() const override { return false; }
    [[nodiscard]] QString fault() const override { return {}; }
    void setReadOnly(bool) override {}

private:
    void showBody(const UaVariant& value);
    [[nodiscard]] QString whyNoFields(const UaVariant& value) const;

    const QlumValueContext m_context;
    UaVariant m_value;
    QLabel* m_reason;
    QlumPagedBytes* m_content;
};

/// A data value or a diagnosis in lines of text, one for each part; empty for other types.
[[nodiscard]] QString qlumPartsText(const UaVariant& value);
