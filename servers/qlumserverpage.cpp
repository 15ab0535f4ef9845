#include <servers/qlumserverpage.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumconnectdialogs.h>
#include <servers/qlumconnectfailure.h>
#include <servers/qlumdiscoveryview.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumendpointfetcher.h>
#include <servers/qlumendpointmodel.h>
#include <uawidgets/table/qlumtable.h>

#include <QBoxLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QMetaObject>
#include <QModelIndex>
#include <QProgressBar>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QString>
#include <QTreeView>
#include <QUrl>
#include <QVBoxLayout>
#include <QVector>
#include <QWidget>

#include <utility>

QlumServerPage::QlumServerPage(QlumConnectDialogs& prompts, QlumEndpointFetcher* fetcher,
                               QlumDiscoveryLookup::Asker asker, QWidget* parent)
    : QWidget(parent), m_tlsQuestion(QlumLog(tr("Server Settings")), prompts),
      m_fetcher(fetcher ? fetcher : new QlumEndpointFetcher), m_endpoints(new QlumEndpointModel(this)),
      m_sorted(new QSortFilterProxyModel(this)), m_discovery(new QlumDiscoveryView(std::move(asker)))
{
    m_fetcher->setParent(this);
    createEndpointView();
    auto* lower = new QWidget;
    auto* lowerLayout = new QVBoxLayout(lower);
    lowerLayout->setContentsMargins(0, 0, 0, 0);
    lowerLayout->addLayout(createUrlRow());
    lowerLayout->addWidget(m_urlHint);
    lowerLayout->addWidget(m_endpointView, 1);
    lowerLayout->addWidget(m_progress);
    lowerLayout->addWidget(m_message);
    auto* splitter = new QSplitter(Qt::Vertical);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(m_discovery);
    splitter->addWidget(lower);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(splitter);
    connect(m_discovery, &QlumDiscoveryView::selected, this, [this](const QString& url) {
        if (!isBusy())
            m_url->setText(url);
    });
    connect(m_discovery, &QlumDiscoveryView::chosen, this, [this](const QString& url) {
        if (isBusy())
            m_fetcher->cancel();
        m_url->setText(url);
        sltFetchEndpoints();
    });
    connect(m_fetcher, &QlumEndpointFetcher::finished, this, &QlumServerPage::sltEndpointsFetched);
    connect(m_fetcher, &QlumEndpointFetcher::untrustedCertificate, this,
            &QlumServerPage::sltCertificateRefused);
    connect(&m_tlsQuestion, &QlumTlsTrustQuestion::trusted, this, &QlumServerPage::sltCertificateTrusted);
    setMessage(tr("Press a server above, or enter the URL of a server and press Get Endpoints."));
    sltUpdateControls();
}

QlumServerPage::~QlumServerPage() = default;

// ---- widgets

QBoxLayout* QlumServerPage::createUrlRow()
{
    auto* row = new QHBoxLayout;
    m_url = new QLineEdit;
    m_url->setObjectName(QStringLiteral("endpointUrl"));
    m_url->setAccessibleName(tr("Endpoint URL"));
    m_url->setMaxLength(QlumEndpointLimits::textLength);
    m_url->setPlaceholderText(QStringLiteral("opc.tcp://localhost:4840"));
    m_url->setWhatsThis(tr("<b>Endpoint URL</b><br>The address of the server, for example "
                           "opc.tcp://plc1:4840. Port 4840 is used when none is given."));
    m_fetch = new QPushButton(tr("&Get Endpoints"));
    m_fetch->setObjectName(QStringLiteral("getEndpoints"));
    m_fetch->setToolTip(tr("Ask the server which endpoints it offers"));
    m_fetch->setAutoDefault(false);
    auto* label = new QLabel(tr("&URL:"));
    label->setBuddy(m_url);
    row->addWidget(label);
    row->addWidget(m_url, 1);
    row->addWidget(m_fetch);
    m_urlHint = new QLabel(tr("A URL begins with opc.tcp:// or https:// and names a host."));
    m_urlHint->setObjectName(QStringLiteral("urlHint"));
    m_urlHint->hide();
    m_progress = new QProgressBar;
    m_progress->setObjectName(QStringLiteral("fetchProgress"));
    m_progress->setRange(0, 0);
    m_progress->hide();
    m_message = new QLabel;
    m_message->setObjectName(QStringLiteral("message"));
    m_message->setTextFormat(Qt::PlainText);
    m_message->setWordWrap(true);
    connect(m_url, &QLineEdit::textChanged, this, &QlumServerPage::sltUpdateControls);
    connect(m_url, &QLineEdit::returnPressed, m_fetch, &QPushButton::click);
    connect(m_fetch, &QPushButton::clicked, this, &QlumServerPage::sltFetchEndpoints);
    return row;
}

