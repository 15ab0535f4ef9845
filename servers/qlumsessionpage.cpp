#include <servers/qlumsessionpage.h>

#include <app/api/qlumsettings.h>
#include <servers/qlumendpoint.h>
#include <uawidgets/qlumformrow.h>

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLatin1String>
#include <QLineEdit>
#include <QSpinBox>
#include <QString>
#include <QStringList>
#include <QSysInfo>
#include <QWidget>

#include <string_view>

namespace {
struct PageTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumSessionPage)
};

struct NumberText
{
    std::string_view key;
    const char* label;
    const char* explanation;
};

constexpr NumberText numberTexts[] = {
    {"Session.ConnectTimeout", QT_TRANSLATE_NOOP("QlumSessionPage", "&Connect time-out:"),
     QT_TRANSLATE_NOOP("QlumSessionPage",
                       "How long the server may take to answer when a connection is made.")},
    {"Session.SessionTimeout", QT_TRANSLATE_NOOP("QlumSessionPage", "Sess&ion time-out:"),
     QT_TRANSLATE_NOOP("QlumSessionPage",
                       "How long the server shall keep the session when the connection is lost.")},
    {"Session.PublishTimeout", QT_TRANSLATE_NOOP("QlumSessionPage", "&Publish time-out:"),
     QT_TRANSLATE_NOOP("QlumSessionPage",
                       "How long the server may hold a request for new values back when there are none.")},
    {"Session.SecureChannelLifetime", QT_TRANSLATE_NOOP("QlumSessionPage", "Secure channel li&fetime:"),
     QT_TRANSLATE_NOOP("QlumSessionPage",
                       "How long the keys of the connection are used before new ones are agreed on.")},
    {"Session.WatchdogTime", QT_TRANSLATE_NOOP("QlumSessionPage", "&Watchdog, look every:"),
     QT_TRANSLATE_NOOP("QlumSessionPage",
                       "How often the server's state is read to see whether the connection still stands.")},
    {"Session.WatchdogTimeout", QT_TRANSLATE_NOOP("QlumSessionPage", "Watchdog time-&out:"),
     QT_TRANSLATE_NOOP("QlumSessionPage", "When a look takes longer, the connection counts as lost.")},
    {"Session.InternalCallTimeout", QT_TRANSLATE_NOOP("QlumSessionPage", "Time-out of internal c&alls:"),
     QT_TRANSLATE_NOOP("QlumSessionPage",
                       "How long the server may take to answer what Tavelin asks on its own account.")},
    {"Session.MaxOperations", QT_TRANSLATE_NOOP("QlumSessionPage", "&Most operations in a call:"),
     QT_TRANSLATE_NOOP("QlumSessionPage",
                       "Requests for more nodes than this are split into several calls; 0 leaves it to the "
                       "server.")},
};

const NumberText& textsOf(std::string_view key)
{
    for (const NumberText& text : numberTexts)
        if (text.key == key)
            return text;
    return numberTexts[0];
}

QString objectNameOf(const char* key)
{
    return QString::fromLatin1(key).replace(QLatin1Char('.'), QLatin1Char('_'));
}
} // namespace

QlumSessionPage::QlumSessionPage(QWidget* parent)
    : QWidget(parent), m_form(new QFormLayout(this)), m_name(new QLineEdit)
{
    m_name->setMaxLength(QlumEndpointLimits::textLength);
    qlumAddRow(m_form, m_name,
               {QStringLiteral("sessionName"), tr("Session &name:"), QString(),
                tr("Name under which the server lists this session")});
    auto* told = new QLabel(tr("What is not ticked follows the settings of the program."));
    told->setWordWrap(true);
    m_form->addRow(told);
    for (const QlumSessionOptions::Field& field : QlumSessionOptions::fields())
        addNumber(field);
    addChoices();
}

QCheckBox* QlumSessionPage::addOwnRow(QWidget* field, const QString& name, const QString& label,
                                      const QString& explanation)
{
    auto* own = new QCheckBox;
    own->setObjectName(name + QLatin1String("_own"));
    own->setAccessibleName(tr("%1: for this server").arg(qlumBareLabel(label)));
    own->setToolTip(tr("For this server another one than in the settings"));
    auto* row = new QHBoxLayout;
    row->addWidget(own);
    row->addWidget(field, 1);
    qlumAddRow(m_form, field, {name, label, explanation, explanation}, row);
    field->setEnabled(false);
    connect(own, &QCheckBox::toggled, field, &QWidget::setEnabled);
    return own;
}

