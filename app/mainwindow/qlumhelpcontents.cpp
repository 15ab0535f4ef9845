#include <app/mainwindow/qlumhelpcontents.h>

#include <app/api/qlumlog.h>
#include <app/mainwindow/qlumhelpfiles.h>
#include <app/mainwindow/qlumhelppages.h>

#include <QFileInfo>
#include <QHelpContentModel>
#include <QHelpContentWidget>
#include <QHelpEngine>
#include <QHelpIndexWidget>
#include <QHelpLink>
#include <QHelpSearchEngine>
#include <QHelpSearchQueryWidget>
#include <QHelpSearchResultWidget>
#include <QLineEdit>
#include <QList>
#include <QString>
#include <QStringList>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <utility>

QlumHelpContents::QlumHelpContents(QWidget* parent) : QTabWidget(parent)
{
    setObjectName(QStringLiteral("helpContents"));
    setAccessibleName(tr("Contents of the manual"));
}

QlumHelpContents::~QlumHelpContents() = default;

bool QlumHelpContents::load()
{
    if (m_engine)
        return true;
    auto engine = std::make_unique<QHelpEngine>(m_folder.filePath(QStringLiteral("manual.qhc")));
    engine->setUsesFilterEngine(true);
    const auto canRead = [&engine](const QString& file) {
        const bool isRead =
            QFileInfo::exists(file) && engine->setupData() && engine->registerDocumentation(file);
        if (!isRead)
            QlumLog(QStringLiteral("Tavelin"))
                .error(tr("Contents, index and search of the manual cannot be read from %1.").arg(file));
        return isRead;
    };
    const QStringList files = qlumHelpFiles();
    if (std::none_of(files.begin(), files.end(), canRead))
        return false;
    m_engine = std::move(engine);
    makeContents();
    makeIndex();
    makeSearch();
    return true;
}

void QlumHelpContents::makeContents()
{
    QHelpContentWidget* contents = m_engine->contentWidget();
    contents->setObjectName(QStringLiteral("manualContents"));
    contents->setAccessibleName(tr("Contents"));
    connect(contents, &QHelpContentWidget::linkActivated, this, &QlumHelpContents::choose);
    connect(m_engine->contentModel(), &QHelpContentModel::contentsCreated, contents, &QTreeView::expandAll);
    addTab(contents, tr("Contents"));
    m_engine->contentModel()->createContents(QString());
}

void QlumHelpContents::makeIndex()
{
    auto* page = new QWidget(this);
    auto* filter = new QLineEdit(page);
    filter->setObjectName(QStringLiteral("manualIndexFilter"));
    filter->setPlaceholderText(tr("Filter"));
    filter->setClearButtonEnabled(true);
    filter->setAccessibleName(tr("Filter of the index"));
    QHelpIndexWidget* index = m_engine->indexWidget();
    index->setObjectName(QStringLiteral("manualIndex"));
    index->setAccessibleName(tr("Index"));
    connect(filter, &QLineEdit::textChanged, index,
            [index](const QString& text) { index->filterIndices(text); });
    connect(filter, &QLineEdit::returnPressed, index, &QHelpIndexWidget::activateCurrentItem);
    connect(
        index, &QHelpIndexWidget::documentActivated, this,
        [this](const QHelpLink& link) { choose(link.url); });
    connect(index, &QHelpIndexWidget::documentsActivated, this,
            [this](const QList<QHelpLink>& links) { choose(links.constFirst().url); });
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(filter);
    layout->addWidget(index);
    addTab(page, tr("Index"));
    m_engine->indexModel()->createIndex(QString());
}

void QlumHelpContents::makeSearch()
{
    QHelpSearchEngine* search = m_engine->searchEngine();
    auto* page = new QWidget(this);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(search->queryWidget());
    layout->addWidget(search->resultWidget(), 1);
    nameSearch(*search->queryWidget(), *search->resultWidget());
    connect(search->queryWidget(), &QHelpSearchQueryWidget::search, search,
            [search] { search->search(search->queryWidget()->searchInput()); });
    connect(search->resultWidget(), &QHelpSearchResultWidget::requestShowLink, this,
            &QlumHelpContents::choose);
    addTab(page, tr("Search"));
    search->reindexDocumentation();
}

// Parts of Qt's that have pictures only.
void QlumHelpContents::nameSearch(const QWidget& query, const QWidget& result)
{
    for (auto* field : query.findChildren<QLineEdit*>())
        field->setAccessibleName(tr("Words to search the manual for"));
    const auto name = [](const QWidget& part, const QStringList& names) {
        const QList<QToolButton*> buttons = part.findChildren<QToolButton*>();
        for (int i = 0; i < buttons.size() && i < names.size(); ++i)
            buttons.at(i)->setAccessibleName(names.at(i));
    };
    name(query, {tr("Previous search"), tr("Next search")});
    name(result, {tr("First results"), tr("Previous results"), tr("Next results"), tr("Last results")});
}

// The file has the pages under addresses of its own; those of the program are shown.
void QlumHelpContents::choose(const QUrl& page)
{
    QUrl shown = qlumHelpPage(QFileInfo(page.path()).completeBaseName());
    shown.setFragment(page.fragment());
    emit pageChosen(shown);
}
