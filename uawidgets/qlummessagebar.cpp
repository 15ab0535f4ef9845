#include <uawidgets/qlummessagebar.h>

#include <app/api/qlumdisplaytext.h>

#include <QAccessible>
#include <QAccessibleEvent>
#include <QBoxLayout>
#include <QFont>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {
constexpr int maximumText = 500;  // a server's reason may be a novel
constexpr int narrowestText = 40; // characters, with the button beside it

QLabel* makeLabel(const char* name, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QString fit(const QString& text)
{
    return qlumCutText(qlumSingleLine(text), maximumText);
}
} // namespace

QlumMessageBar::QlumMessageBar(QWidget* parent)
    : QFrame(parent), m_icon(new QLabel(this)), m_severity(makeLabel("severity", this)),
      m_what(makeLabel("what", this)), m_why(makeLabel("why", this)), m_button(new QPushButton(this)),
      m_close(new QToolButton(this)), m_body(new QBoxLayout(QBoxLayout::LeftToRight))
{
    setObjectName(QStringLiteral("messageBar"));
    setFrameShape(QFrame::StyledPanel);
    m_severity->setWordWrap(false);
    QFont bold = m_severity->font();
    bold.setBold(true);
    m_severity->setFont(bold);
    m_button->setObjectName(QStringLiteral("help"));
    m_button->setAutoDefault(false);
    m_close->setObjectName(QStringLiteral("close"));
    m_close->setAccessibleName(tr("Close message"));
    m_close->setToolTip(tr("Close this message"));
    m_close->setWhatsThis(tr("<b>Close</b><br>Takes the message away. The log keeps it."));
    m_close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    m_close->setAutoRaise(true);
    connect(m_button, &QPushButton::clicked, this, &QlumMessageBar::sltHelp);
    connect(m_close, &QToolButton::clicked, this, qOverload<>(&QlumMessageBar::dismiss));

    auto* texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addWidget(m_what);
    texts->addWidget(m_why);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(6, 3, 3, 3);
    row->addWidget(m_icon, 0, Qt::AlignTop);
    row->addWidget(m_severity, 0, Qt::AlignTop);
    m_body->addLayout(texts, 1);
    m_body->addWidget(m_button);
    row->addLayout(m_body, 1);
    row->addWidget(m_close, 0, Qt::AlignTop);
    hide();
}

void QlumMessageBar::tell(const QlumMessage& message)
{
    m_message = message;
    showSeverity(message.severity);
    m_what->setText(fit(message.what));
    m_why->setText(fit(message.why));
    m_why->setVisible(!m_why->text().isEmpty());
    m_button->setText(message.button);
    m_button->setVisible(!message.button.isEmpty());
    setAccessibleName(tr("%1: %2 %3").arg(m_severity->text(), m_what->text(), m_why->text()).trimmed());
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void QlumMessageBar::showSeverity(QlumMessage::Severity severity)
{
    QStyle::StandardPixmap icon = QStyle::SP_MessageBoxCritical;
    QString word = tr("Error");
    if (severity == QlumMessage::Warning) {
        icon = QStyle::SP_MessageBoxWarning;
        word = tr("Warning");
    } else if (severity == QlumMessage::Note) {
        icon = QStyle::SP_MessageBoxInformation;
        word = tr("Note");
    }
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    m_icon->setPixmap(style()->standardIcon(icon, nullptr, this).pixmap(size, size));
    m_severity->setText(word);
}

void QlumMessageBar::dismiss(const QString& topic)
{
    if (topic == m_message.topic)
        dismiss();
}

void QlumMessageBar::dismiss()
{
    m_message = QlumMessage();
    hide();
}

// What the texts never have: margins, icon, word and the button that closes.
int QlumMessageBar::widthBesideTexts() const
{
    return layout()->minimumSize().width() - m_body->minimumSize().width();
}

QSize QlumMessageBar::minimumSizeHint() const
{
    int width = 0;
    for (const QWidget* part : {static_cast<const QWidget*>(m_what), static_cast<const QWidget*>(m_why),
                                static_cast<const QWidget*>(m_button)})
        if (!part->isHidden())
            width = std::max(width, part->minimumSizeHint().width());
    return {widthBesideTexts() + width, QFrame::minimumSizeHint().height()};
}

void QlumMessageBar::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    const int rest = width() - widthBesideTexts() - m_button->sizeHint().width() - m_body->spacing();
    const bool isWide = rest >= fontMetrics().averageCharWidth() * narrowestText;
    const QBoxLayout::Direction direction = isWide ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom;
    if (direction == m_body->direction())
        return;
    m_body->setDirection(direction);
    m_body->setAlignment(m_button, isWide ? Qt::AlignVCenter : Qt::AlignLeft);
}

void QlumMessageBar::sltHelp()
{
    const std::function<void()> help = std::exchange(m_message.help, {});
    dismiss(); // first: what helps may have something to tell in its turn
    if (help)
        help();
}

void QlumMessageBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        dismiss();
    else
        QFrame::keyPressEvent(event);
}
