// A project or settings file from somebody else. QSettings must read from what is written of it what our own
// parser read, and must find no entry there from which it builds more than text, bytes or a few numbers.
#include <app/ini/qluminitext.h>

#include <QByteArray>
#include <QFile>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>
#include <QVariantList>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace {

void check(bool holds, const QString& key)
{
    if (holds)
        return;
    std::fprintf(stderr, "wrong: %s\n", key.toUtf8().constData());
    std::abort();
}

bool isObject(const QString& element)
{
    return element.startsWith(QLatin1Char('@')) && !element.startsWith(QLatin1String("@@"));
}

QString textOf(const QString& element)
{
    return element.startsWith(QLatin1Char('@')) ? element.mid(1) : element;
}

bool isRead(const QString& element, const QVariant& value)
{
    const auto inner = [&element](const char* type) {
        const QString begin = QStringLiteral("@%1(").arg(QLatin1String(type));
        return element.mid(begin.size(), element.size() - begin.size() - 1);
    };
    if (!isObject(element))
        return value == QVariant(textOf(element));
    switch (value.type()) {
    case QVariant::Invalid:
        return element == QLatin1String("@Invalid()");
    case QVariant::ByteArray:
        return value.toByteArray() == inner("ByteArray").toLatin1();
    case QVariant::String: // the last is for numbers that are none
        return value == QVariant(inner("String")) || value == QVariant(element);
    case QVariant::Rect:
    case QVariant::Size:
    case QVariant::Point:
        return true;
    default:
        return false;
    }
}

bool isRead(const QStringList& elements, const QVariant& value)
{
    if (elements.size() == 1)
        return isRead(elements.first(), value);
    if (std::none_of(elements.begin(), elements.end(), isObject)) {
        QStringList texts;
        std::transform(elements.begin(), elements.end(), std::back_inserter(texts), textOf);
        return value == QVariant(texts);
    }
    const QVariantList values = value.toList();
    return value.type() == QVariant::List &&
           std::equal(elements.begin(), elements.end(), values.begin(), values.end(),
                      [](const QString& element, const QVariant& one) { return isRead(element, one); });
}

// Each in a file of its own: QSettings keeps what it has read of a file for a while.
QString freshFile(const QByteArray& content)
{
    static const QTemporaryDir folder;
    static unsigned int count = 0;
    const QString name = folder.filePath(QString::number(count++));
    QFile file(name);
    check(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), name);
    return name;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QlumIniText text = qlumReadIni({reinterpret_cast<const char*>(data), size});
    const QByteArray written = qlumWriteIni(text.entries);
    const QlumIniText again = qlumReadIni({written.constData(), static_cast<std::size_t>(written.size())});
    check(again.entries == text.entries && again.refused.isEmpty(), QStringLiteral("second reading"));
    const QString name = freshFile(written);
    {
        const QSettings settings(name, QSettings::IniFormat);
        check(settings.allKeys() == QStringList(text.entries.keys()), QStringLiteral("keys"));
        for (auto entry = text.entries.begin(); entry != text.entries.end(); ++entry)
            check(isRead(entry.value(), settings.value(entry.key())), entry.key());
        check(settings.status() == QSettings::NoError, QStringLiteral("status"));
    }
    QFile::remove(name);
    return 0;
}
