#include <uawidgets/editors/qlumpagedbytes.h>

#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumbytesedit_p.h>
#include <uawidgets/editors/qlumnumbertext.h>

#include <QByteArray>
#include <QChar>
#include <QHBoxLayout>
#include <QLabel>
#include <QLatin1Char>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QString>
#include <QTextCursor>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace {
// So much is laid out and checked within a keystroke; a paragraph is laid out as a whole.
constexpr int textPage = 16384;
constexpr int longestParagraph = 2048;
constexpr int hexPage = 2048;
constexpr int base64Page = 3072;
constexpr int hexLine = 16;

// What the field cannot hold apart from a line's end.
bool isLost(QChar character)
{
    const ushort code = character.unicode();
    return code == '\r' || code == 0x2029 || code == 0xFDD0 || code == 0xFDD1;
}

bool decodeText(const QByteArray& bytes, QString& text, bool& hasCrLf)
{
    text = QString::fromUtf8(bytes);
    const int pairs = bytes.count("\r\n");
    hasCrLf = pairs > 0;
    const bool isExact = text.toUtf8() == bytes && (pairs == 0 || bytes.count('\n') == pairs);
    if (hasCrLf)
        text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return isExact && std::none_of(text.cbegin(), text.cend(), isLost);
}

QString hexText(const QByteArray& bytes)
{
    QString text;
    text.reserve(bytes.size() * 3);
    for (int line = 0; line < bytes.size(); line += hexLine) {
        if (line > 0)
            text += QLatin1Char('\n');
        text += QString::fromLatin1(bytes.mid(line, hexLine).toHex(' '));
    }
    return text;
}

bool isHexDigit(char character)
{
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

bool readHex(const QString& text, QByteArray& bytes)
{
    QByteArray digits = text.toLatin1();
    const auto end = std::remove_if(digits.begin(), digits.end(), [](char character) {
        return character == ' ' || character == '\n' || character == '\t' || character == ':';
    });
    digits.truncate(static_cast<int>(end - digits.begin()));
    if (digits.size() % 2 != 0 || !std::all_of(digits.cbegin(), digits.cend(), isHexDigit))
        return false;
    bytes = QByteArray::fromHex(digits);
    return true;
}

bool readBase64(const QString& text, QByteArray& bytes)
{
    QByteArray characters = text.toLatin1();
    characters.replace('\n', "").replace(' ', "");
    const auto result = QByteArray::fromBase64Encoding(characters, QByteArray::AbortOnBase64DecodingErrors);
    if (characters.size() % 4 != 0 || !result)
        return false;
    bytes = result.decoded;
    return true;
}

QToolButton* makeButton(QWidget* parent, ushort sign, const char* name, const QString& text)
{
    auto* button = new QToolButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setText(QString(QChar(sign))); // a picture would have to suit every palette
    button->setToolTip(text);
    button->setAccessibleName(text);
    button->setAutoRaise(true);
    return button;
}
} // namespace

QlumPagedBytes::QlumPagedBytes(QWidget* parent)
    : QWidget(parent), m_edit(new QlumBytesEdit(this)), m_note(new QLabel(this))
{
    m_edit->setObjectName(QStringLiteral("text"));
    m_note->setObjectName(QStringLiteral("note"));
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->hide();
    makeRow();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_edit, 1);
    layout->addWidget(m_note);
    layout->addWidget(m_row);
    setFocusProxy(m_edit);
    setTextName(tr("Value"));
    connect(m_edit, &QPlainTextEdit::textChanged, this, &QlumPagedBytes::sltTextChanged);
    connect(m_edit, &QlumBytesEdit::pasted, this, &QlumPagedBytes::sltPasted);
}

