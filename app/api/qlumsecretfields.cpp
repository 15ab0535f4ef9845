#include <app/api/qlumsecretfields.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumserviceneed.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <uabase/values/uastring.h>

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <ranges>
#include <string>

namespace {
constexpr int textLength = 1000;
constexpr OpcUa_UInt32 shownElements = 20;

struct SecretArgument
{
    OpcUa_UInt32 method; // of namespace 0
    int argument;
};

constexpr SecretArgument secretArguments[] = {
    {OpcUaId_ServerConfigurationType_UpdateCertificate, 5},
    {OpcUaId_ServerConfiguration_UpdateCertificate, 5},
    {OpcUaId_ApplicationConfigurationFolderType_ApplicationName_Placeholder_UpdateCertificate, 5},
    {OpcUaId_ProvisionableDeviceType_ApplicationName_Placeholder_UpdateCertificate, 5},
    {OpcUaId_KeyCredentialConfigurationType_UpdateCredential, 1},
    {OpcUaId_UserManagementType_AddUser, 1},
    {OpcUaId_UserManagement_AddUser, 1},
    {OpcUaId_UserManagementType_ModifyUser, 2},
    {OpcUaId_UserManagement_ModifyUser, 2},
    {OpcUaId_UserManagementType_ChangePassword, 0},
    {OpcUaId_UserManagementType_ChangePassword, 1},
    {OpcUaId_UserManagement_ChangePassword, 0},
    {OpcUaId_UserManagement_ChangePassword, 1},
};

bool isBytes(OpcUa_Byte type)
{
    return type == OpcUaType_ByteString || type == OpcUaType_XmlElement;
}

QString scalarText(const UaVariant& value)
{
    if (value.type() == OpcUaType_ByteString)
        return QCoreApplication::translate("QlumSecretFields", "(%n byte(s))", nullptr,
                                           value.toByteString().length());
    const QString text = toQString(value.toString());
    return text.contains(QLatin1String("PRIVATE KEY-----")) ? qlumBlanked() : text;
}
} // namespace

QString qlumBlanked()
{
    return QStringLiteral("\u2022\u2022\u2022\u2022\u2022\u2022");
}

bool qlumIsSecretName(std::string_view name)
{
    std::string plain;
    for (const char letter : name)
        if (std::isalnum(static_cast<unsigned char>(letter)))
            plain += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    static constexpr std::array words = {"password",     "passwd",   "passphrase",          "secret",
                                         "privatekey",   "apikey",   "authenticationtoken", "accesstoken",
                                         "refreshtoken", "tokendata"};
    return std::ranges::any_of(words,
                               [&plain](const char* word) { return plain.find(word) != std::string::npos; });
}

bool qlumIsSecretArgument(const OpcUa_CallMethodRequest& method, int argument, const UaString& purpose,
                          const QlumCallNote* note)
{
    if (note && (note->isSecret || note->secretArguments.contains(argument)))
        return true;
    const OpcUa_NodeId& id = method.MethodId;
    if (id.NamespaceIndex == 0 && id.IdentifierType == OpcUa_IdentifierType_Numeric)
        return std::ranges::any_of(secretArguments, [&](const SecretArgument& row) {
            return row.method == id.Identifier.Numeric && row.argument == argument;
        });
    // the same methods under ids that the server has given them
    const OpcUa_Byte type = method.InputArguments[argument].Datatype;
    return purpose.view().starts_with(QlumPurpose::serverConfiguration) &&
           (isBytes(type) || type == OpcUaType_String);
}

bool qlumIsSecretNode(const OpcUa_NodeId& node, const QlumCallNote* note)
{
    if (note && note->isSecret)
        return true;
    if (node.IdentifierType != OpcUa_IdentifierType_String)
        return false;
    const QString id = toQString(UaString(node.Identifier.String));
    const QString last =
        id.mid(id.lastIndexOf(QLatin1Char('.')) + 1); // of a path the part that names the node
    return qlumIsSecretName(last.toStdString());
}

QString qlumBlankedText(const OpcUa_Variant& raw)
{
    const UaVariant value(raw);
    if (value.isNull())
        return {};
    if (value.isScalar())
        return qlumCutText(qlumSingleLine(scalarText(value)), textLength);
    QStringList elements;
    const OpcUa_UInt32 count = value.elementCount();
    for (OpcUa_UInt32 i = 0; i < std::min(count, shownElements); ++i)
        elements.append(scalarText(value.at(i)));
    if (count > shownElements)
        elements.append(QCoreApplication::translate("QlumSecretFields", "... %n in all", nullptr,
                                                    static_cast<int>(count)));
    return qlumCutText(
        qlumSingleLine(QLatin1Char('{') + elements.join(QLatin1String(" | ")) + QLatin1Char('}')),
        textLength);
}
