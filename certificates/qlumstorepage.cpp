#include <certificates/qlumstorepage.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QDesktopServices>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QUrl>
#include <QVBoxLayout>

#include <utility>

namespace {
QStringList localFiles(const QMimeData* data)
{
    QStringList paths;
    for (const QUrl& url : data->urls())
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    return paths;
}
} // namespace

void qlumOpenOnDesktop(const QString& path, QWidget* parent)
{
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        return;
    QMessageBox box(QMessageBox::Information, QStringLiteral("CertificateManager"),
                    QlumStorePage::tr("The desktop has no program to open '%1' with.")
                        .arg(QDir::toNativeSeparators(path)),
                    QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

QlumStorePage::QlumStorePage(const QString& name, const QString& title, const QString& folder,
                             QWidget* parent)
    : QWidget(parent), m_folder(folder), m_sorted(new QlumTableFilter(this)), m_filter(new QLineEdit(this)),
      m_count(new QLabel(this)), m_view(new QTableView(this)),
      m_location(new QPushButton(tr("Open Certificate &Location"), this))
{
    setObjectName(name);
    setAcceptDrops(true);
    createView(name, title);
    m_filter->setObjectName(name + QStringLiteral("Filter"));
    m_filter->setAccessibleName(tr("Filter of %1").arg(title));
    m_location->setObjectName(name + QStringLiteral("Location"));
    m_location->setToolTip(tr("Open the folder %1").arg(QDir::toNativeSeparators(folder)).toHtmlEscaped());
    m_location->setWhatsThis(
        tr("<b>Open Certificate Location</b><br>Shows the folder of this store in the file manager."));
    m_location->setAutoDefault(false);
    connect(m_location, &QPushButton::clicked, this, &QlumStorePage::sltOpenLocation);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(createFilterRow());
    layout->addWidget(m_view, 1);
    layout->addWidget(m_location, 0, Qt::AlignLeft);
}

QWidget* QlumStorePage::createFilterRow()
{
    auto* row = new QWidget(this);
    auto* label = new QLabel(tr("&Filter:"), row);
    label->setBuddy(m_filter);
    m_filter->setPlaceholderText(tr("Text in any column"));
    m_filter->setToolTip(tr("Show the rows only that have this text in one of their columns"));
    m_filter->setClearButtonEnabled(true);
    m_count->setObjectName(objectName() + QStringLiteral("Count"));
    connect(m_filter, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_sorted->setText(text);
        updateCount();
    });
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(m_filter, 1);
    layout->addWidget(m_count);
    return row;
}

void QlumStorePage::createView(const QString& name, const QString& title)
{
    m_view->setObjectName(name + QStringLiteral("View"));
    m_view->setAccessibleName(title);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setAlternatingRowColors(true);
    m_view->setWordWrap(false);
    m_view->setTabKeyNavigation(false);
    m_view->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_view->setDragEnabled(true);
    m_view->setWhatsThis(tr("<b>%1</b><br>The files of this store. Double-click one to open it; drop files "
                            "here to add them, or drag a row to where it is wanted.")
                             .arg(title));
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + 8);
    m_view->horizontalHeader()->setHighlightSections(false);
    connect(m_view, &QTableView::doubleClicked, this, &QlumStorePage::rowActivated);
}

void QlumStorePage::setModel(QAbstractItemModel* model, int sortRole)
{
    m_model = model;
    m_sorted->setSourceModel(model);
    m_sorted->setSortRole(sortRole);
    m_view->setModel(m_sorted);
    m_view->setSortingEnabled(true);
    m_view->sortByColumn(-1, Qt::AscendingOrder); // as the files come, until the user wants otherwise
    connect(m_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &QlumStorePage::currentChanged);
    updateCount();
}

void QlumStorePage::keepColumns(QlumViewState* state)
{
    qlumMakeTable(m_view, {tr("Nothing here yet. Drop files on the table to add them."), objectName(), state,
                           objectName()});
}

void QlumStorePage::reload(QlumJobPool& pool)
{
    if (const QString selected = currentFile(); !selected.isEmpty())
        m_wanted = selected;
    m_location->setEnabled(!m_folder.isEmpty() && QDir(m_folder).exists());
    m_isCancelled = false;
    startReading(pool);
    updateCount();
}

void QlumStorePage::read(QlumJobPool& pool, std::unique_ptr<QlumJob> reader)
{
    pool.add(
        {tr("Reading %1").arg(m_view->accessibleName())}, std::move(reader),
        [this](QlumWorkEnd end) {
            m_isCancelled = end == QlumWorkEnd::Cancelled;
            updateCount();
        });
}

void QlumStorePage::want(const QString& path)
{
    m_view->setCurrentIndex(QModelIndex());
    m_wanted = path;
}

void QlumStorePage::takeRead()
{
    takeEntries();
    updateCount();
    if (!m_wanted.isEmpty())
        select(m_wanted);
    emit currentChanged();
}

void QlumStorePage::select(const QString& path)
{
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (fileOf(m_model->index(row, 0)) != path)
            continue;
        m_wanted.clear();
        const QModelIndex index = m_sorted->mapFromSource(m_model->index(row, 0));
        if (index.isValid())
            m_view->setCurrentIndex(index);
        return;
    }
}

void QlumStorePage::updateCount()
{
    const int all = m_model ? m_model->rowCount() : 0;
    const int shown = m_sorted->rowCount();
    if (m_isCancelled) {
        m_count->setText(tr("%Ln entries; reading was cancelled", nullptr, all));
        return;
    }
    m_count->setText(all == 0       ? tr("Nothing here yet; drop files on the table to add them")
                     : shown == all ? tr("%Ln entries", nullptr, all)
                                    : tr("%1 of %Ln entries", nullptr, all).arg(QLocale().toString(shown)));
}

QModelIndex QlumStorePage::current() const
{
    return m_sorted->mapToSource(m_view->currentIndex());
}

QString QlumStorePage::currentFile() const
{
    const QModelIndex index = current();
    return index.isValid() ? fileOf(index) : QString();
}

void QlumStorePage::sltOpenLocation()
{
    qlumOpenOnDesktop(m_folder, this);
}

void QlumStorePage::dragEnterEvent(QDragEnterEvent* event)
{
    // what is dragged out of this table is here already
    if (event->source() != m_view && !localFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void QlumStorePage::dropEvent(QDropEvent* event)
{
    const QStringList paths = localFiles(event->mimeData());
    if (paths.isEmpty())
        return;
    event->setDropAction(Qt::CopyAction); // the files stay where they are
    event->accept();
    emit filesDropped(paths);
}
