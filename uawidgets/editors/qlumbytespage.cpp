#include <uawidgets/editors/qlumbytespage.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumtoolservices.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumpagedbytes.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/qlumformrow.h>

#include <QByteArray>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QIODevice>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSaveFile>
#include <QSignalBlocker>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <span>
#include <string_view>

namespace {
constexpr qint64 largestFile = 256 * 1024 * 1024; // no message is larger
const auto formKey = QStringLiteral("byteStringForm");

std::string_view contentOf(const UaVariant& value)
{
    const auto& content = value.get()->Value;
    if (value.isNull() || !value.isScalar())
        return {};
    if (value.type() == OpcUaType_String)
        return {content.String.Data, static_cast<std::size_t>(std::max(content.String.Length, 0))};
    return {reinterpret_cast<const char*>(content.ByteString.Data),
            static_cast<std::size_t>(std::max(content.ByteString.Length, 0))};
}

bool isNullContent(const UaVariant& value)
{
    const auto& content = value.get()->Value;
    return value.isNull() ||
           (value.type() == OpcUaType_String ? content.String.Length : content.ByteString.Length) < 0;
}

UaVariant variantOf(OpcUa_BuiltInType type, const QByteArray& bytes, bool isNull)
{
    const std::string_view view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    UaVariant value;
    if (type == OpcUaType_String) {
        value.setString(isNull ? UaString() : UaString(view));
        return value;
    }
    const UaByteString content =
        isNull ? UaByteString()
               : UaByteString(std::span(reinterpret_cast<const OpcUa_Byte*>(view.data()), view.size()));
    if (type == OpcUaType_XmlElement)
        value.setXmlElement(content);
    else
        value.setByteString(content);
    return value;
}
} // namespace

QlumBytesPage::QlumBytesPage(const QlumValueContext& context, OpcUa_BuiltInType type, QWidget* parent)
    : QlumValuePage(parent), m_context(context), m_type(type), m_bytes(new QlumPagedBytes(this)),
      m_null(new QCheckBox(tr("&No value (null)"), this)), m_length(new QLabel(this)),
      m_problem(new QLabel(this))
{
    qlumDescribeField(m_null, {QStringLiteral("null"), tr("&No value (null)"), QString(),
                               tr("A null value is not the same as an empty one")});
    m_length->setObjectName(QStringLiteral("length"));
    m_length->setTextFormat(Qt::PlainText);
    m_problem->setObjectName(QStringLiteral("problem"));
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setWordWrap(true);
    m_problem->hide();
    auto* row = new QHBoxLayout;
    if (type == OpcUaType_ByteString)
        makeForms(row);
    row->addWidget(m_null);
    row->addStretch(1);
    row->addWidget(m_length);
    makeFiles(row);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_bytes, 1);
    layout->addWidget(m_problem);
    layout->addLayout(row);
    setFocusProxy(m_bytes);
    const auto changed = [this] {
        showState();
        emit edited();
    };
    connect(m_bytes, &QlumPagedBytes::edited, this, changed);
    connect(m_null, &QCheckBox::toggled, this, changed);
}

void QlumBytesPage::makeForms(QLayout* row)
{
    m_form = new QComboBox(this);
    qlumDescribeField(m_form, {QStringLiteral("form"), tr("Shown as"), QString(), QString()});
    m_form->addItem(tr("Hexadecimal"), static_cast<int>(QlumPagedBytes::Form::Hexadecimal));
    m_form->addItem(tr("Text"), static_cast<int>(QlumPagedBytes::Form::Text));
    m_form->addItem(tr("Base64"), static_cast<int>(QlumPagedBytes::Form::Base64));
    m_form->setCurrentIndex(qBound(0, qlumEditorSetting(m_context, formKey, 0).toInt(), m_form->count() - 1));
    m_bytes->setForm(static_cast<QlumPagedBytes::Form>(m_form->currentData().toInt()));
    row->addWidget(m_form);
    connect(m_form, qOverload<int>(&QComboBox::activated), this, &QlumBytesPage::setForm);
}

void QlumBytesPage::makeFiles(QLayout* row)
{
    const auto add = [&](const char* name, const QString& text, const QString& toolTip) {
        auto* button = new QPushButton(text, this);
        qlumDescribeField(button, {QLatin1String(name), text, QString(), toolTip});
        button->setAutoDefault(false);
        row->addWidget(button);
        return button;
    };
    m_load = add("load", tr("&Load..."), tr("Takes the content of a file"));
    m_save = add("save", tr("&Save..."), tr("Writes the value to a file"));
    m_show =
        add("showImage", tr("Show as &Image"), tr("Shows the image that these bytes are, in a document"));
    m_show->hide();
    connect(m_show, &QPushButton::clicked, this, &QlumBytesPage::showImage);
    connect(m_load, &QPushButton::clicked, this, &QlumBytesPage::load);
    connect(m_save, &QPushButton::clicked, this, &QlumBytesPage::save);
}

