#include <plugins/gds/qlumpushlistpage.h>

#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatestore.h>
#include <plugins/gds/qlumpushlisttable.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/qlumwrappingbar.h>

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSizePolicy>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr const char* partNames[] = {"pushTrusted", "pushTrustedCrls", "pushIssuers", "pushIssuerCrls"};

bool isCrlPart(QlumTrustPart part)
{
    return part == QlumTrustPart::TrustedCrls || part == QlumTrustPart::IssuerCrls;
}
QString storeFolder(QlumTrustPart part)
{
    switch (part) {
    case QlumTrustPart::Trusted:
        return QlumCertificateStore::trustedCertificates();
    case QlumTrustPart::TrustedCrls:
        return QlumCertificateStore::trustedRevocationLists();
    case QlumTrustPart::Issuers:
        return QlumCertificateStore::issuerCertificates();
    case QlumTrustPart::IssuerCrls:
        break;
    }
    return QlumCertificateStore::issuerRevocationLists();
}
bool isIssuerPart(QlumTrustPart part)
{
    return part == QlumTrustPart::Issuers || part == QlumTrustPart::IssuerCrls;
}
} // namespace

QlumPushListPage::QlumPushListPage(QlumViewState& state, QWidget* parent)
    : QWidget(parent), m_group(new QComboBox), m_atOnce(new QCheckBox(tr("Send each change at &once"))),
      m_tabs(new QTabWidget), m_note(new QLabel)
{
    setObjectName(QStringLiteral("pushListPage"));
    m_tabs->setObjectName(QStringLiteral("pushParts"));
    m_tabs->setAccessibleName(tr("Parts of the trust list"));
    makeTables(state);
    m_note->setObjectName(QStringLiteral("pushListNote"));
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(makeBar());
    layout->addWidget(m_note);
    layout->addWidget(m_tabs, 1);
    layout->addWidget(makeButtons());
    connect(m_tabs, &QTabWidget::currentChanged, this, &QlumPushListPage::updateButtons);
    clear();
}

// ---- widgets

void QlumPushListPage::makeTables(QlumViewState& state)
{
    for (const QlumTrustPart part : qlumTrustParts) {
        auto* table = new QlumPushListTable(
            {QLatin1String(partNames[static_cast<std::size_t>(part)]), qlumTrustPartName(part),
             tr("Nothing here. Read the list of a connected server, or drop files or certificates "
                "to add them."),
             isCrlPart(part)                  ? QlumPushListTable::RevocationLists
             : part == QlumTrustPart::Issuers ? QlumPushListTable::Issuers
                                              : QlumPushListTable::Trusted},
            state);
        m_tables.at(static_cast<std::size_t>(part)) = table;
        m_tabs->addTab(table, qlumTrustPartName(part));
        connect(table, &QlumPushListTable::currentChanged, this, &QlumPushListPage::updateButtons);
        connect(table, &QlumPushListTable::filesDropped, this, &QlumPushListPage::addFiles);
        connect(table, &QlumPushListTable::derDropped, this, &QlumPushListPage::addContent);
        connect(table, &QlumPushListTable::opened, this, [this] { m_show->click(); });
    }
}

QPushButton* QlumPushListPage::button(const QString& name, const QString& text, const QString& toolTip)
{
    auto* made = new QPushButton(text);
    made->setAutoDefault(false);
    qlumDescribeField(made, {name, text, {}, toolTip});
    return made;
}

