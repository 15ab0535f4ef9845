#include <plugins/performance/qlummeasuredarguments.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <uawidgets/editors/qlumargumentpanel.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumdefaultvalue.h>

#include <QDialogButtonBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <cstddef>

bool QlumCallCheck::hasInputs() const
{
    return std::any_of(
        inputs.begin(), inputs.end(), [](const QlumMethodArguments& of) { return !of.empty(); });
}

QlumMeasuredArgumentsDialog::QlumMeasuredArgumentsDialog(const QlumCallCheck& check, QWidget* parent)
    : QDialog(parent), QlumEditorStore(QStringLiteral("QlumMeasuredArgumentsDialog")), m_fault(new QLabel)
{
    setObjectName(QStringLiteral("measuredArgumentsDialog"));
    setWindowTitle(tr("Arguments"));
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    for (std::size_t i = 0; i < check.inputs.size(); ++i) {
        QlumMethodArguments inputs = check.inputs[i];
        if (inputs.empty()) {
            m_panels.push_back(nullptr);
            continue;
        }
        std::vector<UaVariant> values =
            i < check.plan.arguments.size() ? check.plan.arguments[i] : std::vector<UaVariant>();
        for (std::size_t at = 0; at < inputs.size(); ++at) {
            inputs[at].context.settings = this;
            inputs[at].context.browseNode = qlumNodeChoice(check.plan.serverId);
            if (at >= values.size())
                values.push_back(qlumDefaultValue(inputs[at].context));
        }
        auto* box =
            new QGroupBox(QString(check.plan.nodes[i].name).replace(QLatin1Char('&'), QLatin1String("&&")));
        auto* panel = new QlumArgumentPanel(QStringLiteral("measuredArguments%1").arg(i));
        panel->setArguments(inputs, values, false);
        auto* layout = new QVBoxLayout(box);
        layout->addWidget(panel);
        column->addWidget(box);
        m_panels.push_back(panel);
    }
    column->addStretch(1);
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(page);
    m_fault->setObjectName(QStringLiteral("measuredArgumentsFault"));
    m_fault->setTextFormat(Qt::PlainText);
    m_fault->setWordWrap(true);
    m_fault->hide();
    auto* label = new QLabel(tr("Each call of the run has these arguments."));
    label->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("&Next..."));
    connect(buttons, &QDialogButtonBox::accepted, this, &QlumMeasuredArgumentsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QlumMeasuredArgumentsDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(area, 1);
    layout->addWidget(m_fault);
    layout->addWidget(buttons);
    const int em = fontMetrics().averageCharWidth();
    resize(em * 70, em * 55);
}

std::vector<std::vector<UaVariant>> QlumMeasuredArgumentsDialog::values() const
{
    std::vector<std::vector<UaVariant>> values;
    for (const QlumArgumentPanel* panel : m_panels)
        values.push_back(panel ? panel->values() : std::vector<UaVariant>());
    return values;
}

void QlumMeasuredArgumentsDialog::accept()
{
    for (QlumArgumentPanel* panel : m_panels)
        for (int i = 0; panel && i < panel->count(); ++i)
            if (const QString fault = panel->fault(i); !fault.isEmpty()) {
                m_fault->setText(
                    tr("%1: %2").arg(qlumCutText(qlumSingleLine(panel->argument(i).name)), fault));
                m_fault->show();
                return panel->focusArgument(i);
            }
    QDialog::accept();
}