void QlumServerPage::createEndpointView()
{
    m_sorted->setSourceModel(m_endpoints);
    m_sorted->setSortRole(QlumEndpointModel::sortRole);
    m_endpointView = new QTreeView;
    m_endpointView->setObjectName(QStringLiteral("endpoints"));
    m_endpointView->setAccessibleName(tr("Endpoints"));
    m_endpointView->setWhatsThis(
        tr("<b>Endpoints</b><br>What the server offers. Choose how the connection is to "
           "be secured."));
    m_endpointView->setModel(m_sorted);
    m_endpointView->setRootIsDecorated(false);
    m_endpointView->setUniformRowHeights(true);
    m_endpointView->setSortingEnabled(true);
    m_endpointView->sortByColumn(QlumEndpointModel::Level, Qt::DescendingOrder);
    QHeaderView* header = m_endpointView->header();
    header->resizeSection(QlumEndpointModel::Policy, 170);
    header->resizeSection(QlumEndpointModel::Mode, 120);
    header->resizeSection(QlumEndpointModel::Level, 50);
    header->resizeSection(QlumEndpointModel::Transport, 75);
    header->resizeSection(QlumEndpointModel::Users, 210);
    header->resizeSection(QlumEndpointModel::Remark, 180);
    m_endpointView->setMinimumHeight(fontMetrics().height() * 5);
    m_endpointView->viewport()->installEventFilter(this);
    qlumMakeTable(m_endpointView,
                  {tr("Enter an address and press Get Endpoints."), tr("endpoints"), nullptr, {}});
    connect(m_endpointView->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &QlumServerPage::sltUpdateControls);
    connect(m_endpointView, &QTreeView::doubleClicked, this, &QlumServerPage::accepted);
}

// ---- content

void QlumServerPage::setStored(const QlumEndpoint& endpoint)
{
    m_stored = endpoint;
    m_url->setText(endpoint.url);
    if (endpoint.url.isEmpty())
        return;
    setMessage(QString());
    m_endpoints->setEndpoints({endpoint});
    selectEndpoint(0);
}

void QlumServerPage::lookAtLocal()
{
    m_discovery->lookAtLocal();
}

void QlumServerPage::sltFetchEndpoints()
{
    if (m_fetcher->isBusy()) {
        m_fetcher->cancel();
        setOutcome(false, tr("Cancelled."));
        sltUpdateControls();
        return;
    }
    m_url->setText(url());
    setMessage(tr("Asking the server for its endpoints..."));
    m_askedUrl = m_url->text();
    m_tlsQuestion.begin(m_askedUrl);
    m_fetcher->fetch(m_askedUrl, static_cast<int>(QlumSettings::connectTimeout.value()));
    sltUpdateControls();
}

void QlumServerPage::sltEndpointsFetched(unsigned int status, const QVector<QlumEndpoint>& endpoints)
{
    if (!OpcUa_IsGood(status)) {
        clearEndpoints();
        m_discovery->setOutcome(m_url->text(), false, qlumFailureReason(status));
        setMessage(
            tr("The endpoints of '%1' could not be read: %2. Check the URL, the network and whether the "
               "server runs.")
                .arg(m_url->text(), qlumStatusText(status)));
        sltUpdateControls();
        return;
    }
    const int proposed = qlumPreferredEndpoint(endpoints, m_askedUrl);
    m_endpoints->setEndpoints(endpoints, proposed);
    const int stored = m_endpoints->rowOf(m_stored.url, m_stored.securityPolicyUri, m_stored.securityMode);
    const int row = stored < 0 ? proposed : stored;
    selectEndpoint(row);
    setOutcome(!endpoints.isEmpty() && row >= 0,
               endpoints.isEmpty() ? tr("The server offers no endpoint.")
               : row < 0           ? tr("The server offers no endpoint that is supported here.")
                                   : tr("The server offers %n endpoint(s).", nullptr, endpoints.size()));
    addHostNote();
    sltUpdateControls();
}

