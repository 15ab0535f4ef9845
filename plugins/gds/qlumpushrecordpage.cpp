#include <plugins/gds/qlumpushrecordpage.h>

#include <app/api/qlumtext.h>
#include <plugins/gds/qlumpushplandialog.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumwrappingbar.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTextCursor>
#include <QVBoxLayout>

namespace {
constexpr int mostRecordLines = 10'000;
}

QlumPushRecordPage::QlumPushRecordPage(QWidget* parent) : QWidget(parent), m_text(new QPlainTextEdit)
{
    setObjectName(QStringLiteral("pushRecordPage"));
    m_text->setReadOnly(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setMaximumBlockCount(mostRecordLines);
    m_text->setPlaceholderText(tr("Every call to the server's configuration is written down here."));
    qlumDescribeField(m_text,
                      {QStringLiteral("pushRecord"),
                       tr("Record"),
                       tr("<b>Record</b><br>What was sent, when, by whom, and what the server answered."),
                       {}});
    auto* copy = new QPushButton(tr("&Copy Record"));
    auto* keep = new QPushButton(tr("Sa&ve Record..."));
    qlumDescribeField(copy, {QStringLiteral("pushRecordCopy"), tr("&Copy Record"), {}, {}});
    qlumDescribeField(keep, {QStringLiteral("pushRecordSave"), tr("Sa&ve Record..."), {}, {}});
    connect(copy, &QPushButton::clicked, this, [this] { QGuiApplication::clipboard()->setText(text()); });
    connect(keep, &QPushButton::clicked, this, &QlumPushRecordPage::save);
    auto* buttons = new QlumWrappingBar;
    buttons->add(copy);
    buttons->add(keep);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_text, 1);
    layout->addWidget(buttons);
}

void QlumPushRecordPage::add(const QString& server, const QString& user,
                             const std::vector<QlumPushStep>& steps)
{
    for (const QlumPushStep& step : steps)
        addLine(QStringLiteral("%1  %2  %3  %4  -> %5")
                    .arg(qlumShowDateTime(step.time), server, user, step.what, step.words));
}

void QlumPushRecordPage::addLine(const QString& text)
{
    m_text->appendPlainText(text);
    QTextCursor cursor = m_text->textCursor();
    if (cursor.hasSelection())
        return; // which the user is about to copy
    cursor.movePosition(QTextCursor::End);
    cursor.movePosition(QTextCursor::StartOfBlock);
    m_text->setTextCursor(cursor); // where the last line begins: that is what is seen
}

QString QlumPushRecordPage::text() const
{
    return m_text->toPlainText();
}

void QlumPushRecordPage::save()
{
    const QPointer<QlumPushRecordPage> stillThere = this;
    const QString fault =
        qlumSavePushText(this, tr("Save Record"), QStringLiteral("serverconfiguration.txt"), text());
    if (stillThere && !fault.isEmpty())
        emit saveFailed(fault);
}
