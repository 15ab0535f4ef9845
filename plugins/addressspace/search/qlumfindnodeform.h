#pragma once
#include <opcua/opcua_types.h>
#include <plugins/addressspace/search/qlumnodesearch.h>

#include <QString>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLayout;
class QLineEdit;
class QToolButton;

/// What is searched for, as fields: a row for what a browse tells, and one, hidden at first, for what has to
/// be read.
class QlumFindNodeForm : public QWidget
{
    Q_OBJECT
public:
    /// Searches for nothing yet.
    explicit QlumFindNodeForm(QWidget* parent = nullptr);

    /// What the fields say.
    [[nodiscard]] QlumNodeQuery query() const;
    /// The text field gets the keyboard, with the text, unless that is empty.
    void begin(const QString& text);

signals:
    /// The user has pressed Return in a field.
    void findWanted();

private:
    QLineEdit* addPattern(QLayout* row, const QString& name, const QString& label, const QString& toolTip);
    QLayout* makeTextRow();
    QLayout* makeKindRow();
    QWidget* makeReadRow();

    QLineEdit* m_text;
    QComboBox* m_field;
    QCheckBox* m_isExpression;
    QCheckBox* m_isCaseSensitive;
    QComboBox* m_nodeClass;
    QLineEdit* m_type;
    QToolButton* m_more;
    QWidget* m_read;
    QLineEdit* m_description;
    QLineEdit* m_dataType;
    QLineEdit* m_unit;
    QCheckBox* m_isReadable;
    QCheckBox* m_isWritable;
    QCheckBox* m_showsDetails;
};
