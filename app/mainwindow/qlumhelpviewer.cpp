#include <app/mainwindow/qlumhelpviewer.h>

#include <app/mainwindow/qlumhelpcontents.h>
#include <app/mainwindow/qlumhelpfiles.h>

#include <QAction>
#include <QDesktopServices>
#include <QIcon>
#include <QKeySequence>
#include <QSplitter>
#include <QString>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>
#include <QVariant>

namespace {
const QUrl& contents()
{
    static const QUrl url(QStringLiteral("qrc:/help/index.html"));
    return url;
}

// Shows pages in the program's language where they are, a page of its own where a page of the manual is
// missing, and leaves the web to a web browser. The addresses are those of the English pages in any language.
class HelpBrowser : public QTextBrowser
{
public:
    using QTextBrowser::QTextBrowser;

    QVariant loadResource(int type, const QUrl& name) override
    {
        if (type == QTextDocument::HtmlResource)
            if (const QString page = qlumTranslatedHelpPage(name.fileName()); !page.isEmpty())
                return page;
        const QVariant page = QTextBrowser::loadResource(type, name);
        if (page.isValid() || type != QTextDocument::HtmlResource)
            return page;
        return QlumHelpViewer::tr("<h2>Page not found</h2><p>The manual has no page %1.</p><p><a "
                                  "href=\"qrc:/help/index.html\">Back to "
                                  "the contents</a></p>")
            .arg(name.toDisplayString().toHtmlEscaped());
    }
};
} // namespace

QlumHelpViewer::QlumHelpViewer(QWidget* parent)
    : QWidget(parent, Qt::Window), m_contents(new QlumHelpContents(this)), m_browser(new HelpBrowser(this))
{
    setObjectName(QStringLiteral("helpViewer"));
    setAttribute(Qt::WA_QuitOnClose,
                 false); // the program ends with the main window, also when the manual is open
    setWindowTitle(tr("Tavelin Manual"));
    setWindowIcon(QIcon(QStringLiteral(":/images/helpmanual.png")));
    m_browser->setObjectName(QStringLiteral("manual"));
    m_browser->setAccessibleName(tr("Manual"));
    m_browser->setOpenLinks(false);
    connect(m_browser, &QTextBrowser::anchorClicked, this, &QlumHelpViewer::showPage);
    connect(m_contents, &QlumHelpContents::pageChosen, this, &QlumHelpViewer::showPage);

    auto* bar = new QToolBar(this);
    bar->setObjectName(QStringLiteral("helpToolBar"));
    QAction* home = bar->addAction(tr("&Contents"), this, [this] { showPage(contents()); });
    QAction* back = bar->addAction(tr("&Back"), m_browser, &QTextBrowser::backward);
    QAction* forward = bar->addAction(tr("&Forward"), m_browser, &QTextBrowser::forward);
    home->setShortcut(QKeySequence(QStringLiteral("Alt+Home")));
    back->setShortcut(QKeySequence::Back);
    back->setEnabled(false);
    forward->setShortcut(QKeySequence::Forward);
    forward->setEnabled(false);
    connect(m_browser, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(m_browser, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* splitter = new QSplitter(this);
    splitter->setObjectName(QStringLiteral("helpSplitter"));
    splitter->addWidget(m_contents);
    splitter->addWidget(m_browser);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    layout->addWidget(bar);
    layout->addWidget(splitter, 1);
    resize(1000, 700);
    splitter->setSizes({280, 720});
}

void QlumHelpViewer::showPage(const QUrl& page)
{
    const QUrl target = m_browser->source().resolved(page);
    if (target.scheme() == QLatin1String("qrc"))
        m_browser->setSource(target);
    else if (target.scheme() == QLatin1String("https"))
        QDesktopServices::openUrl(target);
}

void QlumHelpViewer::showContents()
{
    if (!isVisible())
        showPage(contents());
    bringToFront();
}

void QlumHelpViewer::showPageInFront(const QUrl& page)
{
    showPage(page);
    bringToFront();
}

void QlumHelpViewer::bringToFront()
{
    m_contents->setVisible(m_contents->load());
    show();
    raise();
    activateWindow();
}
