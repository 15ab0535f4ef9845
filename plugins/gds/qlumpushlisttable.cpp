#include <plugins/gds/qlumpushlisttable.h>

#include <certificates/qlumcertificateentry.h>
#include <certificates/qlumcertificatemodel.h>
#include <certificates/qlumcrlentry.h>
#include <certificates/qlumcrlmodel.h>
#include <certificates/qlumstoremodel.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QAbstractItemView>
#include <QByteArray>
#include <QHeaderView>
#include <QIcon>
#include <QItemSelectionModel>
#include <QMimeData>
#include <QModelIndex>
#include <QObject>
#include <QStyleOptionViewItem>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>
#include <ranges>
#include <utility>

namespace {
QStringList droppedFiles(const QMimeData* data)
{
    QStringList paths;
    for (const QUrl& url : data->urls())
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    return paths;
}

QlumTrustFile droppedDer(const QMimeData* data)
{
    const auto bytes = [data](const QString& format) {
        const QByteArray der = data->data(format);
        return UaByteString(static_cast<OpcUa_Int32>(der.size()),
                            reinterpret_cast<const OpcUa_Byte*>(der.constData()));
    };
    QlumTrustFile content;
    if (data->hasFormat(qlumCertificateMimeType))
        content.certificates.push_back(bytes(qlumCertificateMimeType));
    if (data->hasFormat(qlumRevocationListMimeType))
        content.revocationList = bytes(qlumRevocationListMimeType);
    return content;
}

// Says of a row that it is not on the server yet, where the eye looks first.
class PushRowMark : public QStyledItemDelegate
{
public:
    using IsNew = std::function<bool(const QModelIndex& index)>;
    PushRowMark(IsNew isNew, QObject* parent) : QStyledItemDelegate(parent), m_isNew(std::move(isNew)) {}

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.column() > 0 || !m_isNew(index))
            return;
        option->font.setBold(true);
        option->text = QlumPushListTable::tr("%1 (not written yet)").arg(option->text);
    }

private:
    const IsNew m_isNew;
};

void setColumns(QTableView& view, bool isOfLists)
{
    using Certificate = QlumCertificateModel;
    using List = QlumCRLModel;
    const std::vector<std::pair<int, int>> widths =
        isOfLists ? std::vector<std::pair<int, int>>{{List::Number, 34},
                                                     {List::ValidFrom, 24},
                                                     {List::NextUpdate, 24},
                                                     {List::Organization, 24},
                                                     {List::OrganizationUnit, 20}}
                  : std::vector<std::pair<int, int>>{
                        {Certificate::Status, 34},           {Certificate::Name, 30},
                        {Certificate::ValidFrom, 24},        {Certificate::ValidTo, 24},
                        {Certificate::OrganizationUnit, 20}, {Certificate::AppUri, 50},
                        {Certificate::DomainName, 30},       {Certificate::Signature, 28},
                        {Certificate::Thumbprint, 50}};
    const int character = view.fontMetrics().averageCharWidth();
    for (const auto& [column, characters] : widths)
        view.horizontalHeader()->resizeSection(column, characters * character);
    view.hideColumn(isOfLists ? int(List::FileName) : int(Certificate::FileName)); // a server names none
    view.verticalHeader()->setDefaultSectionSize(view.fontMetrics().height() + 8);
}
} // namespace

QlumPushListTable::QlumPushListTable(const Kind& kind, QlumViewState& state, QWidget* parent)
    : QWidget(parent), m_content(kind.content), m_sorted(new QlumTableFilter(this)), m_view(new QTableView)
{
    setObjectName(kind.name);
    setAcceptDrops(kind.takesFiles);
    if (kind.content == RevocationLists) {
        m_lists = new QlumCRLModel(QlumCRLModel::Trusted, this);
        m_sorted->setSourceModel(m_lists);
        m_sorted->setSortRole(QlumCRLModel::SortRole);
    } else {
        m_certificates = new QlumCertificateModel(kind.content == Issuers ? QlumCertificateModel::Issuers
                                                                          : QlumCertificateModel::Trusted,
                                                  QIcon(), this);
        m_sorted->setSourceModel(m_certificates);
        m_sorted->setSortRole(QlumCertificateModel::SortRole);
    }
    makeView(kind, state);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
}

void QlumPushListTable::makeView(const Kind& kind, QlumViewState& state)
{
    m_view->setObjectName(kind.name + QStringLiteral("View"));
    m_view->setAccessibleName(kind.title);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setAlternatingRowColors(true);
    m_view->setWordWrap(false);
    m_view->setTabKeyNavigation(false);
    m_view->verticalHeader()->hide();
    m_view->setModel(m_sorted);
    m_view->setSortingEnabled(true);
    m_view->sortByColumn(-1, Qt::AscendingOrder);
    setColumns(*m_view, kind.content == RevocationLists);
    m_view->setItemDelegate(new PushRowMark(
        [this](const QModelIndex& index) {
            const auto row = static_cast<std::size_t>(m_sorted->mapToSource(index).row());
            return row < m_isNew.size() && m_isNew[row];
        },
        m_view));
    connect(m_view, &QTableView::activated, this, &QlumPushListTable::opened);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &QlumPushListTable::currentChanged);
    qlumMakeTable(m_view, {kind.emptyText, kind.name, &state, kind.name});
}

void QlumPushListTable::setRows(const std::vector<UaByteString>& rows,
                                const std::vector<UaByteString>& onServer)
{
    m_rows = rows;
    m_isNew.clear();
    for (const UaByteString& der : rows)
        m_isNew.push_back(std::ranges::find(onServer, der) == onServer.end());
    if (m_certificates) {
        std::vector<QlumCertificateEntry> entries;
        for (const UaByteString& der : rows)
            entries.emplace_back(m_content == Rejected ? QlumCertificateEntry::Rejected
                                                       : QlumCertificateEntry::InStore,
                                 QString(), UaPkiCertificate::fromDER(der));
        m_certificates->clear();
        m_certificates->addEntries(std::move(entries));
    } else {
        std::vector<QlumCRLEntry> entries;
        for (const UaByteString& der : rows)
            entries.emplace_back(QString(), UaPkiRevocationList::fromDER(der.toByteArray()));
        m_lists->clear();
        m_lists->addEntries(std::move(entries));
    }
    emit currentChanged();
}

UaByteString QlumPushListTable::current() const
{
    const QModelIndex index = m_sorted->mapToSource(m_view->currentIndex());
    return index.isValid() && index.row() < count() ? m_rows[static_cast<std::size_t>(index.row())]
                                                    : UaByteString();
}

void QlumPushListTable::select(int row)
{
    m_view->setCurrentIndex(m_sorted->index(row, 0));
}

void QlumPushListTable::dragEnterEvent(QDragEnterEvent* event)
{
    const QMimeData* const dragged = event->mimeData();
    if (dragged->hasFormat(qlumCertificateMimeType) || dragged->hasFormat(qlumRevocationListMimeType) ||
        !droppedFiles(dragged).isEmpty())
        event->acceptProposedAction();
}

void QlumPushListTable::dropEvent(QDropEvent* event)
{
    event->setDropAction(Qt::CopyAction); // what was dragged stays where it is
    event->accept();
    const QlumTrustFile content = droppedDer(event->mimeData());
    const QStringList paths = droppedFiles(event->mimeData());
    // after the drag has ended: a question must not hold up the program that it comes from
    QTimer::singleShot(0, this, [this, content, paths] {
        if (!content.certificates.empty() || !content.revocationList.isEmpty())
            emit derDropped(content);
        else
            emit filesDropped(paths);
    });
}
