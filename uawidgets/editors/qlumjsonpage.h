#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QByteArray>
#include <QString>
#include <QWidget>

class QLabel;
class QPushButton;
class QTimer;
class QlumPagedBytes;

/// Edits any value as JSON text. Long texts are checked when the user pauses, or when the value
/// is asked for. GUI thread.
class QlumJsonPage : public QlumValuePage
{
    Q_OBJECT
public:
    /// Empty until setValue().
    explicit QlumJsonPage(const QlumValueContext& context, QWidget* parent = nullptr);

    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    [[nodiscard]] bool isModified() const override;
    /// Of a text that is longer than half a megabyte not before value() was asked for.
    [[nodiscard]] QString fault() const override;
    [[nodiscard]] QString remark() const override;
    [[nodiscard]] QString refusal() const override;
    void setReadOnly(bool readOnly) override;

private:
    void makeButtons();
    void read() const;
    [[nodiscard]] QlumValueCheck check() const;
    void copy();
    void paste();

    const QlumValueContext m_context;
    QlumPagedBytes* m_text;
    QLabel* m_hint;
    QPushButton* m_paste = nullptr;
    QTimer* m_pause;
    UaVariant m_shown;
    bool m_isUnwritable = false;   ///< the value has no JSON text
    mutable bool m_isRead = false; ///< what the text comes to is read when it is asked for
    mutable UaVariant m_read;
    mutable QString m_fault;
};
