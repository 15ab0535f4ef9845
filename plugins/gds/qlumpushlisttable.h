#pragma once
#include <plugins/gds/qlumtrustlist.h>
#include <uabase/values/uabytestring.h>

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <vector>

class QAbstractItemModel;
class QTableView;
class QlumCertificateModel;
class QlumCRLModel;
class QlumTableFilter;
class QlumViewState;

/// Certificates or revocation lists of a server, shown as the certificate manager shows those of a store.
class QlumPushListTable : public QWidget
{
    Q_OBJECT
public:
    enum Content { Trusted, Issuers, Rejected, RevocationLists };
    /// What it holds and what to say while it is empty; the name is the object's and of kept columns.
    struct Kind
    {
        QString name;
        QString title;
        QString emptyText;
        Content content = Trusted;
        bool takesFiles = true; ///< by drag and drop
    };

    QlumPushListTable(const Kind& kind, QlumViewState& state, QWidget* parent = nullptr);

    /// Shows these, in DER form; those that onServer does not hold are marked as not written yet.
    void setRows(const std::vector<UaByteString>& rows, const std::vector<UaByteString>& onServer);
    [[nodiscard]] int count() const { return static_cast<int>(m_rows.size()); }
    /// The selected one; empty for none.
    [[nodiscard]] UaByteString current() const;
    /// Selects a row, as a click on it does.
    void select(int row);
    [[nodiscard]] QTableView* view() const { return m_view; }

signals:
    void currentChanged();
    /// The user wants to see it.
    void opened();
    void filesDropped(const QStringList& paths);
    /// A certificate or revocation list was, from a table of such.
    void derDropped(const QlumTrustFile& content);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void makeView(const Kind& kind, QlumViewState& state);

    QlumCertificateModel* m_certificates = nullptr;
    QlumCRLModel* m_lists = nullptr;
    const Content m_content;
    QlumTableFilter* m_sorted;
    QTableView* m_view;
    std::vector<UaByteString> m_rows;
    std::vector<bool> m_isNew; ///< of the rows: not on the server yet
};
