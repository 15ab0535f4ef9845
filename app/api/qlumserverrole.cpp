#include <app/api/qlumserverrole.h>

#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uastring.h>

#include <QCoreApplication>
#include <QLatin1String>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumServerRole", text)

namespace {
struct RoleRow
{
    QlumServerRole role;
    const char* name;
    const char* explanation;
};

constexpr RoleRow roles[] = {
    {QlumServerRole::Look, TEXT("Look"),
     TEXT("Only what changes nothing is sent: reading, browsing, watching values and events.")},
    {QlumServerRole::Operate, TEXT("Operate"),
     TEXT("Values may be written and methods called, too. History, nodes and the server's configuration stay "
          "as they are.")},
    {QlumServerRole::Commission, TEXT("Commission"),
     TEXT("Everything may be sent: also changes of attributes, history, nodes, files and the server's "
          "configuration.")},
};

const RoleRow& rowOf(QlumServerRole role)
{
    return roles[static_cast<std::size_t>(role)];
}

// Nothing that a server says ends up in the text of a status, so nobody else can say this.
constexpr char refusalText[] = "Not sent: this server is set to ";
constexpr QLatin1String refusalMark(refusalText, sizeof(refusalText) - 1);
} // namespace
#undef TEXT

QString qlumRoleKey(QlumServerRole role)
{
    return QLatin1String(rowOf(role).name);
}

std::optional<QlumServerRole> qlumRoleFromKey(const QString& key)
{
    for (const RoleRow& row : roles)
        if (key == QLatin1String(row.name))
            return row.role;
    return std::nullopt;
}

QString qlumRoleName(QlumServerRole role)
{
    return QCoreApplication::translate("QlumServerRole", rowOf(role).name);
}

QString qlumRoleExplanation(QlumServerRole role)
{
    return QCoreApplication::translate("QlumServerRole", rowOf(role).explanation);
}

QlumServerRole qlumRoleOfNewServers()
{
    return qlumRoleFromKey(QlumSettings::newServerRole.value()).value_or(QlumServerRole::Look);
}

UaStatus qlumRefusal(QlumServerRole role)
{
    return UaStatus(OpcUa_BadUserAccessDenied, toUaString(refusalMark + qlumRoleKey(role)));
}

std::optional<QlumServerRole> qlumRefusingRole(const UaStatus& status)
{
    const QString text = toQString(status.diagnosticText());
    if (status.statusCode() != OpcUa_BadUserAccessDenied || !text.startsWith(refusalMark))
        return std::nullopt;
    return qlumRoleFromKey(text.mid(refusalMark.size()));
}
