#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QByteArray>
#include <QLayout>
#include <QShowEvent>
#include <QString>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QlumPagedBytes;

/// Edits texts, XML and byte strings of any size. Byte strings are shown in hexadecimal, as text or as
/// Base64, and are loaded from a file and saved to one. GUI thread.
class QlumBytesPage : public QlumValuePage
{
    Q_OBJECT
public:
    /// For String, XmlElement or ByteString; empty until setValue().
    QlumBytesPage(const QlumValueContext& context, OpcUa_BuiltInType type, QWidget* parent = nullptr);

    void setValue(const UaVariant& value) override;
    [[nodiscard]] bool value(UaVariant& value) const override;
    [[nodiscard]] bool isModified() const override;
    [[nodiscard]] QString fault() const override;
    [[nodiscard]] QString remark() const override;
    [[nodiscard]] QString refusal() const override;
    void setReadOnly(bool readOnly) override;

protected:
    /// Knows by then whether its window holds up the others.
    void showEvent(QShowEvent* event) override;

private:
    void makeForms(QLayout* row);
    void makeFiles(QLayout* row);
    void showState();
    void setForm(int index);
    void load();
    void save();
    void showImage();

    const QlumValueContext m_context;
    const OpcUa_BuiltInType m_type;
    QlumPagedBytes* m_bytes;
    QCheckBox* m_null;
    QComboBox* m_form = nullptr; ///< of byte strings only
    QPushButton* m_load = nullptr;
    QPushButton* m_save = nullptr;
    QPushButton* m_show = nullptr;
    QLabel* m_length;
    QLabel* m_problem;       ///< with a file
    bool m_isImage = false;  ///< somebody would show it as one
    bool m_hasValue = false; ///< to begin with
    bool m_wasNull = false;
    bool m_isReadOnly = false;
};
