#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumeditorstore.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QVariant>
#include <QWidget>

#include <functional>

class QDialogButtonBox;
class QLabel;
class QTabWidget;
class QlumJsonPage;
class QlumValueWidget;

/// Edits one value of any type in a window, by fields or as JSON text. What is wrong or unusual with it is
/// said while the user types; what the server will refuse by its own data is sent on the second Enter.
/// Runs modal by exec(), or beside others by show(). GUI thread.
class QlumValueDialog : public QlumBaseWidget, public QlumEditorStore
{
    Q_OBJECT
public:
    /// Sends the value. Empty when it was taken; else why not, in words, which is shown while the dialog
    /// stays open. May run a nested event loop and delete the dialog.
    using Taker = std::function<QString(const UaVariant& value)>;

    /// The dialog gives the editors their settings, unless the context has somebody who does. Dialogs of
    /// different use keep size and settings in different groups.
    explicit QlumValueDialog(QlumValueContext context, QWidget* parent = nullptr,
                             const QString& settingsGroup = QStringLiteral("QlumValueDialog"));

    /// Says above the value whose it is: plain text.
    void setHeading(const QString& heading);
    /// Shows a value; null for one that is still to be given.
    void setValue(const UaVariant& value);
    /// What the dialog holds. False, and value unchanged, while that is no value.
    [[nodiscard]] bool value(UaVariant& value) const;
    /// Whether the user has changed anything since setValue().
    [[nodiscard]] bool isModified() const;
    /// Nothing can be changed; the only button closes.
    void setReadOnly(bool readOnly);
    /// Who gets the value before the dialog closes with Accepted; without one it just closes.
    void setTaker(Taker taker);

    /// Checks, warns, has the value sent and closes; what prevents that is said in the dialog.
    void accept() override;

private:
    void makeTabs();
    void makeButtons();
    [[nodiscard]] QlumValuePage* page() const;
    void turnTo(int index);
    void sltEdited();
    void showState();
    void say(const QString& text, bool isWarning);
    [[nodiscard]] bool isConfirmed(const UaVariant& value);

    QlumValueContext m_context;
    Taker m_taker;
    QLabel* m_heading;
    QLabel* m_declared;
    QTabWidget* m_tabs;
    QlumValueWidget* m_widget;
    QlumJsonPage* m_json;
    QLabel* m_icon;
    QLabel* m_state;
    QDialogButtonBox* m_buttons;
    UaVariant m_warned;       ///< what the user has been warned of
    bool m_isWarned = false;  ///< and has not changed since
    bool m_isCarried = false; ///< a page shows what was changed in the other
    bool m_isWarning = false; ///< what is said
    bool m_isReadOnly = false;
    int m_shown = 0; ///< page
};
