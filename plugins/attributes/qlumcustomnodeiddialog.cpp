#include <plugins/attributes/qlumcustomnodeiddialog.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtext.h>

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QString>
#include <QWidget>

#include <algorithm>

QlumCustomNodeIdDialog::QlumCustomNodeIdDialog(QlumApplicationInterface& application, unsigned int serverId,
                                               QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumCustomNodeIdDialog"), parent), m_server(new QComboBox),
      m_nodeId(new QLineEdit), m_message(new QLabel),
      m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel))
{
    setWindowTitle(tr("Set Custom NodeId"));
    m_server->setObjectName(QStringLiteral("server"));
    m_server->setAccessibleName(tr("Server"));
    for (const unsigned int id : application.projectServerIds())
        m_server->addItem(application.serverName(id), id);
    m_server->setCurrentIndex(std::max(m_server->findData(serverId), 0));
    m_nodeId->setObjectName(QStringLiteral("nodeId"));
    m_nodeId->setAccessibleName(tr("Node id"));
    m_nodeId->setPlaceholderText(QStringLiteral("ns=2;s=Boiler1"));
    m_nodeId->setWhatsThis(tr("<b>Node id</b><br>Namespace index and identifier: i=2253, ns=2;s=Boiler1, "
                              "ns=3;g=72962b91-fa75-4ae6-8d28-b404dc7daf63 or ns=4;b=AQID."));
    m_message->setObjectName(QStringLiteral("message"));
    m_message->setTextFormat(Qt::PlainText);
    m_message->setWordWrap(true);

    auto* layout = new QFormLayout(this);
    layout->addRow(tr("&Server:"), m_server);
    layout->addRow(tr("&Node id:"), m_nodeId);
    layout->addRow(m_message);
    layout->addRow(m_buttons);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_nodeId, &QLineEdit::textChanged, this, &QlumCustomNodeIdDialog::sltCheck);
    resize(420, sizeHint().height());
    m_nodeId->setFocus();
    sltCheck();
}

unsigned int QlumCustomNodeIdDialog::serverId() const
{
    return m_server->currentIndex() < 0 ? qlumNoServer : m_server->currentData().toUInt();
}

UaNodeId QlumCustomNodeIdDialog::nodeId() const
{
    return UaNodeId::fromString(toUaString(m_nodeId->text().trimmed()).view());
}

void QlumCustomNodeIdDialog::sltCheck()
{
    const bool valid = !nodeId().isNull();
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(valid && m_server->count() > 0);
    if (m_server->count() == 0)
        m_message->setText(tr("There is no server in the project."));
    else if (valid || m_nodeId->text().isEmpty())
        m_message->clear();
    else
        m_message->setText(tr("This is no node id. Examples: i=2253, ns=2;s=Boiler1"));
}
