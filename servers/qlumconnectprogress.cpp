#include <servers/qlumconnectprogress.h>

#include <servers/qlumconnectdialogs.h>

#include <QPushButton>
#include <QTimer>
#include <QWidget>

namespace {
constexpr int moment = 500; // ms
}

QlumConnectProgress::QlumConnectProgress(QlumConnectFlow& flow, QObject* parent)
    : QObject(parent), m_flow(flow)
{
    connect(&flow, &QlumConnectFlow::stepChanged, this, &QlumConnectProgress::show);
    connect(&flow, &QlumConnectFlow::finished, this, &QlumConnectProgress::hide);
}

QlumConnectProgress::~QlumConnectProgress()
{
    delete m_dialog;
}

void QlumConnectProgress::show(QlumConnectFlow::Step step, bool isAsking)
{
    if (isAsking)
        return hide();
    if (!isWaiting(step))
        m_waitCursor.reset();
    else if (!m_waitCursor)
        m_waitCursor.emplace();
    if (!m_dialog)
        makeDialog();
    m_label->setText(tr("Connecting to '%1'...").arg(m_flow.url()) + QLatin1Char('\n') + textOf(step));
    const bool mayCancel = step != QlumConnectFlow::Step::UserChange && step != QlumConnectFlow::Step::Ending;
    for (QPushButton* button : m_dialog->findChildren<QPushButton*>())
        button->setEnabled(mayCancel);
}

void QlumConnectProgress::makeDialog()
{
    m_dialog = new QProgressDialog(QString(), tr("Cancel"), 0, 0, QlumConnectDialogs::parentWindow());
    m_dialog->setObjectName(QStringLiteral("connectProgress"));
    m_dialog->setWindowTitle(tr("Connecting"));
    m_dialog->setWindowModality(Qt::WindowModal);
    m_label = new QLabel;
    m_label->setObjectName(QStringLiteral("step"));
    m_label->setTextFormat(Qt::PlainText);
    m_dialog->setLabel(m_label);
    connect(m_dialog, &QProgressDialog::canceled, &m_flow, &QlumConnectFlow::cancel);
    QTimer::singleShot(moment, m_dialog, &QWidget::show);
}

// Later, for it may be its own button that has ended the flow.
void QlumConnectProgress::hide()
{
    m_waitCursor.reset();
    if (!m_dialog)
        return;
    m_dialog->disconnect(&m_flow);
    m_dialog->hide();
    m_dialog->deleteLater();
    m_dialog.clear();
}

bool QlumConnectProgress::isWaiting(QlumConnectFlow::Step step)
{
    using Step = QlumConnectFlow::Step;
    return step == Step::Endpoints || step == Step::Host || step == Step::User || step == Step::Session ||
           step == Step::UserChange;
}

QString QlumConnectProgress::textOf(QlumConnectFlow::Step step)
{
    using Step = QlumConnectFlow::Step;
    switch (step) {
    case Step::Endpoints:
        return tr("Asking the server for its endpoints");
    case Step::Endpoint:
        return tr("Choosing an endpoint");
    case Step::Host:
        return tr("Looking for the server's host");
    case Step::Policy:
        return tr("Checking the security policy");
    case Step::User:
        return tr("Finding out who is to log in");
    case Step::Certificate:
        return tr("Checking the server's certificate");
    case Step::Session:
        return tr("Opening the session");
    case Step::UserChange:
        return tr("Changing the user of the session");
    case Step::Ending:
        return tr("Cancelling");
    case Step::Idle:
        break;
    }
    return {};
}
