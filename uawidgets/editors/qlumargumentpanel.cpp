#include <uawidgets/editors/qlumargumentpanel.h>

#include <app/api/qlumdisplaytext.h>
#include <uawidgets/editors/qlumvaluepage.h>
#include <uawidgets/editors/qlumvaluewidget.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QFont>
#include <QHBoxLayout>
#include <QLabel>
#include <QPalette>
#include <QScrollArea>
#include <QVBoxLayout>

namespace {
constexpr int longestDescription = 1000;

QLabel* plainLabel(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText); // it comes from the server
    label->setWordWrap(true);
    return label;
}
} // namespace

QlumArgumentPanel::QlumArgumentPanel(const QString& name, QWidget* parent)
    : QWidget(parent), m_layout(new QVBoxLayout(this)), m_empty(plainLabel({}, this))
{
    setObjectName(name);
    m_empty->setObjectName(name + QStringLiteral("Empty"));
    m_layout->addWidget(m_empty);
    m_layout->addStretch(1);
}

void QlumArgumentPanel::setEmptyText(const QString& text)
{
    m_empty->setText(text);
    m_empty->setVisible(m_rows.empty() && !text.isEmpty());
}

void QlumArgumentPanel::setArguments(const QlumMethodArguments& arguments,
                                     const std::vector<UaVariant>& values, bool isReadOnly)
{
    while (!m_rows.empty())
        removeLastArgument();
    for (std::size_t i = 0; i < arguments.size(); ++i)
        appendRow(arguments[i], i < values.size() ? values[i] : UaVariant(), isReadOnly);
    setEmptyText(m_empty->text());
}

void QlumArgumentPanel::addArgument(const QlumMethodArgument& argument, const UaVariant& value)
{
    appendRow(argument, value, false);
    setEmptyText(m_empty->text());
    emit edited();
}

void QlumArgumentPanel::removeLastArgument()
{
    delete m_rows.back().box;
    m_rows.pop_back();
    setEmptyText(m_empty->text());
    emit edited();
}

void QlumArgumentPanel::appendRow(const QlumMethodArgument& argument, const UaVariant& value, bool isReadOnly)
{
    Row row;
    row.argument = argument;
    row.given = value;
    row.box = new QWidget(this);
    const QString name = qlumCutText(qlumSingleLine(argument.name));
    auto* title = plainLabel(
        argument.type.isEmpty() ? name : tr("%1: %2").arg(name, qlumCutText(qlumSingleLine(argument.type))),
        row.box);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    row.editor = new QlumValueWidget(argument.context, row.box);
    row.editor->setObjectName(QStringLiteral("%1.%2").arg(objectName()).arg(m_rows.size()));
    row.editor->setAccessibleName(name);
    row.editor->setReadOnly(isReadOnly);
    row.editor->setValue(value);
    title->setBuddy(row.editor);
    row.note = plainLabel({}, row.box);
    row.note->setObjectName(row.editor->objectName() + QStringLiteral(".note"));
    row.note->hide();
    auto* layout = new QVBoxLayout(row.box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(title);
    if (!argument.description.isEmpty() && argument.description != argument.name)
        layout->addWidget(plainLabel(qlumCutText(argument.description, longestDescription), row.box));
    auto* line = new QHBoxLayout; // so that a narrow editor does not spread over a wide window
    line->addWidget(row.editor);
    layout->addLayout(line);
    layout->addWidget(row.note);
    connect(row.editor, &QlumValuePage::edited, this, [this, editor = row.editor] {
        for (const Row& each : m_rows)
            if (each.editor == editor)
                showNote(each, editor->fault().isEmpty() ? editor->remark() : editor->fault());
        emit edited();
    });
    m_layout->insertWidget(m_layout->count() - 1, row.box);
    m_rows.push_back(row);
}

// ---- values

QString QlumArgumentPanel::fault(int argument) const
{
    return row(argument).editor->fault();
}

QString QlumArgumentPanel::refusal(int argument) const
{
    return row(argument).editor->refusal();
}

const QlumMethodArgument& QlumArgumentPanel::argument(int argument) const
{
    return row(argument).argument;
}

UaVariant QlumArgumentPanel::value(int argument) const
{
    const Row& own = row(argument);
    UaVariant value;
    if (own.editor->value(value))
        return value;
    return own.editor->isModified() ? UaVariant() : own.given;
}

std::vector<UaVariant> QlumArgumentPanel::values() const
{
    std::vector<UaVariant> values;
    for (int i = 0; i < count(); ++i)
        values.push_back(value(i));
    return values;
}

void QlumArgumentPanel::setValue(int argument, const UaVariant& value)
{
    m_rows.at(static_cast<std::size_t>(argument)).given = value;
    row(argument).editor->setValue(value);
}

// ---- what is said of them

void QlumArgumentPanel::showNote(const Row& row, const QString& note)
{
    QPalette palette = row.note->palette();
    palette.setColor(QPalette::WindowText, qlumStatusColor(QlumStatusLevel::Bad, palette));
    row.note->setPalette(palette);
    row.note->setText(note);
    row.note->setVisible(!note.isEmpty());
}

void QlumArgumentPanel::setNote(int argument, const QString& note)
{
    showNote(row(argument), note);
}

void QlumArgumentPanel::focusArgument(int argument)
{
    for (QWidget* parent = parentWidget(); parent; parent = parent->parentWidget())
        if (auto* area = qobject_cast<QScrollArea*>(parent)) {
            area->ensureWidgetVisible(row(argument).box);
            break;
        }
    row(argument).editor->setFocus();
}
