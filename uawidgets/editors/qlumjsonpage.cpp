#include <uawidgets/editors/qlumjsonpage.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumjsonfault.h>
#include <uawidgets/editors/qlumpagedbytes.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/qlumformrow.h>

#include <QByteArray>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QString>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>

#include <string_view>

namespace {
constexpr int quicklyRead = 8192;        // bytes that are checked with each key
constexpr int readInAPause = 512 * 1024; // larger ones are checked when they are sent
constexpr int pauseMilliseconds = 500;
} // namespace

QlumJsonPage::QlumJsonPage(const QlumValueContext& context, QWidget* parent)
    : QlumValuePage(parent), m_context(context), m_text(new QlumPagedBytes(this)), m_hint(new QLabel(this)),
      m_pause(new QTimer(this))
{
    m_text->setObjectName(QStringLiteral("json"));
    m_text->setTextName(tr("JSON text"));
    m_hint->setObjectName(QStringLiteral("jsonHint"));
    m_hint->setTextFormat(Qt::PlainText);
    m_hint->setWordWrap(true);
    m_pause->setSingleShot(true);
    m_pause->setInterval(pauseMilliseconds);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_hint);
    makeButtons();
    setFocusProxy(m_text);
    connect(m_pause, &QTimer::timeout, this, &QlumValuePage::edited);
    connect(m_text, &QlumPagedBytes::edited, this, [this] {
        m_isRead = false;
        const bool isLarge = m_text->size() > readInAPause;
        if (isLarge)
            m_hint->setText(tr("So long a text is checked when it is sent."));
        if (isLarge || m_text->size() <= quicklyRead)
            emit edited();
        else
            m_pause->start();
    });
}

void QlumJsonPage::makeButtons()
{
    auto* row = new QHBoxLayout;
    auto* copyAll = new QPushButton(tr("&Copy"), this);
    qlumDescribeField(copyAll,
                      {QStringLiteral("copyJson"), tr("Copy"), QString(), tr("Copies the whole text")});
    m_paste = new QPushButton(tr("&Paste"), this);
    qlumDescribeField(m_paste, {QStringLiteral("pasteJson"), tr("Paste"), QString(),
                                tr("Replaces the whole text by what was copied")});
    copyAll->setAutoDefault(false);
    m_paste->setAutoDefault(false);
    connect(copyAll, &QPushButton::clicked, this, &QlumJsonPage::copy);
    connect(m_paste, &QPushButton::clicked, this, &QlumJsonPage::paste);
    row->addWidget(copyAll);
    row->addWidget(m_paste);
    row->addStretch(1);
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void QlumJsonPage::setValue(const UaVariant& value)
{
    m_shown = value;
    UaString text;
    const UaStatusCode status = UaValueText::toJson(value, m_context.dictionary.get(), text, true);
    m_isUnwritable = status.isBad();
    m_text->setBytes(QByteArray(text.view().data(), static_cast<int>(text.view().size())));
    m_text->setEnabled(!m_isUnwritable);
    m_hint->setText(m_isUnwritable ? tr("The value cannot be written as JSON: %1")
                                         .arg(qlumStatusWords(qlumStatusText(status.code())))
                                   : tr("Type is the number of the built-in type, Body the value itself."));
    m_read = value;
    m_fault.clear();
    m_isRead = true;
    m_pause->stop();
}

// The text is read once, however often somebody asks.
void QlumJsonPage::read() const
{
    if (m_isRead)
        return;
    m_isRead = true;
    m_fault = m_text->fault();
    QByteArray text;
    if (!m_text->bytes(text))
        return;
    UaString error;
    const std::string_view view(text.constData(), static_cast<std::size_t>(text.size()));
    const UaStatusCode status = UaValueText::fromJson(view, m_context.dictionary.get(), m_read, &error);
    if (status.isBad())
        m_fault = tr("This JSON text is no value: %1")
                      .arg(qlumCutText(error.isEmpty() ? qlumStatusWords(qlumStatusText(status.code()))
                                                       : qlumJsonFault(toQString(error))));
}

bool QlumJsonPage::value(UaVariant& value) const
{
    read();
    if (!m_fault.isEmpty())
        return false;
    value = m_text->isModified() ? m_read : m_shown;
    return true;
}

bool QlumJsonPage::isModified() const
{
    return m_text->isModified();
}

QString QlumJsonPage::fault() const
{
    if (m_isRead || m_text->size() <= readInAPause)
        read();
    return m_isRead ? m_fault : m_text->fault();
}

// Of long texts the dialog asks when the value is sent.
QlumValueCheck QlumJsonPage::check() const
{
    UaVariant entered;
    return m_text->isModified() && m_text->size() <= quicklyRead && value(entered)
               ? qlumCheckValue(entered, m_context)
               : QlumValueCheck();
}

QString QlumJsonPage::remark() const
{
    return check().text();
}

QString QlumJsonPage::refusal() const
{
    return check().refused;
}

void QlumJsonPage::setReadOnly(bool readOnly)
{
    m_text->setReadOnly(readOnly);
    m_paste->setVisible(!readOnly);
}

void QlumJsonPage::copy()
{
    QByteArray text;
    if (m_text->bytes(text))
        QGuiApplication::clipboard()->setText(QString::fromUtf8(text));
}

void QlumJsonPage::paste()
{
    const QByteArray text = QGuiApplication::clipboard()->text().toUtf8();
    if (!text.isEmpty() && m_text->isEnabled())
        m_text->replaceAll(text);
}
