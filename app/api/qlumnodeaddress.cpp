#include <app/api/qlumnodeaddress.h>

#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>

#include <QChar>
#include <QCoreApplication>
#include <QLatin1String>

#include <limits>
#include <utility>

namespace {
const QLatin1String uriMark("nsu=");
constexpr int maximumPathSteps = 100;

QString addressWords(const char* text)
{
    return QCoreApplication::translate("QlumNodeAddress", text);
}

bool readNodeId(const QString& text, UaNodeId& nodeId, QString& uri)
{
    QString rest = text;
    if (text.startsWith(uriMark)) {
        const int end = text.indexOf(QLatin1Char(';'));
        if (end < 0)
            return false;
        // as written in expanded node ids: what would be mistaken is escaped
        uri = text.mid(uriMark.size(), end - uriMark.size())
                  .replace(QLatin1String("%3B"), QLatin1String(";"), Qt::CaseInsensitive)
                  .replace(QLatin1String("%25"), QLatin1String("%"));
        rest = text.mid(end + 1);
        if (uri.isEmpty() || rest.startsWith(QLatin1String("ns=")))
            return false;
    }
    bool isId = false;
    nodeId = UaNodeId::fromString(rest.toUtf8().toStdString(), &isId);
    return isId;
}

QString unescaped(const QString& text)
{
    QString plain;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('&') && i + 1 < text.size())
            ++i;
        plain += text.at(i);
    }
    return plain;
}

QString escaped(const QString& plain, QLatin1String special)
{
    QString text;
    for (const QChar c : plain) {
        if (special.contains(c))
            text += QLatin1Char('&');
        text += c;
    }
    return text;
}

QString escapedName(const QString& name)
{
    return escaped(name, QLatin1String("/.<>:#!&"));
}

// Where the sign stands without a '&' before it; -1 for nowhere.
int unescapedPlace(const QString& text, QChar sign)
{
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == sign)
            return i;
        i += text.at(i) == QLatin1Char('&') ? 1 : 0;
    }
    return -1;
}

// Up to the next slash that has no '&' before it.
QString takeElement(const QString& text, int& at)
{
    const int begin = at;
    while (at < text.size() && text.at(at) != QLatin1Char('/'))
        at += text.at(at) == QLatin1Char('&') ? 2 : 1;
    return text.mid(begin, at - begin);
}

bool readStep(const QString& text, QlumPathStep& step)
{
    if (text.startsWith(uriMark)) {
        const int end = unescapedPlace(text, QLatin1Char(';'));
        step.namespaceUri = unescaped(text.mid(uriMark.size(), end - uriMark.size()));
        step.name = unescaped(text.mid(end + 1));
        return end >= 0 && !step.namespaceUri.isEmpty() && !step.name.isEmpty();
    }
    const int colon = text.indexOf(QLatin1Char(':'));
    bool isNumber = false;
    const uint index = text.left(qMax(0, colon)).toUInt(&isNumber);
    if (isNumber && index > std::numeric_limits<OpcUa_UInt16>::max())
        return false;
    step.namespaceIndex = isNumber ? static_cast<OpcUa_UInt16>(index) : OpcUa_UInt16(0);
    step.name = unescaped(isNumber ? text.mid(colon + 1) : text);
    return !step.name.isEmpty();
}

QString readPath(const QString& text, std::vector<QlumPathStep>& path)
{
    for (int at = 0; at < text.size();) {
        QlumPathStep step;
        ++at; // the slash
        if (!readStep(takeElement(text, at), step))
            return addressWords("A name of the browse path is empty, or its namespace is none.");
        path.push_back(std::move(step));
        if (path.size() > maximumPathSteps)
            return addressWords("The browse path is too long.");
    }
    const bool namesRoot = !path.empty() && path.front() == QlumPathStep{0, {}, QStringLiteral("Root")};
    if (namesRoot)
        path.erase(path.begin());
    return path.empty() ? addressWords("The browse path names the root only.") : QString();
}

QString placed(const QString& uri, const QStringList& namespaces, OpcUa_UInt16& index)
{
    if (uri.isEmpty()) {
        return index == 0 || index < namespaces.size()
                   ? QString()
                   : addressWords("The server has no namespace %1.").arg(index);
    }
    const int found = namespaces.indexOf(uri);
    if (found < 0)
        return addressWords("The server has no namespace \"%1\".").arg(uri);
    index = static_cast<OpcUa_UInt16>(found);
    return {};
}
} // namespace

QlumNodeAddress qlumReadAddress(const QString& text)
{
    QlumNodeAddress address;
    const QString trimmed = text.trimmed();
    if (readNodeId(trimmed, address.nodeId, address.namespaceUri)) {
        if (address.nodeId.isNull())
            address.fault = addressWords("This is the null node id, which names no node.");
        return address;
    }
    const int slash = trimmed.indexOf(QLatin1Char('/'));
    address.namespaceUri.clear();
    address.nodeId = UaNodeId(OpcUaId_RootFolder);
    const bool isPath =
        slash == 0 || (slash > 0 && readNodeId(trimmed.left(slash), address.nodeId, address.namespaceUri));
    if (trimmed.isEmpty())
        address.fault = addressWords("There is no node id.");
    else if (isPath)
        address.fault = readPath(trimmed.mid(slash), address.path);
    else
        address.fault = addressWords("This is neither a node id nor a browse path.");
    return address;
}

QString qlumPlaceAddress(QlumNodeAddress& address, const QStringList& namespaces)
{
    OpcUa_UInt16 index = address.nodeId.namespaceIndex();
    QString fault = placed(address.namespaceUri, namespaces, index);
    address.nodeId.setNamespaceIndex(index);
    for (QlumPathStep& step : address.path)
        if (fault.isEmpty())
            fault = placed(step.namespaceUri, namespaces, step.namespaceIndex);
    return fault;
}

QString qlumNodeIdText(const UaNodeId& nodeId, const QStringList& namespaces, QlumNamespaceForm form)
{
    const int index = nodeId.namespaceIndex();
    if (form == QlumNamespaceForm::Index || index == 0 || index >= namespaces.size() ||
        namespaces.at(index).isEmpty())
        return toQString(nodeId.toXmlString());
    UaNodeId bare = nodeId;
    bare.setNamespaceIndex(0);
    QString uri = namespaces.at(index);
    uri.replace(QLatin1Char('%'), QLatin1String("%25")).replace(QLatin1Char(';'), QLatin1String("%3B"));
    return uriMark + uri + QLatin1Char(';') + toQString(bare.toXmlString());
}

QString qlumPathStep(OpcUa_UInt16 namespaceIndex, const QString& name)
{
    return (namespaceIndex > 0 ? QString::number(namespaceIndex) + QLatin1Char(':') : QString()) +
           escapedName(name);
}

QString qlumPathAbove(const QString& path)
{
    int last = 0;
    for (int at = 0; at < path.size(); takeElement(path, ++at))
        last = at;
    return path.left(last);
}

QString qlumPathText(const UaNodeId& start, const std::vector<QlumPathStep>& path,
                     const QStringList& namespaces, QlumNamespaceForm form)
{
    QString text = start.isNull() ? QString() : qlumNodeIdText(start, namespaces, form);
    for (const QlumPathStep& step : path) {
        const int index = step.namespaceIndex;
        text += QLatin1Char('/');
        if (form == QlumNamespaceForm::Uri && index > 0 && index < namespaces.size())
            text += uriMark + escaped(namespaces.at(index), QLatin1String("/;&")) + QLatin1Char(';') +
                    escapedName(step.name);
        else
            text += qlumPathStep(step.namespaceIndex, step.name);
    }
    return text;
}