void QlumSessionPage::addNumber(const QlumSessionOptions::Field& field)
{
    const NumberText& text = textsOf(field.key);
    auto* number = new QSpinBox;
    number->setRange(static_cast<int>(field.minimum), static_cast<int>(field.maximum));
    number->setGroupSeparatorShown(true);
    if (field.value != &QlumSessionOptions::maxOperations) {
        number->setSuffix(tr(" ms"));
        number->setSingleStep(500);
    } else {
        number->setSpecialValueText(tr("as the server says"));
    }
    QCheckBox* own = addOwnRow(number, objectNameOf(field.key), PageTexts::tr(text.label),
                               PageTexts::tr(text.explanation));
    connect(own, &QCheckBox::toggled, number, [number, &field](bool isOwn) {
        if (!isOwn)
            number->setValue(static_cast<int>(field.standard()));
    });
    m_rows.push_back({own, number, &field});
}

void QlumSessionPage::addChoices()
{
    m_reconnect = new QComboBox;
    m_reconnect->addItem(tr("Yes"), true);
    m_reconnect->addItem(tr("No"), false);
    m_ownReconnect = addOwnRow(m_reconnect, QStringLiteral("Session_AutomaticReconnect"), tr("Reconnect:"),
                               tr("Whether a lost connection is restored until you disconnect."));
    m_dictionary = new QComboBox;
    m_dictionary->addItem(tr("At first use"), QStringLiteral("FirstUse"));
    m_dictionary->addItem(tr("By hand only"), QStringLiteral("Manual"));
    m_dictionary->addItem(tr("When connected"), QStringLiteral("Connect"));
    m_dictionary->addItem(tr("At each reconnect, too"), QStringLiteral("Reconnect"));
    m_ownDictionary =
        addOwnRow(m_dictionary, QStringLiteral("Session_TypeDictionaryMode"), tr("Load t&ype dictionaries:"),
                  tr("When the definitions of the server's own data types are loaded."));
    m_locales = new QLineEdit;
    m_ownLocales = addOwnRow(m_locales, QStringLiteral("Session_LocaleIds"), tr("Langua&ges:"),
                             tr("Languages of the server's texts, the best first, as in: en, de-CH"));
    connect(
        m_ownReconnect, &QCheckBox::toggled, this,
        [this](bool isOwn) {
            if (!isOwn)
                m_reconnect->setCurrentIndex(QlumSettings::automaticReconnect.value() ? 0 : 1);
        });
    connect(
        m_ownDictionary, &QCheckBox::toggled, this,
        [this](bool isOwn) {
            if (!isOwn)
                showDictionaryMode(QlumSettings::typeDictionaryMode.value());
        });
    connect(m_ownLocales, &QCheckBox::toggled, this, [this](bool isOwn) {
        if (!isOwn)
            m_locales->setText(QlumSettings::localeId.value());
    });
}

// What the settings file may say wrongly leaves the list as it is.
void QlumSessionPage::showDictionaryMode(const QString& mode)
{
    if (const int place = m_dictionary->findData(mode); place >= 0)
        m_dictionary->setCurrentIndex(place);
}

void QlumSessionPage::setSession(const QString& name, const QlumSessionOptions& options)
{
    m_name->setText(
        name.isEmpty() ? QStringLiteral("urn:%1:Korvanda:Tavelin").arg(QSysInfo::machineHostName()) : name);
    for (const Row& row : m_rows) {
        const QlumSessionOptions::Number& number = options.*row.field->value;
        row.own->setChecked(number.has_value());
        row.number->setValue(static_cast<int>(number.value_or(row.field->standard())));
    }
    m_ownReconnect->setChecked(options.automaticReconnect.has_value());
    const bool reconnects = options.automaticReconnect.value_or(QlumSettings::automaticReconnect.value());
    m_reconnect->setCurrentIndex(reconnects ? 0 : 1);
    m_ownDictionary->setChecked(!options.typeDictionaryMode.isEmpty());
    showDictionaryMode(options.typeDictionaryMode.isEmpty() ? QlumSettings::typeDictionaryMode.value()
                                                            : options.typeDictionaryMode);
    m_ownLocales->setChecked(!options.localeIds.isEmpty());
    m_locales->setText(options.localeIds.isEmpty() ? QlumSettings::localeId.value()
                                                   : options.localeIds.join(QLatin1String(", ")));
}

QString QlumSessionPage::sessionName() const
{
    return m_name->text().trimmed();
}

QlumSessionOptions QlumSessionPage::options() const
{
    QlumSessionOptions options;
    for (const Row& row : m_rows)
        if (row.own->isChecked())
            options.*row.field->value = static_cast<unsigned int>(row.number->value());
    if (m_ownReconnect->isChecked())
        options.automaticReconnect = m_reconnect->currentData().toBool();
    if (m_ownDictionary->isChecked())
        options.typeDictionaryMode = m_dictionary->currentData().toString();
    if (m_ownLocales->isChecked())
        options.localeIds = QlumSessionOptions::localesOf(m_locales->text());
    return options;
}
