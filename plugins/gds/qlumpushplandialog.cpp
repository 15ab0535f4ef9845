#include <plugins/gds/qlumpushplandialog.h>

#include <uawidgets/qlumformrow.h>

#include <QByteArray>
#include <QCheckBox>
#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSaveFile>
#include <QVBoxLayout>

QString qlumPushPlanText(const QlumPushPlan& plan)
{
    QStringList lines{plan.title, QString()};
    int number = 0;
    for (const QString& step : plan.steps)
        lines.append(QStringLiteral("%1. %2").arg(++number).arg(step));
    if (!plan.warnings.isEmpty() || !plan.danger.isEmpty())
        lines.append(QString());
    for (const QString& warning : plan.warnings)
        lines.append(QlumPushPlanDialog::tr("Note: %1").arg(warning));
    if (!plan.danger.isEmpty())
        lines.append(QlumPushPlanDialog::tr("Warning: %1").arg(plan.danger));
    return lines.join(QLatin1Char('\n'));
}

QString qlumSavePushText(QWidget* parent, const QString& title, const QString& name, const QString& text)
{
    const QString path = QFileDialog::getSaveFileName(parent, title, QDir::home().filePath(name),
                                                      QlumPushPlanDialog::tr("Texts (*.txt);;All files (*)"));
    if (path.isEmpty())
        return {};
    QSaveFile file(path);
    const QByteArray bytes = text.toUtf8();
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return {};
    return QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), file.errorString());
}

QlumPushPlanDialog::QlumPushPlanDialog(const QlumPushPlan& plan, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("PushPlanDialog"), parent)
{
    setObjectName(QStringLiteral("pushPlanDialog"));
    setWindowTitle(tr("Send to the Server?"));
    auto* text = new QPlainTextEdit(qlumPushPlanText(plan));
    text->setReadOnly(true);
    text->setMinimumSize(480, 200);
    qlumDescribeField(text, {QStringLiteral("pushPlan"), tr("What will be sent"), {}, {}});
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("This will be sent to the server:")));
    layout->addWidget(text, 1);
    makeButtons(plan, layout);
}

void QlumPushPlanDialog::makeButtons(const QlumPushPlan& plan, QVBoxLayout* layout)
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    QPushButton* const send = buttons->addButton(tr("&Send"), QDialogButtonBox::AcceptRole);
    QPushButton* const copy = buttons->addButton(tr("C&opy"), QDialogButtonBox::ActionRole);
    QPushButton* const keep = buttons->addButton(tr("Sa&ve..."), QDialogButtonBox::ActionRole);
    send->setObjectName(QStringLiteral("pushPlanSend"));
    copy->setObjectName(QStringLiteral("pushPlanCopy"));
    keep->setObjectName(QStringLiteral("pushPlanSave"));
    if (!plan.danger.isEmpty()) {
        auto* agreed = new QCheckBox(tr("I have read the warning and &want this"));
        qlumDescribeField(
            agreed, {QStringLiteral("pushPlanAgreed"), tr("I have read the warning and want this"), {}, {}});
        layout->addWidget(agreed);
        send->setEnabled(false);
        connect(agreed, &QCheckBox::toggled, send, &QPushButton::setEnabled);
    }
    layout->addWidget(buttons);
    const QString text = qlumPushPlanText(plan);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(
        copy, &QPushButton::clicked, this, [text] { QGuiApplication::clipboard()->setText(text); });
    connect(keep, &QPushButton::clicked, this, [this, text] { save(text); });
}

void QlumPushPlanDialog::save(const QString& text)
{
    const QPointer<QlumPushPlanDialog> stillThere = this;
    const QString fault = qlumSavePushText(this, tr("Save Plan"), QStringLiteral("plan.txt"), text);
    if (!stillThere || fault.isEmpty())
        return;
    auto* told = new QLabel(tr("Not written: %1").arg(fault));
    told->setTextFormat(Qt::PlainText);
    told->setWordWrap(true);
    layout()->addWidget(told);
}
