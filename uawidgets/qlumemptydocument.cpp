#include <uawidgets/qlumemptydocument.h>

#include <QFont>
#include <QLabel>
#include <QString>
#include <QVBoxLayout>
#include <QVariant>

QlumEmptyDocument::QlumEmptyDocument(const QString& headline, const QString& hint, QWidget* parent)
    : QWidget(parent)
{
    auto* title = new QLabel(headline, this);
    title->setObjectName(QStringLiteral("headline"));
    title->setTextFormat(Qt::PlainText);
    title->setAlignment(Qt::AlignCenter);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);

    auto* text = new QLabel(hint, this);
    text->setObjectName(QStringLiteral("hint"));
    text->setTextFormat(Qt::PlainText);
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);

    auto* layout = new QVBoxLayout(this);
    layout->addStretch(1);
    layout->addWidget(title);
    layout->addWidget(text);
    layout->addStretch(2);
}

void QlumEmptyDocument::saveSettings(QSettings& settings)
{
    for (auto kept = m_kept.cbegin(); kept != m_kept.cend(); ++kept)
        settings.setValue(kept.key(), kept.value());
}

void QlumEmptyDocument::loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    m_kept.clear();
    for (const QString& key : settings.allKeys()) {
        const QVariant value = settings.value(key);
        bool isNumber = false;
        const int id = value.toInt(&isNumber);
        const bool isServer = isNumber && key.endsWith(QLatin1String("ServerId"));
        m_kept.insert(key, isServer && serverIdMap.contains(id) ? QVariant(serverIdMap.value(id)) : value);
    }
}