QWidget* QlumPushListPage::makeBar()
{
    auto* bar = new QlumWrappingBar;
    auto* label = new QLabel(tr("Certificate &group:"));
    qlumDescribeField(m_group,
                      {QStringLiteral("pushGroup"),
                       tr("Certificate &group:"),
                       tr("<b>Certificate Group</b><br>Whose trust list is shown. Write or undo the changes "
                          "before you choose another one."),
                       {}});
    qlumDescribeField(m_atOnce,
                      {QStringLiteral("pushAtOnce"), tr("Send each change at &once"),
                       tr("<b>Send Each Change at Once</b><br>Certificates are added and removed one by one, "
                          "and count at once. Otherwise changes are gathered here until the whole list is "
                          "written back, which is the only way for revocation lists."),
                       tr("Add and remove single certificates without writing the whole list")});
    m_read = button(QStringLiteral("pushRead"), tr("&Read"), tr("Read the trust list from the server"));
    connect(m_read, &QPushButton::clicked, this, &QlumPushListPage::readWanted);
    connect(m_group, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] {
        m_onServer.reset();
        m_edited = {};
        refresh();
        if (m_isReady)
            emit readWanted();
    });
    connect(m_atOnce, &QCheckBox::toggled, this, &QlumPushListPage::updateButtons);
    m_group->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_group->setMinimumContentsLength(12);
    m_group->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    bar->add(label, m_group);
    bar->add(m_read);
    bar->add(m_atOnce);
    return bar;
}

QWidget* QlumPushListPage::makeButtons()
{
    auto* bar = new QlumWrappingBar;
    m_add = button(QStringLiteral("pushAdd"), tr("&Add File..."),
                   tr("Add the certificates or the revocation list of a file to this part"));
    m_remove = button(QStringLiteral("pushRemove"), tr("Re&move"), tr("Remove what is selected"));
    m_show = button(QStringLiteral("pushShow"), tr("Show..."), tr("Show the certificate that is selected"));
    m_undo = button(QStringLiteral("pushUndo"), tr("&Undo Changes"),
                    tr("Show the list as it was read from the server"));
    m_write = button(QStringLiteral("pushWrite"), tr("&Write Back..."),
                     tr("Replace the trust list of the server by this one"));
    m_fromStore = button(QStringLiteral("pushFromStore"), tr("Add From S&tore..."),
                         tr("Add what this client's own store has"));
    m_manager =
        button(QStringLiteral("pushManager"), tr("&Certificate Manager..."),
               tr("Open the certificates of this client beside this view, to drag some onto the list"));
    connect(
        m_add, &QPushButton::clicked, this, [this] { addFrom(QString()); });
    connect(m_fromStore, &QPushButton::clicked, this, [this] { addFrom(storeFolder(shownPart())); });
    connect(m_manager, &QPushButton::clicked, this, &QlumPushListPage::managerWanted);
    connect(m_remove, &QPushButton::clicked, this, &QlumPushListPage::sltRemove);
    connect(m_show, &QPushButton::clicked, this, [this] { emit showWanted(table(shownPart())->current()); });
    connect(m_undo, &QPushButton::clicked, this, &QlumPushListPage::sltUndo);
    connect(m_write, &QPushButton::clicked, this, &QlumPushListPage::writeWanted);
    for (QPushButton* const one : {m_add, m_fromStore, m_manager, m_remove, m_show, m_undo, m_write})
        bar->add(one);
    return bar;
}

// ---- what is shown

void QlumPushListPage::setServer(const QlumPushServer& server)
{
    const UaNodeId before = group();
    {
        const QSignalBlocker blocker(m_group);
        m_group->clear();
        m_server = server;
        for (const QlumPushGroup& one : server.groups)
            if (!one.trustList.isNull())
                m_group->addItem(one.name, toQString(one.id.toXmlString()));
        const int index = m_group->findData(toQString(before.toXmlString()));
        m_group->setCurrentIndex(index < 0 && m_group->count() > 0 ? 0 : index);
    }
    updateButtons();
}

UaNodeId QlumPushListPage::group() const
{
    const QString wanted = m_group->currentData().toString();
    for (const QlumPushGroup& one : m_server.groups)
        if (toQString(one.id.toXmlString()) == wanted)
            return one.id;
    return UaNodeId();
}

