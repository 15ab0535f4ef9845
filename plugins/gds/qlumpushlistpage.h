#pragma once
#include <plugins/gds/qlumpushdata.h>
#include <plugins/gds/qlumtrustlist.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>

#include <QString>
#include <QStringList>
#include <QWidget>

#include <array>
#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QTabWidget;
class QlumPushListTable;
class QlumViewState;

/// The trust list of a certificate group: its four parts, what the user changes in them, and what of that
/// still has to be written.
class QlumPushListPage : public QWidget
{
    Q_OBJECT
public:
    explicit QlumPushListPage(QlumViewState& state, QWidget* parent = nullptr);

    /// The groups that have a trust list; the group that was shown stays where it can.
    void setServer(const QlumPushServer& server);
    void clear();
    /// Whether the user may do something just now.
    void setReady(bool isReady);

    /// Null id for none.
    [[nodiscard]] UaNodeId group() const;
    /// A list as the server has it. What the user had changed, and not written, is changed in this one.
    void setRead(const QlumTrustList& list, const UaDateTime& lastUpdate);
    /// One was added or removed on the server at that time, by what the server says; the rest stays as it is.
    void changed(QlumTrustPart part, const UaByteString& der, bool isAdded, const UaDateTime& lastUpdate);
    /// The server has taken the list, be it only to apply it later.
    void setWritten(const QlumTrustList& list, const UaDateTime& lastUpdate);
    /// When the list that is shown was changed, by what the server said then.
    [[nodiscard]] UaDateTime lastUpdate() const { return m_lastUpdate; }
    /// As the server had it; nothing before it was read.
    [[nodiscard]] const std::optional<QlumTrustList>& onServer() const { return m_onServer; }
    /// With what the user has changed.
    [[nodiscard]] const QlumTrustList& edited() const { return m_edited; }
    [[nodiscard]] bool isEdited() const;
    /// Takes files as if they had been dropped on the part that is shown.
    void addFiles(const QStringList& paths);
    /// The same with what was read already.
    void addContent(const QlumTrustFile& content);

    [[nodiscard]] QlumPushListTable* table(QlumTrustPart part) const
    {
        return m_tables.at(static_cast<std::size_t>(part));
    }
    void showPart(QlumTrustPart part);
    /// Whether each change is sent at once, or all of them with the list.
    void setAtOnce(bool isAtOnce);

signals:
    void readWanted();
    void writeWanted();
    /// Only while changes are sent at once.
    void addWanted(const UaByteString& der, bool isTrusted);
    void removeWanted(const UaByteString& der, bool isTrusted);
    void showWanted(const UaByteString& der);
    /// The user wants this client's own certificates beside the view, to drag some here.
    void managerWanted();
    /// Something for the user to read, about what he did.
    void told(const QString& what, const QString& why);

private:
    void makeTables(QlumViewState& state);
    [[nodiscard]] QWidget* makeBar();
    [[nodiscard]] QWidget* makeButtons();
    [[nodiscard]] QPushButton* button(const QString& name, const QString& text, const QString& toolTip);
    [[nodiscard]] QlumTrustPart shownPart() const;
    [[nodiscard]] bool canAdd();
    void add(const QlumTrustFile& file);
    void addFrom(const QString& folder);
    void sltRemove();
    void sltUndo();
    void refresh();
    void updateButtons();

    QComboBox* m_group;
    QCheckBox* m_atOnce;
    QTabWidget* m_tabs;
    std::array<QlumPushListTable*, 4> m_tables{};
    QLabel* m_note;
    QPushButton* m_read;
    QPushButton* m_add;
    QPushButton* m_fromStore;
    QPushButton* m_manager;
    QPushButton* m_remove;
    QPushButton* m_show;
    QPushButton* m_undo;
    QPushButton* m_write;
    std::optional<QlumTrustList> m_onServer;
    QlumTrustList m_edited;
    UaDateTime m_lastUpdate;
    QlumPushServer m_server;
    bool m_isReady = false;
};
