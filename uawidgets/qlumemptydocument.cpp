#include <uawidgets/qlumemptydocument.h>

#include <QFont>
#include <QLabel>
#include <QString>
#include <QVBoxLayout>

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
    m_kept.write(settings);
}

void QlumEmptyDocument::loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    m_kept.read(settings, serverIdMap);
}