void QlumBytesPage::setForm(int index)
{
    const auto form = static_cast<QlumPagedBytes::Form>(m_form->itemData(index).toInt());
    if (m_bytes->setForm(form)) {
        qlumKeepEditorSetting(m_context, formKey, index);
        return;
    }
    const QSignalBlocker quiet(m_form); // what is wrong is read in the form in which it is wrong
    m_form->setCurrentIndex(m_form->findData(static_cast<int>(m_bytes->form())));
}

void QlumBytesPage::setValue(const UaVariant& value)
{
    const QSignalBlocker quiet(m_null);
    m_hasValue = !value.isNull();
    m_wasNull = m_hasValue && isNullContent(value); // one that is still to be given is typed at once
    m_null->setChecked(m_wasNull);
    const QlumToolServices* tools = QlumToolServices::instance();
    m_isImage = m_show != nullptr && tools != nullptr && tools->canShowInDocument(value, m_context.dataType);
    if (m_show != nullptr && isVisible())
        m_show->setVisible(m_isImage && !window()->isModal());
    const std::string_view content = contentOf(value);
    m_bytes->setBytes(QByteArray(content.data(), static_cast<int>(content.size())));
    showState();
}

bool QlumBytesPage::value(UaVariant& value) const
{
    QByteArray bytes;
    if (!m_hasValue && !isModified())
        return false;
    if (!m_null->isChecked() && !m_bytes->bytes(bytes))
        return false;
    value = variantOf(m_type, bytes, m_null->isChecked());
    return true;
}

bool QlumBytesPage::isModified() const
{
    return m_bytes->isModified() || m_null->isChecked() != m_wasNull;
}

QString QlumBytesPage::fault() const
{
    return m_null->isChecked() ? QString() : m_bytes->fault();
}

QString QlumBytesPage::remark() const
{
    return refusal();
}

// The whole need not be put together for its length to be known.
QString QlumBytesPage::refusal() const
{
    if (m_null->isChecked() || m_type == OpcUaType_XmlElement)
        return {};
    return qlumCheckLength(m_bytes->size(), m_context);
}

void QlumBytesPage::setReadOnly(bool readOnly)
{
    m_isReadOnly = readOnly;
    m_bytes->setReadOnly(readOnly);
    m_null->setEnabled(!readOnly);
    m_load->setVisible(!readOnly);
    showState();
}

// A window that holds up the others would hide what the user wants to see.
void QlumBytesPage::showEvent(QShowEvent* event)
{
    QlumValuePage::showEvent(event);
    if (m_show)
        m_show->setVisible(m_isImage && !window()->isModal());
}

void QlumBytesPage::showImage()
{
    UaVariant content;
    QlumToolServices* tools = QlumToolServices::instance();
    if (tools != nullptr && value(content))
        tools->showValue(qlumNoServer, content, m_context.dataType);
}

void QlumBytesPage::showState()
{
    m_bytes->setEnabled(!m_null->isChecked());
    m_save->setEnabled(!m_null->isChecked());
    m_length->setText(m_null->isChecked() ? QString()
                                          : tr("%1 bytes").arg(QLocale().toString(m_bytes->size())));
    if (m_null->isChecked())
        m_problem->hide();
}

// ---- files

void QlumBytesPage::load()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Load Value"), QDir::homePath());
    if (path.isEmpty())
        return;
    QFile file(path);
    QString why;
    if (!file.open(QIODevice::ReadOnly))
        why = file.errorString();
    else if (file.size() > largestFile)
        why = tr("it is larger than any message");
    if (why.isEmpty()) {
        const QByteArray bytes = file.read(largestFile);
        const QSignalBlocker quiet(m_null);
        m_null->setChecked(false);
        m_bytes->replaceAll(bytes);
    }
    m_problem->setText(tr("%1 was not loaded: %2").arg(path, why));
    m_problem->setVisible(!why.isEmpty());
}

void QlumBytesPage::save()
{
    QByteArray bytes;
    if (!m_bytes->bytes(bytes))
        return;
    const QString path = QFileDialog::getSaveFileName(this, tr("Save Value"), QDir::homePath());
    if (path.isEmpty())
        return;
    QSaveFile file(path);
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    m_problem->setText(tr("%1 was not saved: %2").arg(path, file.errorString()));
    m_problem->setVisible(!isWritten);
}
