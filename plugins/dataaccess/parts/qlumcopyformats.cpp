#include <plugins/dataaccess/parts/qlumcopyformats.h>

#include <app/api/qlumnodeaddress.h>
#include <app/api/qlumtext.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumcelltext.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1String>

#include <map>
#include <utility>

namespace {
const char standardNamespace[] = "http://opcfoundation.org/UA/";

QString isoTime(const UaDateTime& time)
{
    return time.isNull() ? QString() : toQString(time.toFullString());
}

QString pathOf(const QlumCopiedNode& node, QlumNamespaceForm form)
{
    return qlumPathText(node.path.start, node.path.path, node.namespaces, form);
}

QString idOf(const QlumCopiedNode& node, QlumNamespaceForm form)
{
    return qlumNodeIdText(node.nodeId, node.namespaces, form);
}

QString lines(const std::vector<QlumCopiedNode>& nodes, QlumCopyFormat format)
{
    QStringList texts;
    for (const QlumCopiedNode& node : nodes)
        switch (format) {
        case QlumCopyFormat::NodeIdsByIndex:
            texts.append(idOf(node, QlumNamespaceForm::Index));
            break;
        case QlumCopyFormat::NodeIdsByUri:
            texts.append(idOf(node, QlumNamespaceForm::Uri));
            break;
        case QlumCopyFormat::PathsByIndex:
            texts.append(pathOf(node, QlumNamespaceForm::Index));
            break;
        default:
            texts.append(pathOf(node, QlumNamespaceForm::Uri));
            break;
        }
    return texts.join(QLatin1Char('\n'));
}

// ---- tables

QString csvText(const std::vector<QlumCopiedNode>& nodes)
{
    QByteArray text =
        qlumCsvRecord({"Server", "Node Id", "Browse Path", "Index Range", "Field", "Display Name",
                       "Data Type", "Unit", "Value", "Status", "Source Time", "Server Time"});
    for (const QlumCopiedNode& node : nodes) {
        const UaDataValue& value = node.value;
        QStringList fields{node.server,
                           idOf(node, QlumNamespaceForm::Uri),
                           pathOf(node, QlumNamespaceForm::Uri),
                           node.indexRange,
                           node.fieldPath,
                           node.displayName,
                           node.dataType,
                           node.unit};
        if (node.hasValue)
            fields << qlumCopyText(value.value(), QlumValueContext())
                   << qlumStatusText(value.statusCode().code()) << isoTime(value.sourceTimestamp())
                   << isoTime(value.serverTimestamp());
        else
            fields << QString() << QString() << QString() << QString();
        text += qlumCsvRecord(fields);
    }
    return QString::fromUtf8(text);
}

QJsonValue jsonValue(const UaDataValue& value)
{
    UaString text;
    if (UaValueText::toJson(value, nullptr, text).isBad())
        return {};
    return QJsonDocument::fromJson('[' + toQString(text).toUtf8() + ']').array().at(0);
}

QString jsonText(const std::vector<QlumCopiedNode>& nodes)
{
    QJsonArray array;
    for (const QlumCopiedNode& node : nodes) {
        QJsonObject object{{"server", node.server},
                           {"nodeId", idOf(node, QlumNamespaceForm::Uri)},
                           {"browsePath", pathOf(node, QlumNamespaceForm::Uri)},
                           {"displayName", node.displayName},
                           {"dataType", node.dataType}};
        if (!node.unit.isEmpty())
            object.insert(QStringLiteral("unit"), node.unit);
        if (!node.indexRange.isEmpty())
            object.insert(QStringLiteral("indexRange"), node.indexRange);
        if (!node.fieldPath.isEmpty())
            object.insert(QStringLiteral("field"), node.fieldPath);
        if (node.hasValue)
            object.insert(QStringLiteral("value"), jsonValue(node.value));
        array.append(object);
    }
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Indented));
}

// ---- programs

