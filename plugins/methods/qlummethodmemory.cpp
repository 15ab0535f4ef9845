#include <plugins/methods/qlummethodmemory.h>

#include <QStringList>

#include <iterator>

namespace {
constexpr int longestText = 64 * 1024; // of a value in the project file
constexpr int maximumMethods = 1000;   // read from a project file

const QLatin1String arrayKey("Methods");
const QLatin1String serverKey("ServerId");
const QLatin1String methodKey("Method");
const QLatin1String valuesKey("Values");
} // namespace

QVariant QlumMethodMemory::value(const Key& method, const QString& name) const
{
    const QString text = m_methods.value(method).value(name);
    return text.isEmpty() ? QVariant() : QVariant(text);
}

void QlumMethodMemory::setValue(const Key& method, const QString& name, const QVariant& value)
{
    QMap<QString, QString>& values = m_methods[method];
    const QString text = value.toString();
    if (text.isEmpty() || text.size() > longestText)
        values.remove(name);
    else
        values.insert(name, text);
}

void QlumMethodMemory::removeServer(unsigned int serverId)
{
    for (auto method = m_methods.begin(); method != m_methods.end();)
        method = method.key().first == serverId ? m_methods.erase(method) : std::next(method);
}

void QlumMethodMemory::save(QSettings& settings) const
{
    settings.beginWriteArray(arrayKey, m_methods.size());
    int index = 0;
    for (auto method = m_methods.cbegin(); method != m_methods.cend(); ++method, ++index) {
        settings.setArrayIndex(index);
        settings.setValue(serverKey, method.key().first);
        settings.setValue(methodKey, method.key().second);
        QStringList values;
        for (auto value = method->cbegin(); value != method->cend(); ++value)
            values << value.key() << value.value();
        settings.setValue(valuesKey, values);
    }
    settings.endArray();
}

void QlumMethodMemory::load(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    m_methods.clear();
    const int count = qMin(settings.beginReadArray(arrayKey), maximumMethods);
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        const int stored = settings.value(serverKey, -1).toInt();
        const QStringList values = settings.value(valuesKey).toStringList();
        if (!serverIdMap.contains(stored))
            continue;
        const Key method{static_cast<unsigned int>(serverIdMap.value(stored)),
                         settings.value(methodKey).toString()};
        for (int k = 0; k + 1 < values.size(); k += 2)
            setValue(method, values.at(k), values.at(k + 1));
    }
    settings.endArray();
}
