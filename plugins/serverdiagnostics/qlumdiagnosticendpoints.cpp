#include <plugins/serverdiagnostics/qlumdiagnosticendpoints.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <plugins/serverdiagnostics/qlumdiagnosticmodel.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumemptytext.h>

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLayout>
#include <QListWidget>
#include <QListWidgetItem>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

namespace {
constexpr OpcUa_UInt32 mostDescriptions = 1000; // a server may send any number

QString entry(const QString& name, const QString& more)
{
    return QlumDiagnosticEndpoints::tr("%1 (%2)").arg(qlumDiagnosticName(name), qlumDiagnosticName(more));
}

QString titleOf(const OpcUa_ApplicationDescription& server)
{
    return entry(toQString(UaLocalizedText(server.ApplicationName).text()),
                 toQString(UaString(server.ApplicationUri)));
}

QString titleOf(const OpcUa_EndpointDescription& endpoint)
{
    const QString mode = qlumDiagnosticMode(endpoint.SecurityMode);
    const QString policy = qlumDiagnosticPolicy(toQString(UaString(endpoint.SecurityPolicyUri)));
    return entry(toQString(UaString(endpoint.EndpointUrl)),
                 policy == mode ? mode : QStringLiteral("%1, %2").arg(policy, mode));
}

template <typename Descriptions>
std::vector<QlumDiagnosticText> textsOf(const Descriptions& descriptions, const OpcUa_EncodeableType& type)
{
    std::vector<QlumDiagnosticText> texts;
    for (OpcUa_UInt32 i = 0; i < descriptions.length() && i < mostDescriptions; ++i) {
        texts.push_back(qlumStructureText(type, &descriptions[i]));
        texts.back().label = titleOf(descriptions[i]);
    }
    return texts;
}
} // namespace

