#include <plugins/events/qlumconditiondialog.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/events/qlumconditioncalls.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlummessagebar.h>

#include <QAbstractButton>
#include <QButtonGroup>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFrame>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <utility>

namespace {
constexpr int maximumChoices = 200; // of a server that offers more than anybody reads
constexpr int maximumPrompt = 4000;

UaStatus respond(QlumSessionServices* services, const UaNodeId& conditionId, int response)
{
    UaVariantArray arguments(1u);
    static_cast<void>(UaVariant(static_cast<OpcUa_Int32>(response)).copyTo(&arguments[0]));
    return qlumCallCondition(services, QlumConditionDialog::tr("Answering a condition"), conditionId,
                             OpcUaId_DialogConditionType_Respond, arguments);
}
} // namespace

QlumConditionDialog::QlumConditionDialog(unsigned int serverId, QlumApplicationInterface& application,
                                         QWidget* parent)
    : QlumBaseWidget(QStringLiteral("ConditionDialog"), parent), m_serverId(serverId),
      m_application(application), m_log(tr("Event Plugin"), serverId), m_messages(new QlumMessageBar(this)),
      m_prompt(new QLabel(this)), m_group(new QButtonGroup(this))
{
    setObjectName(QStringLiteral("conditionDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_prompt->setObjectName(QStringLiteral("prompt"));
    m_prompt->setTextFormat(Qt::PlainText);
    m_prompt->setWordWrap(true);
    auto* box = new QWidget(this);
    m_choices = new QVBoxLayout(box);
    m_choices->addStretch();
    auto* area = new QScrollArea(this);
    area->setObjectName(QStringLiteral("responses"));
    area->setAccessibleName(tr("Responses"));
    area->setWidget(box);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    m_respond = buttons->addButton(tr("&Respond"), QDialogButtonBox::ActionRole);
    m_respond->setObjectName(QStringLiteral("respond"));
    m_respond->setToolTip(tr("Send the chosen answer to the server"));
    m_respond->setDefault(true);
    m_respond->setEnabled(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_messages);
    layout->addWidget(m_prompt);
    layout->addWidget(area, 1);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 70, fontMetrics().height() * 14);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_respond, &QPushButton::clicked, this, &QlumConditionDialog::sltRespond);
    connect(m_group, QOverload<int>::of(&QButtonGroup::idClicked), m_respond,
            [this] { m_respond->setEnabled(true); });
}

void QlumConditionDialog::setCondition(const UaNodeId& conditionId, const QString& conditionName)
{
    m_conditionId = conditionId;
    setWindowTitle(tr("Condition Dialog - %1 - %2").arg(m_application.serverName(m_serverId), conditionName));
}

void QlumConditionDialog::setPrompt(const QString& prompt)
{
    m_prompt->setText(qlumCutText(prompt, maximumPrompt));
}

void QlumConditionDialog::setResponseOptionSet(const QStringList& texts)
{
    for (QAbstractButton* const button : m_group->buttons())
        delete button;
    for (int i = 0; i < texts.size() && i < maximumChoices; ++i) {
        // an ampersand of the server is no mnemonic
        QString label = qlumSingleLine(qlumCutText(texts.at(i)));
        auto* choice = new QRadioButton(label.replace(QLatin1Char('&'), QLatin1String("&&")), this);
        choice->setObjectName(QStringLiteral("response%1").arg(i));
        m_group->addButton(choice, i);
        m_choices->insertWidget(i, choice);
    }
    m_respond->setEnabled(response() >= 0);
}

void QlumConditionDialog::setDefaultResponse(int response)
{
    if (QAbstractButton* const choice = m_group->button(response)) {
        choice->setChecked(true);
        choice->setFocus();
    }
    m_respond->setEnabled(this->response() >= 0);
}

int QlumConditionDialog::response() const
{
    return m_group->checkedId();
}

void QlumConditionDialog::sltRespond()
{
    const int chosen = response();
    if (chosen < 0 || !m_caller)
        return;
    m_log.info(tr("Calling 'Respond' with response #%1 (%2)")
                   .arg(chosen)
                   .arg(m_group->checkedButton()->text().replace(QLatin1String("&&"), QLatin1String("&"))));
    m_respond->setEnabled(false);
    const QPointer<QlumConditionDialog> self(this);
    const QlumLog log = m_log;
    const UaNodeId conditionId = m_conditionId;
    m_caller(tr("Answering a condition"), [self, log, conditionId, chosen](QlumSessionServices* services) {
        const UaStatus status = respond(services, conditionId, chosen);
        const QString text = qlumResultText(status);
        const bool isGood = status.isGood();
        if (isGood)
            log.info(tr("Call succeeded"));
        else
            log.error(tr("Call failed with error %1").arg(text));
        return [self, text, isGood] {
            if (self)
                self->responded(text, isGood);
        };
    });
}

void QlumConditionDialog::responded(const QString& status, bool isGood)
{
    if (isGood) {
        accept();
        return;
    }
    m_respond->setEnabled(true);
    m_messages->tell({QlumMessage::Error,
                      QStringLiteral("respond"),
                      tr("The answer was not taken."),
                      qlumStatusWords(status),
                      {},
                      {}});
}
