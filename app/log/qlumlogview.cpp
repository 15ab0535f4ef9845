#include <app/log/qlumlogview.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/log/qlumlogfilter.h>
#include <app/log/qlumlogmodel.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QList>
#include <QScrollBar>
#include <QSize>
#include <QString>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

QlumLogView::QlumLogView(QlumLogModel* model, const QList<QAction*>& actions, QWidget* parent)
    : QWidget(parent), m_view(new QTreeView(this)), m_level(new QComboBox(this)), m_text(new QLineEdit(this)),
      m_filter(new QlumLogFilter(this))
{
    m_filter->setSourceModel(model);
    m_view->setObjectName(QStringLiteral("logView"));
    m_view->setAccessibleName(tr("Log"));
    m_view->setRootIsDecorated(false);
    m_view->setUniformRowHeights(true);
    m_view->setAlternatingRowColors(true);
    m_view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_view->setModel(m_filter);
    m_view->header()->setObjectName(QStringLiteral("logHeader"));
    const int em = fontMetrics().averageCharWidth();
    m_view->header()->resizeSection(QlumLogModel::Timestamp, em * 22);
    m_view->header()->resizeSection(QlumLogModel::Source, em * 24);
    m_view->header()->resizeSection(QlumLogModel::Server, em * 30);
    m_view->addActions(actions);
    qlumMakeTable(m_view, {tr("Nothing has been logged yet."), tr("log"), nullptr, QString()});

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeToolBar(actions));
    layout->addWidget(m_view);

    const QScrollBar* bar = m_view->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, &QlumLogView::sltScrolled);
    connect(bar, &QScrollBar::rangeChanged, this, &QlumLogView::sltScrollRangeChanged);
    connect(m_level, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &QlumLogView::sltFilterChanged);
    connect(m_text, &QLineEdit::textChanged, this, &QlumLogView::sltFilterChanged);
}

QToolBar* QlumLogView::makeToolBar(const QList<QAction*>& actions)
{
    auto* bar = new QToolBar(tr("Log Toolbar"), this);
    bar->setObjectName(QStringLiteral("Log Toolbar"));
    bar->setIconSize(QSize(16, 16));
    bar->addActions(actions);

    m_level->setObjectName(QStringLiteral("logLevelFilter"));
    m_level->setAccessibleName(tr("Least level shown"));
    m_level->setToolTip(tr("Show entries of this level and more serious ones"));
    m_level->addItem(tr("All entries"), QlumLogLevel::All);
    m_level->addItem(tr("Information"), QlumLogLevel::Info);
    m_level->addItem(tr("Warnings"), QlumLogLevel::Warning);
    m_level->addItem(tr("Errors"), QlumLogLevel::Error);
    bar->addWidget(m_level);

    m_text->setObjectName(QStringLiteral("logTextFilter"));
    m_text->setAccessibleName(tr("Text to filter the log by"));
    m_text->setPlaceholderText(tr("Filter"));
    m_text->setToolTip(tr("Show entries that hold this text"));
    m_text->setClearButtonEnabled(true);
    m_text->setMaximumWidth(fontMetrics().averageCharWidth() * 40);
    bar->addWidget(m_text);
    return bar;
}

QHeaderView* QlumLogView::header() const
{
    return m_view->header();
}

void QlumLogView::sltFilterChanged()
{
    m_filter->setFilter(m_level->currentData().toInt(), m_text->text());
    m_view->scrollToBottom();
}

// New entries are followed unless the user has scrolled up to read older ones.
void QlumLogView::sltScrolled(int value)
{
    m_follow = value >= m_view->verticalScrollBar()->maximum();
}

// There are more rows, or room for fewer of them.
void QlumLogView::sltScrollRangeChanged(int, int maximum)
{
    if (m_follow)
        m_view->verticalScrollBar()->setValue(maximum);
}
