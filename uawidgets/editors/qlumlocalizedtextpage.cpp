#include <uawidgets/editors/qlumlocalizedtextpage.h>

#include <app/api/qlumtext.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumpagedbytes.h>
#include <uawidgets/qlumformrow.h>

#include <QByteArray>
#include <QFormLayout>
#include <QLineEdit>
#include <QRegularExpression>
#include <QString>
#include <QWidget>

#include <string_view>

namespace {
constexpr int longestLocale = 256;

// A part that is untouched keeps the difference between null and empty.
UaString textOr(const UaString& before, const QByteArray& bytes)
{
    const UaString now(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    return now.isEmpty() && before.isEmpty() ? before : now;
}
} // namespace

QlumLocalizedTextPage::QlumLocalizedTextPage(QWidget* parent)
    : QlumValuePage(parent), m_locale(new QLineEdit(this)), m_text(new QlumPagedBytes(this))
{
    auto* form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    m_locale->setMaxLength(longestLocale);
    qlumAddRow(form, m_locale,
               {QStringLiteral("locale"), tr("L&ocale:"), QString(),
                tr("Language and region: en, de-DE; empty when it is not known")});
    qlumAddRow(form, m_text, {QStringLiteral("localizedText"), tr("&Text:"), QString(), QString()});
    m_text->setTextName(tr("Text"));
    setFocusProxy(m_text);
    connect(m_locale, &QLineEdit::textEdited, this, &QlumValuePage::edited);
    connect(m_text, &QlumPagedBytes::edited, this, &QlumValuePage::edited);
}

void QlumLocalizedTextPage::setValue(const UaVariant& value)
{
    m_shown = value;
    const UaLocalizedText text = value.toLocalizedText();
    m_locale->setText(toQString(text.locale()));
    m_locale->setModified(false);
    const std::string_view view = text.text().view();
    m_text->setBytes(QByteArray(view.data(), static_cast<int>(view.size())));
}

bool QlumLocalizedTextPage::value(UaVariant& value) const
{
    QByteArray bytes;
    if (m_shown.isNull() && !isModified())
        return false;
    if (!m_text->bytes(bytes))
        return false;
    const UaLocalizedText before = m_shown.toLocalizedText();
    const UaString locale =
        m_locale->isModified() ? textOr(before.locale(), m_locale->text().toUtf8()) : before.locale();
    value.setLocalizedText(UaLocalizedText(locale, textOr(before.text(), bytes)));
    return true;
}

bool QlumLocalizedTextPage::isModified() const
{
    return m_locale->isModified() || m_text->isModified();
}

QString QlumLocalizedTextPage::fault() const
{
    return m_text->fault();
}

QString QlumLocalizedTextPage::remark() const
{
    static const QRegularExpression usual(QStringLiteral("^([A-Za-z]{2,8}(-[A-Za-z0-9]{1,8})*)?$"));
    return m_locale->isModified() && !usual.match(m_locale->text()).hasMatch()
               ? tr("A locale is a language and a region, like de-DE.")
               : QString();
}

void QlumLocalizedTextPage::setReadOnly(bool readOnly)
{
    m_locale->setReadOnly(readOnly);
    m_text->setReadOnly(readOnly);
}
