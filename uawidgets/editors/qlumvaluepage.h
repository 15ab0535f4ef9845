#pragma once
#include <uabase/values/uavariant.h>

#include <QString>
#include <QWidget>

/// An editor for values of one kind: a scalar, an array, a matrix, a structure, any value as text. GUI
/// thread.
class QlumValuePage : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

    /// Shows a value, which is not copied deeply; what the user had entered is gone.
    virtual void setValue(const UaVariant& value) = 0;
    /// What the page holds now. False, and value unchanged, while fault() says something.
    [[nodiscard]] virtual bool value(UaVariant& value) const = 0;
    /// Whether the user has changed anything since setValue().
    [[nodiscard]] virtual bool isModified() const = 0;
    /// Why what was entered is no value of the type, in words, with the place where that is; empty when it is
    /// one.
    [[nodiscard]] virtual QString fault() const = 0;
    /// What the server will refuse or what is unusual about the value, in words: it can be sent all the same.
    [[nodiscard]] virtual QString remark() const { return {}; }
    /// What of the remark makes the server refuse the value by its own data; it is sent after a second Enter.
    [[nodiscard]] virtual QString refusal() const { return {}; }
    /// A page that cannot be edited still copies, selects and opens.
    virtual void setReadOnly(bool readOnly) = 0;

signals:
    /// The user changed something; fault() and remark() may say something else now.
    void edited();
};
