#include <uawidgets/editors/qlumbytesedit_p.h>

#include <QChar>
#include <QEvent>
#include <QFont>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QMimeData>
#include <QPainter>
#include <QPalette>
#include <QPlainTextDocumentLayout>
#include <QPlainTextEdit>
#include <QRect>
#include <QString>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextOption>
#include <QWidget>

namespace {
constexpr int largePaste = 4096;
constexpr int offsetDigits = 8;
constexpr int lineBytes = 16;

int digitValue(QChar character)
{
    const ushort code = character.toLower().unicode();
    if (code >= '0' && code <= '9')
        return code - '0';
    return code >= 'a' && code <= 'f' ? code - 'a' + 10 : -1;
}

int byteCount(const QString& line)
{
    int digits = 0;
    for (const QChar character : line)
        digits += digitValue(character) >= 0;
    return digits / 2;
}

QString charactersOf(const QString& line)
{
    QString text;
    int high = -1;
    for (const QChar character : line) {
        const int digit = digitValue(character);
        if (digit < 0)
            continue;
        if (high < 0) {
            high = digit;
            continue;
        }
        const int code = high * 16 + digit;
        text += code >= 0x20 && code < 0x7F ? QChar(code) : QLatin1Char('.');
        high = -1;
    }
    return text;
}
} // namespace

class QlumBytesEdit::Margin : public QWidget
{
public:
    Margin(QlumBytesEdit* edit, bool isOffset) : QWidget(edit), m_edit(edit), m_isOffset(isOffset) {}

protected:
    void paintEvent(QPaintEvent*) override { m_edit->paintMargin(*this, m_isOffset); }

private:
    QlumBytesEdit* m_edit;
    const bool m_isOffset;
};

QlumBytesEdit::QlumBytesEdit(QWidget* parent)
    : QPlainTextEdit(parent), m_offsets(new Margin(this, true)), m_characters(new Margin(this, false))
{
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setTabChangesFocus(true);
    connect(this, &QPlainTextEdit::updateRequest, this, [this] {
        m_offsets->update();
        m_characters->update();
    });
    placeMargins();
}

void QlumBytesEdit::showPage(const QString& text, bool isHexadecimal, int offset)
{
    m_isHexadecimal = isHexadecimal;
    m_offset = offset;
    setLineWrapMode(isHexadecimal ? QPlainTextEdit::NoWrap : QPlainTextEdit::WidgetWidth);
    setWordWrapMode(isHexadecimal ? QTextOption::NoWrap : QTextOption::WrapAtWordBoundaryOrAnywhere);
    setPlainText(text);
    placeMargins();
}

QString QlumBytesEdit::rawText() const
{
    return document()->toRawText().replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
}

void QlumBytesEdit::insertFromMimeData(const QMimeData* source)
{
    const QString text = source->text();
    if (text.size() > largePaste)
        emit pasted(text);
    else
        insertPlainText(text); // never formatted text
}

void QlumBytesEdit::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    placeMargins();
}

void QlumBytesEdit::changeEvent(QEvent* event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        placeMargins();
}

void QlumBytesEdit::placeMargins()
{
    const int digit = fontMetrics().horizontalAdvance(QLatin1Char('0'));
    const int left = m_isHexadecimal ? digit * (offsetDigits + 2) : 0;
    const int right = m_isHexadecimal ? digit * (lineBytes + 1) : 0;
    setViewportMargins(left, 0, right, 0);
    m_offsets->setVisible(m_isHexadecimal);
    m_characters->setVisible(m_isHexadecimal);
    const QRect inner = viewport()->geometry();
    m_offsets->setGeometry(inner.left() - left, inner.top(), left, inner.height());
    m_characters->setGeometry(inner.right() + 1, inner.top(), right, inner.height());
}

void QlumBytesEdit::paintMargin(Margin& margin, bool isOffset)
{
    QPainter painter(&margin);
    painter.fillRect(margin.rect(), palette().color(QPalette::AlternateBase));
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::Text));
    int bytes = m_offset;
    for (QTextBlock block = document()->firstBlock(); block != firstVisibleBlock(); block = block.next())
        bytes += byteCount(block.text());
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRect line = blockBoundingGeometry(block).translated(contentOffset()).toAlignedRect();
        if (line.top() > margin.height())
            break;
        const QString text = isOffset ? QStringLiteral("%1").arg(bytes, offsetDigits, 16, QLatin1Char('0'))
                                      : charactersOf(block.text());
        painter.drawText(4, line.top() + fontMetrics().ascent(), text);
        bytes += byteCount(block.text());
    }
}