void QlumServerPage::addHostNote()
{
    const QString named = qlumAuthority(QUrl(endpoint().url));
    const QString dialled = qlumAuthority(QUrl(dialledUrl()));
    if (hasEndpoint() && named != dialled)
        setMessage(m_message->text() + QLatin1Char(' ') +
                   tr("It names the host %1; %2, where it has answered, is dialled: see the page Advanced.")
                       .arg(qlumCutText(named), qlumCutText(dialled)));
}

// Those of another server, or of another time, would be taken for this one's.
void QlumServerPage::clearEndpoints()
{
    const bool isStored = !m_askedUrl.isEmpty() && m_askedUrl == m_stored.url;
    m_askedUrl.clear();
    m_endpoints->setEndpoints(isStored ? QVector<QlumEndpoint>{m_stored} : QVector<QlumEndpoint>());
    if (isStored)
        selectEndpoint(0);
}

bool QlumServerPage::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize && m_endpointView->currentIndex().isValid())
        QMetaObject::invokeMethod(
            m_endpointView, [view = m_endpointView] { view->scrollTo(view->currentIndex()); },
            Qt::QueuedConnection);
    return QWidget::eventFilter(watched, event);
}

void QlumServerPage::sltCertificateRefused(unsigned int status, const QByteArray& certificate)
{
    m_tlsQuestion.setServerName(QUrl(m_url->text()).host());
    m_tlsQuestion.raise({status, certificate});
}

void QlumServerPage::sltCertificateTrusted()
{
    if (!m_fetcher->isBusy())
        sltFetchEndpoints();
}

void QlumServerPage::selectEndpoint(int row)
{
    const QModelIndex index = m_sorted->mapFromSource(m_endpoints->index(row, 0));
    if (index.isValid())
        m_endpointView->setCurrentIndex(index);
}

int QlumServerPage::currentRow() const
{
    const QModelIndex index = m_endpointView->currentIndex();
    return index.isValid() ? m_sorted->mapToSource(index).row() : -1;
}

void QlumServerPage::sltUpdateControls()
{
    const bool busy = m_fetcher->isBusy();
    m_fetch->setText(busy ? tr("Ca&ncel") : tr("&Get Endpoints"));
    m_fetch->setEnabled(busy || isUrlUsable());
    m_urlHint->setVisible(!isUrlUsable() && url().contains(QLatin1String("://")));
    m_progress->setVisible(busy);
    m_url->setReadOnly(busy);
    m_message->setVisible(!m_message->text().isEmpty());
    emit changed();
}

void QlumServerPage::setMessage(const QString& text)
{
    m_message->setText(text);
    m_message->setVisible(!text.isEmpty());
}

void QlumServerPage::setOutcome(bool isGood, const QString& text)
{
    setMessage(text);
    m_discovery->setOutcome(m_askedUrl, isGood, text);
}

// ---- what it has come to

QString QlumServerPage::url() const
{
    return qlumCompleteUrl(m_url->text());
}

bool QlumServerPage::isUrlUsable() const
{
    return qlumIsUsableUrl(url());
}

bool QlumServerPage::isBusy() const
{
    return m_fetcher->isBusy();
}

QlumEndpoint QlumServerPage::endpoint() const
{
    if (const int row = currentRow(); row >= 0)
        return m_endpoints->rowAt(row);
    QlumEndpoint endpoint = m_stored;
    if (endpoint.url.isEmpty())
        endpoint.url = url();
    return endpoint;
}

QString QlumServerPage::dialledUrl() const
{
    const auto& rows = m_endpoints->rows();
    return url() == m_askedUrl ? qlumDialledUrl({rows.begin(), rows.end()}, endpoint().url, m_askedUrl)
                               : url();
}
