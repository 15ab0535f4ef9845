#pragma once
#include <QByteArray>
#include <QString>
#include <QWidget>

class QLabel;
class QLineEdit;
class QlumBytesEdit;

/// Edits bytes of any number as text, in hexadecimal or as Base64. Large ones it shows a page at a time, so
/// that a keystroke costs the same whatever the size. What cannot be edited as text without changing bytes
/// that the user did not touch is only shown. GUI thread.
class QlumPagedBytes : public QWidget
{
    Q_OBJECT
public:
    /// How bytes are written.
    enum class Form { Text, Hexadecimal, Base64 };

    /// No bytes, as text.
    explicit QlumPagedBytes(QWidget* parent = nullptr);

    /// Shows them from the first page on; what the user had entered is gone.
    void setBytes(const QByteArray& bytes);
    /// What is entered. False, and bytes unchanged, while fault() says something.
    [[nodiscard]] bool bytes(QByteArray& bytes) const;
    /// How many bytes there are now.
    [[nodiscard]] int size() const { return m_bytes.size() - m_length + m_pageSize; }
    /// Whether the user has changed anything since setBytes().
    [[nodiscard]] bool isModified() const { return m_isModified; }
    /// What is wrong with the page that is shown; others are right.
    [[nodiscard]] QString fault() const { return m_fault; }
    /// That of now.
    [[nodiscard]] Form form() const { return m_form; }
    /// False, and nothing changed, while the page is at fault.
    bool setForm(Form form);
    /// Replaces all, as the user's doing.
    void replaceAll(const QByteArray& bytes);
    /// Pages can still be turned, and text be copied.
    void setReadOnly(bool readOnly);
    /// What screen readers say of the text.
    void setTextName(const QString& name);

signals:
    /// The user changed something; fault() and size() may say something else now.
    void edited();

private:
    void makeRow();
    void showFrom(int start);
    bool leavePage();
    void showState();
    void say(const QString& note);
    void sltTextChanged();
    void sltPasted(const QString& text);
    void goTo();
    [[nodiscard]] int pageEnd(int start) const;
    [[nodiscard]] int pageBefore(int start) const;
    [[nodiscard]] int aligned(int offset) const;
    [[nodiscard]] bool read(const QString& text, QByteArray& bytes) const;

    QlumBytesEdit* m_edit;
    QWidget* m_row = nullptr; ///< to turn pages
    QLabel* m_where = nullptr;
    QLabel* m_note;
    QLineEdit* m_goTo = nullptr;
    QByteArray m_bytes; ///< of the page that is shown as it was before it was edited
    QByteArray m_page;  ///< of that page, as it is now
    Form m_form = Form::Text;
    int m_start = 0;        ///< of the page
    int m_length = 0;       ///< of the page in m_bytes
    int m_pageSize = 0;     ///< of the page as it is now, when it was last right
    bool m_hasCrLf = false; ///< the page's lines end as on Windows
    bool m_isLossy = false; ///< the page cannot be edited in this form
    bool m_isPageEdited = false;
    bool m_isModified = false;
    bool m_isReadOnly = false;
    bool m_isLoading = false;
    QString m_fault;
};