void QlumPagedBytes::makeRow()
{
    m_row = new QWidget(this);
    auto* layout = new QHBoxLayout(m_row);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto add = [&](ushort sign, const char* name, const QString& text, auto turn) {
        QToolButton* button = makeButton(m_row, sign, name, text);
        connect(
            button, &QToolButton::clicked, this,
            [this, turn] {
                if (leavePage())
                    showFrom(turn());
            });
        layout->addWidget(button);
    };
    add(
        0x00AB, "firstPage", tr("First page"), [] { return 0; });
    add(0x2039, "previousPage", tr("Previous page"), [this] { return pageBefore(m_start); });
    m_where = new QLabel(m_row);
    m_where->setObjectName(QStringLiteral("where"));
    m_where->setTextFormat(Qt::PlainText);
    layout->addWidget(m_where);
    add(
        0x203A, "nextPage", tr("Next page"),
        [this] {
            const int next = m_start + m_length;
            return next < m_bytes.size() ? next : m_start;
        });
    add(0x00BB, "lastPage", tr("Last page"), [this] { return pageBefore(m_bytes.size()); });
    layout->addStretch(1);
    auto* label = new QLabel(tr("&Go to byte:"), m_row);
    m_goTo = new QLineEdit(m_row);
    m_goTo->setObjectName(QStringLiteral("goTo"));
    m_goTo->setAccessibleName(tr("Go to byte"));
    m_goTo->setToolTip(tr("Number of a byte, decimal or hexadecimal (0x100); Enter shows the page"));
    m_goTo->setMaximumWidth(120);
    label->setBuddy(m_goTo);
    layout->addWidget(label);
    layout->addWidget(m_goTo);
    connect(m_goTo, &QLineEdit::returnPressed, this, &QlumPagedBytes::goTo);
}

void QlumPagedBytes::setTextName(const QString& name)
{
    m_edit->setAccessibleName(name);
}

// ---- all of it

void QlumPagedBytes::setBytes(const QByteArray& bytes)
{
    m_bytes = bytes;
    m_isModified = false;
    m_isPageEdited = false;
    m_fault.clear();
    showFrom(0);
}

bool QlumPagedBytes::bytes(QByteArray& bytes) const
{
    if (!m_fault.isEmpty())
        return false;
    bytes = m_bytes;
    if (m_isPageEdited)
        bytes.replace(m_start, m_length, m_page);
    return true;
}

bool QlumPagedBytes::setForm(Form form)
{
    if (form == m_form)
        return true;
    if (!leavePage())
        return false;
    m_form = form;
    showFrom(m_start);
    return true;
}

void QlumPagedBytes::replaceAll(const QByteArray& bytes)
{
    setBytes(bytes);
    m_isModified = true;
    emit edited();
}

void QlumPagedBytes::setReadOnly(bool readOnly)
{
    m_isReadOnly = readOnly;
    m_edit->setReadOnly(readOnly || m_isLossy);
}

// ---- pages

int QlumPagedBytes::aligned(int offset) const
{
    int start = std::clamp(offset, 0, m_bytes.size());
    if (m_form == Form::Hexadecimal)
        return start - start % hexLine;
    if (m_form == Form::Base64)
        return start - start % 3;
    if (start == m_bytes.size())
        return start;
    constexpr int mostContinuation = 3;
    int character = start;
    while (character > 0 && start - character < mostContinuation && (m_bytes.at(character) & 0xC0) == 0x80)
        --character;
    if (character > 0 && m_bytes.at(character) == '\n' && m_bytes.at(character - 1) == '\r')
        --character;
    return character;
}

int QlumPagedBytes::pageEnd(int start) const
{
    if (m_form != Form::Text)
        return std::min(start + (m_form == Form::Hexadecimal ? hexPage : base64Page), m_bytes.size());
    int paragraph = 0;
    int afterLine = start;
    int end = start;
    while (end < m_bytes.size() && end - start < textPage && paragraph < longestParagraph) {
        const bool endsLine = m_bytes.at(end++) == '\n';
        paragraph = endsLine ? 0 : paragraph + 1;
        if (endsLine)
            afterLine = end;
    }
    if (end == m_bytes.size())
        return end;
    const bool isHalfFull = afterLine - start > textPage / 2;
    return isHalfFull ? afterLine : std::max(aligned(end), start + 1);
}

int QlumPagedBytes::pageBefore(int start) const
{
    if (m_form != Form::Text)
        return aligned(std::max(start - (m_form == Form::Hexadecimal ? hexPage : base64Page), 0));
    int paragraph = 0;
    int begin = start;
    while (begin > 0 && start - begin < textPage && paragraph < longestParagraph)
        paragraph = m_bytes.at(--begin) == '\n' ? 0 : paragraph + 1;
    return aligned(begin);
}