void QlumPushListPage::clear()
{
    const QSignalBlocker blocker(m_group);
    m_group->clear();
    m_server = {};
    m_onServer.reset();
    m_edited = {};
    m_lastUpdate = UaDateTime();
    refresh();
}

void QlumPushListPage::setReady(bool isReady)
{
    m_isReady = isReady;
    updateButtons();
}

void QlumPushListPage::setRead(const QlumTrustList& list, const UaDateTime& lastUpdate)
{
    QString since;
    if (m_onServer)
        if (const QStringList changes = qlumTrustListChanges(*m_onServer, list); !changes.isEmpty())
            since = tr("Since it was read before: %1.").arg(changes.join(QStringLiteral("; ")));
    QlumTrustList edited = list;
    if (isEdited())
        qlumRepeatTrustListChanges(*m_onServer, m_edited, edited);
    m_onServer = list;
    m_edited = edited;
    m_lastUpdate = lastUpdate;
    refresh();
    if (!since.isEmpty())
        m_note->setText(since + QLatin1Char(' ') + m_note->text());
}

void QlumPushListPage::setWritten(const QlumTrustList& list, const UaDateTime& lastUpdate)
{
    m_onServer = list;
    m_edited = list;
    m_lastUpdate = lastUpdate;
    refresh();
}

void QlumPushListPage::changed(QlumTrustPart part, const UaByteString& der, bool isAdded,
                               const UaDateTime& lastUpdate)
{
    if (!m_onServer)
        return;
    m_lastUpdate = lastUpdate;
    for (QlumTrustList* const list : {&*m_onServer, &m_edited}) {
        std::erase((*list)[part], der);
        if (isAdded)
            (*list)[part].push_back(der);
    }
    refresh();
}

bool QlumPushListPage::isEdited() const
{
    return m_onServer && !qlumTrustListChanges(*m_onServer, m_edited).isEmpty();
}

void QlumPushListPage::refresh()
{
    const QlumTrustList empty;
    const QlumTrustList& read = m_onServer ? *m_onServer : empty;
    for (const QlumTrustPart part : qlumTrustParts) {
        table(part)->setRows(m_edited[part], read[part]);
        const QString name = qlumTrustPartName(part);
        m_tabs->setTabText(static_cast<int>(part),
                           m_onServer ? tr("%1 (%2)").arg(name).arg(table(part)->count()) : name);
    }
    QStringList notes;
    if (m_onServer && !m_lastUpdate.isNull())
        notes.append(tr("Changed on the server %1.").arg(qlumShowDateTime(m_lastUpdate.value())));
    if (m_onServer)
        if (const QStringList names = qlumIssuersWithoutCrl(m_edited); !names.isEmpty())
            notes.append(tr("No revocation list of %1: the server may refuse what it has signed.")
                             .arg(names.join(QStringLiteral(", "))));
    if (isEdited())
        notes.append(tr("Not written yet: %1.")
                         .arg(qlumTrustListChanges(*m_onServer, m_edited).join(QStringLiteral("; "))));
    m_note->setText(notes.join(QLatin1Char(' ')));
    updateButtons();
}

void QlumPushListPage::updateButtons()
{
    const QlumPushGroup* const shown = m_server.group(group());
    const bool canWrite = m_isReady && shown && shown->isWritable && m_onServer;
    const bool hasCurrent = !table(shownPart())->current().isEmpty();
    m_note->setVisible(!m_note->text().isEmpty());
    m_group->setEnabled(m_isReady && !isEdited()); // what was gathered belongs to the list that is shown
    m_read->setEnabled(m_isReady && shown);
    m_add->setEnabled(canWrite);
    m_fromStore->setEnabled(canWrite);
    m_remove->setEnabled(canWrite && hasCurrent);
    m_show->setEnabled(hasCurrent && !isCrlPart(shownPart()));
    m_undo->setEnabled(isEdited());
    m_write->setEnabled(canWrite && shown->has("CloseAndUpdate") && isEdited());
    m_atOnce->setEnabled(shown && shown->has("AddCertificate") && shown->has("RemoveCertificate"));
}