// A string with the escapes that JSON, Python and TOML have in common.
QString literal(const QString& text)
{
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

using NodesByServer = std::map<std::pair<QString, QString>, std::vector<const QlumCopiedNode*>>;

NodesByServer byServer(const std::vector<QlumCopiedNode>& nodes)
{
    NodesByServer servers;
    for (const QlumCopiedNode& node : nodes)
        servers[{node.server, node.serverUrl}].push_back(&node);
    return servers;
}

QString urlOf(const std::pair<QString, QString>& server)
{
    return literal(server.second.isEmpty() ? QStringLiteral("opc.tcp://HOST:4840") : server.second);
}

QString uriOf(const QlumCopiedNode& node)
{
    const int index = node.nodeId.namespaceIndex();
    return index == 0 ? QString::fromLatin1(standardNamespace) : node.namespaces.value(index);
}

QString bareId(const QlumCopiedNode& node)
{
    UaNodeId id = node.nodeId;
    id.setNamespaceIndex(0);
    return toQString(id.toXmlString());
}

QString pythonText(const std::vector<QlumCopiedNode>& nodes)
{
    QString text = QStringLiteral("#!/usr/bin/env python3\n"
                                  "# Reads the nodes once. Needs: pip install asyncua\n"
                                  "import asyncio\n\n"
                                  "from asyncua import Client\n\n"
                                  "USER = \"\"  # empty: anonymous\n"
                                  "PASSWORD = \"\"\n\n"
                                  "# url: [(namespace URI, identifier, name), ...]\n"
                                  "SERVERS = {\n");
    for (const auto& [server, itsNodes] : byServer(nodes)) {
        text += QStringLiteral("    %1: [\n").arg(urlOf(server));
        for (const QlumCopiedNode* node : itsNodes)
            text += QLatin1String("        (") + literal(uriOf(*node)) + QLatin1String(", ") +
                    literal(bareId(*node)) + QLatin1String(", ") + literal(node->displayName) +
                    QLatin1String("),\n");
        text += QLatin1String("    ],\n");
    }
    return text + QStringLiteral("}\n\n\n"
                                 "async def read(url, nodes):\n"
                                 "    client = Client(url=url)\n"
                                 "    if USER:\n"
                                 "        client.set_user(USER)\n"
                                 "        client.set_password(PASSWORD)\n"
                                 "    async with client:\n"
                                 "        for uri, identifier, name in nodes:\n"
                                 "            index = await client.get_namespace_index(uri)\n"
                                 "            node = client.get_node(f\"ns={index};{identifier}\")\n"
                                 "            data = await node.read_data_value(raise_on_bad_status=False)\n"
                                 "            print(name, data.Value.Value, data.StatusCode, "
                                 "data.SourceTimestamp, sep=\"\\t\")\n\n\n"
                                 "async def main():\n"
                                 "    for url, nodes in SERVERS.items():\n"
                                 "        await read(url, nodes)\n\n\n"
                                 "asyncio.run(main())\n");
}

QString telegrafText(const std::vector<QlumCopiedNode>& nodes)
{
    QString text;
    for (const auto& [server, itsNodes] : byServer(nodes)) {
        text += QLatin1String("[[inputs.opcua]]\n  name = ") + literal(server.first) +
                QLatin1String("\n  endpoint = ") + urlOf(server) +
                QLatin1String("\n  security_policy = \"auto\"\n"
                              "  security_mode = \"auto\"\n"
                              "  auth_method = \"Anonymous\"  # or \"UserName\", with these two filled in\n"
                              "  # username = \"USER\"\n"
                              "  # password = \"PASSWORD\"\n"
                              "  nodes = [\n");
        for (const QlumCopiedNode* node : itsNodes) {
            const QString id = bareId(*node);
            text += QStringLiteral("    {name=%1, namespace=\"%2\", identifier_type=\"%3\", identifier=")
                        .arg(literal(node->displayName))
                        .arg(node->nodeId.namespaceIndex())
                        .arg(id.at(0)) +
                    literal(id.mid(2)) + QLatin1String("},\n");
        }
        text += QLatin1String("  ]\n\n");
    }
    return text;
}
} // namespace

bool qlumNeedsPaths(QlumCopyFormat format)
{
    return format == QlumCopyFormat::PathsByIndex || format == QlumCopyFormat::PathsByUri ||
           format == QlumCopyFormat::Csv || format == QlumCopyFormat::Json;
}

QString qlumCopyNodes(const std::vector<QlumCopiedNode>& nodes, QlumCopyFormat format)
{
    switch (format) {
    case QlumCopyFormat::Csv:
        return csvText(nodes);
    case QlumCopyFormat::Json:
        return jsonText(nodes);
    case QlumCopyFormat::Python:
        return pythonText(nodes);
    case QlumCopyFormat::Telegraf:
        return telegrafText(nodes);
    default:
        return lines(nodes, format);
    }
}