void QlumPagedBytes::showFrom(int start)
{
    m_start = aligned(start);
    m_length = pageEnd(m_start) - m_start;
    m_pageSize = m_length;
    m_page = m_bytes.mid(m_start, m_length);
    m_isPageEdited = false;
    m_hasCrLf = false;
    m_isLossy = false;
    QString text;
    if (m_form == Form::Hexadecimal)
        text = hexText(m_page);
    else if (m_form == Form::Base64)
        text = QString::fromLatin1(m_page.toBase64());
    else
        m_isLossy = !decodeText(m_page, text, m_hasCrLf);
    m_isLoading = true;
    m_edit->showPage(text, m_form == Form::Hexadecimal, m_start);
    m_isLoading = false;
    m_edit->setReadOnly(m_isReadOnly || m_isLossy);
    showState();
}

// What was edited becomes part of the whole; false when it is wrong, and stays on the screen.
bool QlumPagedBytes::leavePage()
{
    if (!m_fault.isEmpty()) {
        say(m_fault);
        return false;
    }
    if (m_isPageEdited)
        m_bytes.replace(m_start, m_length, m_page);
    m_length = m_page.size();
    m_isPageEdited = false;
    return true;
}

void QlumPagedBytes::goTo()
{
    UaVariant offset;
    if (qlumFromNumberText(m_goTo->text(), OpcUaType_Int32, offset) && leavePage())
        showFrom(std::clamp(offset.toInt32(), 0, std::max(m_bytes.size() - 1, 0)));
}

void QlumPagedBytes::showState()
{
    const bool hasPages = m_start > 0 || m_start + m_length < m_bytes.size();
    m_row->setVisible(hasPages);
    const QLocale locale;
    m_where->setText(
        tr("Bytes %1 to %2 of %3")
            .arg(locale.toString(m_start), locale.toString(m_start + m_pageSize), locale.toString(size())));
    const bool isUneditable = m_isLossy && !m_isReadOnly;
    say(isUneditable
            ? tr("These bytes cannot be edited as text: they are no UTF-8, or their line ends differ.")
            : QString());
}

void QlumPagedBytes::say(const QString& note)
{
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
}

// ---- editing

bool QlumPagedBytes::read(const QString& text, QByteArray& bytes) const
{
    if (m_form == Form::Hexadecimal)
        return readHex(text, bytes);
    if (m_form == Form::Base64)
        return readBase64(text, bytes);
    bytes =
        m_hasCrLf ? QString(text).replace(QLatin1Char('\n'), QLatin1String("\r\n")).toUtf8() : text.toUtf8();
    return true;
}

void QlumPagedBytes::sltTextChanged()
{
    if (m_isLoading)
        return;
    m_isPageEdited = true;
    m_isModified = true;
    if (read(m_edit->rawText(), m_page)) {
        m_fault.clear();
        m_pageSize = m_page.size();
    } else {
        m_fault =
            m_form == Form::Base64 ? tr("This is no Base64.") : tr("Bytes are pairs of hexadecimal digits.");
    }
    showState();
    emit edited();
}

// The page is cut anew around it, so that what is laid out stays small.
void QlumPagedBytes::sltPasted(const QString& text)
{
    if (m_edit->isReadOnly())
        return;
    const QString page = m_edit->rawText();
    const QTextCursor cursor = m_edit->textCursor();
    QByteArray before, inserted, after;
    QString plain = text;
    plain.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    if (!read(page.left(cursor.selectionStart()), before) || !read(plain, inserted) ||
        !read(page.mid(cursor.selectionEnd()), after)) {
        say(m_form == Form::Base64 ? tr("What you pasted is no Base64.")
                                   : tr("What you pasted are no pairs of hexadecimal digits."));
        return;
    }
    m_bytes.replace(m_start, m_length, before + inserted + after);
    m_isModified = true;
    m_fault.clear();
    showFrom(m_start);
    emit edited();
}