QlumTrustPart QlumPushListPage::shownPart() const
{
    return static_cast<QlumTrustPart>(std::max(m_tabs->currentIndex(), 0));
}

void QlumPushListPage::showPart(QlumTrustPart part)
{
    m_tabs->setCurrentIndex(static_cast<int>(part));
}

void QlumPushListPage::setAtOnce(bool isAtOnce)
{
    m_atOnce->setChecked(isAtOnce);
}

// ---- changing

void QlumPushListPage::addFrom(const QString& folder)
{
    const QPointer<QlumPushListPage> stillThere = this;
    const QStringList paths = QFileDialog::getOpenFileNames(
        this, tr("Add to the Trust List"), folder,
        tr("Certificates and revocation lists (*.der *.pem *.crt *.cer *.crl);;All files (*)"));
    if (stillThere && !paths.isEmpty())
        addFiles(paths);
}

bool QlumPushListPage::canAdd()
{
    if (!m_add->isEnabled())
        emit told(tr("Nothing was added."),
                  m_onServer ? tr("The list cannot be changed at the moment, or not by this user.")
                             : tr("The trust list has to be read before."));
    return m_add->isEnabled();
}

void QlumPushListPage::addContent(const QlumTrustFile& content)
{
    if (!canAdd())
        return;
    add(content);
    refresh();
}

void QlumPushListPage::addFiles(const QStringList& paths)
{
    if (!canAdd())
        return;
    QlumTrustFile all;
    for (const QString& path : paths) {
        QlumTrustFile file = qlumReadTrustFile(path);
        if (file.certificates.empty() && file.revocationList.isEmpty())
            emit told(tr("'%1' was not added.").arg(path),
                      tr("It holds neither certificates nor a revocation list."));
        if (!file.revocationList.isEmpty())
            add({{}, file.revocationList});
        all.certificates.insert(all.certificates.end(), file.certificates.begin(), file.certificates.end());
    }
    add(all);
    refresh();
}

// One certificate can be sent at once; several are gathered, and go with the list.
void QlumPushListPage::add(const QlumTrustFile& file)
{
    const bool isIssuers = isIssuerPart(shownPart());
    const bool isAtOnce = m_atOnce->isChecked() && m_atOnce->isEnabled() && file.certificates.size() == 1;
    bool isAnyNew = false;
    const auto put = [this, &isAnyNew, isAtOnce, isIssuers](QlumTrustPart part, const UaByteString& der) {
        if (m_edited.contains(part, der))
            return;
        isAnyNew = true;
        if (isAtOnce && !isCrlPart(part))
            emit addWanted(der, !isIssuers);
        else
            m_edited[part].push_back(der);
    };
    for (const UaByteString& der : file.certificates)
        put(isIssuers ? QlumTrustPart::Issuers : QlumTrustPart::Trusted, der);
    if (!file.revocationList.isEmpty())
        put(isIssuers ? QlumTrustPart::IssuerCrls : QlumTrustPart::TrustedCrls, file.revocationList);
    if (!isAnyNew && !(file.certificates.empty() && file.revocationList.isEmpty()))
        emit told(tr("Nothing was added."), tr("It is in the list already."));
}

void QlumPushListPage::sltRemove()
{
    const QlumTrustPart part = shownPart();
    const UaByteString der = table(part)->current();
    const bool isOnServer = m_onServer && m_onServer->contains(part, der);
    if (m_atOnce->isChecked() && m_atOnce->isEnabled() && isOnServer && !isCrlPart(part))
        return emit removeWanted(der, part == QlumTrustPart::Trusted);
    std::erase(m_edited[part], der);
    refresh();
}

void QlumPushListPage::sltUndo()
{
    if (m_onServer)
        m_edited = *m_onServer;
    refresh();
}