QlumDiagnosticEndpoints::QlumDiagnosticEndpoints(QlumViewState& state, QWidget* parent)
    : QWidget(parent), m_panel(new QlumDiagnosticPanel({QStringLiteral("endpointDescription"),
                                                        QString(),
                                                        tr("Description"),
                                                        {tr("Parameter"), tr("Value")}},
                                                       state))
{
    new QlumEmptyText(m_panel->view(), tr("Select a server or an endpoint to see what is said of it."));
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setObjectName(QStringLiteral("endpointSplitter"));
    splitter->addWidget(makeLists());
    splitter->addWidget(m_panel);
    state.keep(splitter, QStringLiteral("endpoints"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(makeHead());
    layout->addWidget(splitter, 1);
}

QLayout* QlumDiagnosticEndpoints::makeHead()
{
    auto* heading = new QLabel(tr("Select FindServers or GetEndpoints result:"));
    heading->setWordWrap(true);
    m_refresh = new QPushButton(tr("Ask &Again"));
    m_refresh->setObjectName(QStringLiteral("endpointsRefresh"));
    m_refresh->setToolTip(tr("Ask the server for its description and its endpoints again"));
    m_refresh->setWhatsThis(m_refresh->toolTip());
    connect(m_refresh, &QPushButton::clicked, this, &QlumDiagnosticEndpoints::refreshClicked);
    m_url = new QLabel;
    m_url->setObjectName(QStringLiteral("endpointsUrl"));
    m_url->setTextFormat(Qt::PlainText);
    m_url->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_url->setWordWrap(true);
    m_reading = new QLabel(tr("reading..."));
    m_reading->setObjectName(QStringLiteral("endpointsReading"));
    m_reading->hide();
    auto* bar = new QHBoxLayout;
    bar->addWidget(heading, 1);
    bar->addWidget(m_reading);
    bar->addWidget(m_refresh);
    auto* layout = new QVBoxLayout;
    layout->setContentsMargins(4, 4, 4, 0);
    layout->addLayout(bar);
    layout->addWidget(m_url);
    return layout;
}

QWidget* QlumDiagnosticEndpoints::makeLists()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(4, 4, 0, 4);
    layout->addWidget(
        makeList(QStringLiteral("findServers"), tr("FindServers Response"), m_servers, m_endpoints), 1);
    layout->addWidget(
        makeList(QStringLiteral("getEndpoints"), tr("GetEndpoints Response"), m_endpoints, m_servers), 2);
    return page;
}

QWidget* QlumDiagnosticEndpoints::makeList(const QString& name, const QString& title, Answer& answer,
                                           Answer& other)
{
    auto* group = new QGroupBox(title);
    answer.list = new QListWidget;
    answer.list->setObjectName(name);
    answer.list->setAccessibleName(title);
    answer.note = new QLabel;
    answer.note->setObjectName(name + QStringLiteral("Note"));
    answer.note->setTextFormat(Qt::PlainText);
    answer.note->setWordWrap(true);
    answer.note->hide();
    connect(answer.list, &QListWidget::currentRowChanged, this, [this, &answer, &other](int row) {
        if (row < 0)
            return;
        const QSignalBlocker quiet(other.list);
        other.list->setCurrentRow(-1);
        select(answer);
    });
    auto* layout = new QVBoxLayout(group);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(answer.note);
    layout->addWidget(answer.list);
    return group;
}

void QlumDiagnosticEndpoints::select(const Answer& answer)
{
    const auto row = static_cast<std::size_t>(answer.list->currentRow());
    m_panel->model()->setTree(row < answer.descriptions.size() ? answer.descriptions[row]
                                                               : QlumDiagnosticText());
    m_panel->view()->expandToDepth(1);
}

void QlumDiagnosticEndpoints::show(Answer& answer, const UaStatus& status)
{
    const QListWidgetItem* const current = answer.list->currentItem();
    const QString selected = current ? current->text() : QString();
    const int place = answer.list->currentRow();
    const QSignalBlocker quiet(answer.list);
    answer.list->clear();
    for (const QlumDiagnosticText& description : answer.descriptions)
        answer.list->addItem(description.label);
    for (auto* const item : answer.list->findItems(selected, Qt::MatchExactly))
        if (!answer.list->currentItem() || answer.list->row(item) == place)
            answer.list->setCurrentItem(item);
    answer.note->setText(status.isBad() ? tr("The server did not answer: %1").arg(qlumResultInWords(status))
                                        : tr("The answer is empty."));
    answer.note->setVisible(status.isBad() || answer.descriptions.empty());
}

void QlumDiagnosticEndpoints::take(const QlumEndpointReading& reading)
{
    m_url->setText(reading.url);
    m_servers.descriptions = textsOf(reading.servers, OpcUa_ApplicationDescription_EncodeableType);
    m_endpoints.descriptions = textsOf(reading.endpoints, OpcUa_EndpointDescription_EncodeableType);
    show(m_servers, reading.serversStatus);
    show(m_endpoints, reading.endpointsStatus);
    if (m_servers.list->currentRow() >= 0)
        select(m_servers);
    else if (m_endpoints.list->currentRow() >= 0)
        select(m_endpoints);
    else
        m_panel->model()->setTree({});
}

void QlumDiagnosticEndpoints::setReading(bool isReading)
{
    m_reading->setVisible(isReading);
}

void QlumDiagnosticEndpoints::setOnline(bool isOnline)
{
    m_refresh->setEnabled(isOnline);
}

void QlumDiagnosticEndpoints::clear()
{
    for (Answer* const answer : {&m_servers, &m_endpoints}) {
        answer->descriptions.clear();
        answer->list->clear();
        answer->note->hide();
    }
    m_url->clear();
    m_panel->model()->setTree({});
}

QString QlumDiagnosticEndpoints::toText() const
{
    QlumDiagnosticModel all({tr("Parameter"), tr("Value")});
    QlumDiagnosticText tree;
    for (const auto& [answer, title] : {std::pair(&m_servers, tr("FindServers Response")),
                                        std::pair(&m_endpoints, tr("GetEndpoints Response"))}) {
        QlumDiagnosticText part{
            title, answer->note->isHidden() ? QString() : answer->note->text(), false, {}, {}};
        for (QlumDiagnosticText description : answer->descriptions) {
            description.text.clear();
            part.parts.push_back(std::move(description));
        }
        tree.parts.push_back(std::move(part));
    }
    all.setTree(tree);
    return all.toText();
}
