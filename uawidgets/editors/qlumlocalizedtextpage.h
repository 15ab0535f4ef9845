#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QString>
#include <QWidget>

class QLineEdit;
class QlumPagedBytes;

/// Edits a text with its locale. GUI thread.
class QlumLocalizedTextPage : public QlumValuePage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    explicit QlumLocalizedTextPage(QWidget* parent = nullptr);

    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    [[nodiscard]] bool isModified() const override;
    [[nodiscard]] QString fault() const override;
    [[nodiscard]] QString remark() const override;
    void setReadOnly(bool readOnly) override;

private:
    UaVariant m_shown;
    QLineEdit* m_locale;
    QlumPagedBytes* m_text;
};
