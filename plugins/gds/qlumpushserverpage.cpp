#include <plugins/gds/qlumpushserverpage.h>

#include <app/api/qlumtext.h>
#include <uabase/values/uadatetime.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemView>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QObject>
#include <QStringList>
#include <QTableView>
#include <QVBoxLayout>

#include <optional>

namespace {
enum GroupColumn { GroupName, GroupTypes, GroupChanged, GroupMethods };

QString pushModeText(OpcUa_MessageSecurityMode mode)
{
    switch (mode) {
    case OpcUa_MessageSecurityMode_SignAndEncrypt:
        return QlumPushServerPage::tr("signed and encrypted");
    case OpcUa_MessageSecurityMode_Sign:
        return QlumPushServerPage::tr("signed, but not encrypted: not enough to configure a server");
    case OpcUa_MessageSecurityMode_None:
        return QlumPushServerPage::tr("not secured: not enough to configure a server");
    default:
        return QlumPushServerPage::tr("not known");
    }
}

QString pushBoolText(const std::optional<bool>& value)
{
    if (!value)
        return QlumPushServerPage::tr("the server does not tell");
    return *value ? QlumPushServerPage::tr("yes") : QlumPushServerPage::tr("no");
}

QString listOr(const QStringList& list, const QString& nothing)
{
    return list.isEmpty() ? nothing : list.join(QStringLiteral(", "));
}

QString changedText(const UaDateTime& time)
{
    return time.isNull() ? QlumPushServerPage::tr("the server does not tell")
                         : qlumShowDateTime(time.value());
}
} // namespace

// ---- groups

QlumPushGroupModel::QlumPushGroupModel(QObject* parent)
    : QlumTableModel({tr("Certificate group"), tr("Certificate types"), tr("Trust list changed"),
                      tr("Methods of the trust list")},
                     parent)
{
}

void QlumPushGroupModel::setGroups(const std::vector<QlumPushGroup>& groups)
{
    reset({groups.begin(), groups.end()});
}

QVariant QlumPushGroupModel::cell(const QlumPushGroup& group, int column, int role) const
{
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    switch (column) {
    case GroupName:
        return group.name;
    case GroupTypes: {
        QStringList names;
        for (const QlumPushType& type : group.types)
            names.append(type.name);
        return listOr(names, tr("none is told"));
    }
    case GroupChanged:
        return changedText(group.lastUpdate);
    case GroupMethods:
        return listOr(group.methods.keys(), tr("it has no trust list"));
    default:
        return {};
    }
}

// ---- the page

QlumPushServerPage::QlumPushServerPage(QlumViewState& state, QWidget* parent)
    : QWidget(parent), m_groups(new QlumPushGroupModel(this)), m_view(new QTableView)
{
    setObjectName(QStringLiteral("pushServerPage"));
    auto* form = new QFormLayout;
    add(form, QStringLiteral("pushConnection"), tr("Connection:"));
    add(form, QStringLiteral("pushCapabilities"), tr("Server capabilities:"));
    add(form, QStringLiteral("pushKeyFormats"), tr("Private key formats:"));
    add(form, QStringLiteral("pushListSize"), tr("Maximum size of a trust list:"));
    add(form, QStringLiteral("pushMulticast"), tr("Multicast DNS:"));
    add(form, QStringLiteral("pushSecureElement"), tr("Secure element for keys:"));
    add(form, QStringLiteral("pushOffered"), tr("Methods:"));
    add(form, QStringLiteral("pushMissing"), tr("Missing:"));
    m_view->setObjectName(QStringLiteral("pushGroups"));
    m_view->setAccessibleName(tr("Certificate groups"));
    m_view->setModel(m_groups);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->verticalHeader()->hide();
    m_view->setTabKeyNavigation(false);
    m_view->horizontalHeader()->setStretchLastSection(true);
    m_view->horizontalHeader()->setDefaultSectionSize(fontMetrics().averageCharWidth() * 30);
    qlumMakeTable(m_view, {tr("The certificate groups of a connected server appear here."),
                           QStringLiteral("certificategroups"), &state, QStringLiteral("groups")});
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_view, 1);
    clear();
}

void QlumPushServerPage::add(QFormLayout* form, const QString& name, const QString& label)
{
    auto* value = new QLabel;
    value->setTextFormat(Qt::PlainText);
    value->setWordWrap(true);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    qlumAddRow(form, value, {name, label, {}, {}});
    m_facts.push_back(value);
}

void QlumPushServerPage::set(Fact fact, const QString& text)
{
    m_facts.at(static_cast<std::size_t>(fact))->setText(text);
}

void QlumPushServerPage::setServer(const QlumPushServer& server)
{
    const QString untold = tr("the server tells of none");
    set(Connection, pushModeText(server.mode));
    set(Capabilities, listOr(server.capabilities, untold));
    set(Formats, listOr(server.keyFormats, tr("none: the server takes no private keys")));
    set(Multicast, pushBoolText(server.multicastDns));
    set(SecureElement, pushBoolText(server.hasSecureElement));
    set(Offered, listOr(server.methods.keys(), untold));
    // servers also hide what a user may not do
    set(Missing, server.missing.isEmpty() ? tr("nothing")
                                          : tr("%1; an administrator on an encrypted connection may see more")
                                                .arg(server.missing.join(QStringLiteral(", "))));
    if (!server.mostListBytes)
        set(ListSize, tr("the server does not tell"));
    else
        set(ListSize, *server.mostListBytes == 0
                          ? tr("no limit")
                          : tr("%1 bytes").arg(QLocale::system().toString(*server.mostListBytes)));
    m_groups->setGroups(server.groups);
}

void QlumPushServerPage::clear()
{
    for (QLabel* const fact : m_facts)
        fact->setText(QStringLiteral("-"));
    m_groups->setGroups({});
}

QString QlumPushServerPage::text() const
{
    QStringList lines;
    for (const QLabel* const fact : m_facts)
        lines.append(fact->accessibleName() + QStringLiteral(": ") + fact->text());
    return lines.join(QLatin1Char('\n'));
}
