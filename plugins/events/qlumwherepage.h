#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <opcua/opcua_builtintypes.h>
#include <plugins/events/qlumeventfilter.h>
#include <plugins/events/qlumeventtypes.h>
#include <plugins/events/qlumeventwhere.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QHBoxLayout;
class QPushButton;
class QTreeView;

/// A condition, and what the server says of it.
struct QlumWhereRow
{
    QlumEventCondition condition;
    std::optional<OpcUa_StatusCode> status; ///< none while the server has said nothing
};

/// The conditions of a notifier, one below the other.
class QlumWhereModel : public QlumTableModel<QlumWhereRow>
{
    Q_OBJECT
public:
    enum Column { Join, Condition, Answer, ColumnCount };

    explicit QlumWhereModel(QObject* parent = nullptr);

    void setTypeName(const std::function<QString(const UaNodeId&)>& typeName) { m_typeName = typeName; }
    void setConditions(const QlumEventConditions& conditions);
    [[nodiscard]] QlumEventConditions conditions() const;
    void add(const QlumEventCondition& condition);
    void removeRow(int row);
    /// What the server says of the elements that the conditions have become.
    void setResults(const std::vector<QlumElementResult>& results);

protected:
    QVariant cell(const QlumWhereRow& row, int column, int role) const override;

private:
    std::function<QString(const UaNodeId&)> m_typeName;
};

/// Where the user says which events a server shall leave out. Empty at first.
class QlumWherePage : public QWidget
{
    Q_OBJECT
public:
    explicit QlumWherePage(QWidget* parent = nullptr);

    /// The types and fields that are offered, and the server whose nodes can be chosen; null types offer
    /// those that are known to everybody.
    void setOffer(unsigned int serverId, const QlumEventTypes::Tree& types, const QStringList& fields);
    /// What is shown; isHere: the conditions are looked at by this program, not by the server.
    void setConditions(const QlumEventConditions& conditions, bool isHere);
    void setResults(const std::vector<QlumElementResult>& results) { m_model->setResults(results); }
    [[nodiscard]] QlumWhereModel* model() const { return m_model; }

signals:
    /// By the user; to be applied.
    void conditionsEdited(const QlumEventConditions& conditions);

private:
    void sltAdd();
    void sltRemove();
    void showKind();
    void showEditor();
    void suggestType();
    [[nodiscard]] OpcUa_BuiltInType wantedType() const;
    [[nodiscard]] bool takesValue() const;
    [[nodiscard]] bool isPattern() const;
    [[nodiscard]] bool readValue(UaVariant& value) const;
    [[nodiscard]] bool isComplete() const;
    [[nodiscard]] QComboBox* makeCombo(const char* name, const QString& title);

    QlumWhereModel* m_model;
    QTreeView* m_view;
    QLabel* m_note;
    QComboBox* m_join;
    QComboBox* m_opens;
    QCheckBox* m_not;
    QComboBox* m_kind;
    QComboBox* m_type;
    QComboBox* m_field;
    QComboBox* m_operator;
    QComboBox* m_valueType;
    QHBoxLayout* m_valueRow;
    QWidget* m_value = nullptr; ///< an editor for the wanted type
    UaVariant m_initial;        ///< what it shows before the user has given one
    OpcUa_BuiltInType m_editedType = OpcUaType_Null;
    unsigned int m_serverId = qlumNoServer;
    QComboBox* m_closes;
    QPushButton* m_add;
    QPushButton* m_remove;
};
