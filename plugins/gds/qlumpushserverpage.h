#pragma once
#include <plugins/gds/qlumpushdata.h>
#include <uawidgets/models/qlumtablemodel.h>

#include <QFormLayout>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QWidget>

#include <vector>

class QLabel;
class QTableView;
class QlumViewState;

/// The certificate groups of a server.
class QlumPushGroupModel : public QlumTableModel<QlumPushGroup>
{
    Q_OBJECT
public:
    explicit QlumPushGroupModel(QObject* parent = nullptr);
    void setGroups(const std::vector<QlumPushGroup>& groups);

protected:
    [[nodiscard]] QVariant cell(const QlumPushGroup& group, int column, int role) const override;
};

/// What a server tells of its configuration object.
class QlumPushServerPage : public QWidget
{
    Q_OBJECT
public:
    explicit QlumPushServerPage(QlumViewState& state, QWidget* parent = nullptr);

    void setServer(const QlumPushServer& server);
    void clear();
    /// What stands there, as texts.
    [[nodiscard]] QString text() const;
    [[nodiscard]] QlumPushGroupModel* groups() const { return m_groups; }

private:
    enum Fact { Connection, Capabilities, Formats, ListSize, Multicast, SecureElement, Offered, Missing };
    void add(class QFormLayout* form, const QString& name, const QString& label);
    void set(Fact fact, const QString& text);

    std::vector<QLabel*> m_facts; ///< by Fact
    QlumPushGroupModel* m_groups;
    QTableView* m_view;
};
