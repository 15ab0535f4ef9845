// What is sent to a server in each of its roles.
#include <app/api/qlumserverrole.h>
#include <app/api/qlumserviceneed.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <opcua/opcua_types.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumserviceguard.h>
#include <servers/qlumsideconnect.h>
#include <tests/gui/servers/servernodefixture.h>
#include <tests/support/fakestack.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/servicewatch.h>
#include <uaclientsdk/uasession.h>

#include <QObject>
#include <QSettings>
#include <QString>
#include <QTemporaryDir>
#include <QTest>

#include <fstream>
#include <functional>
#include <memory>
#include <regex>
#include <string>
#include <vector>

namespace {
using Role = QlumServerRole;
using UaClientSdk::ServiceSettings;

constexpr Role allRoles[] = {Role::Look, Role::Operate, Role::Commission};

// ---- the tables

bool isServiceRequest(const OpcUa_EncodeableType& type)
{
    return type.FieldCount > 0 && type.Fields[0].StructureType == &OpcUa_RequestHeader_EncodeableType;
}

TEST(ServiceNeeds, EveryServiceOfTheStackIsDecidedAbout)
{
    int services = 0;
    for (OpcUa_UInt32 id = 1; id < 100000; ++id) {
        const OpcUa_EncodeableType* type = OpcUa_EncodeableType_FindByTypeId(id);
        if (!type || !isServiceRequest(*type))
            continue;
        ++services;
        EXPECT_TRUE(qlumServiceRule(*type)) << type->TypeName << " is new: which role does it need?";
    }
    EXPECT_GE(services, 39);
    EXPECT_FALSE(qlumServiceRule(OpcUa_Argument_EncodeableType));
    const ServiceSettings settings;
    QlumOwnSubscriptions own;
    OpcUa_Argument unknown;
    OpcUa_EncodeableObject_Initialize(&OpcUa_Argument_EncodeableType, &unknown);
    EXPECT_EQ(qlumNeedOf({OpcUa_Argument_EncodeableType, &unknown, settings.purpose, nullptr}, own),
              Role::Commission);
}

Role needOfMethod(OpcUa_UInt32 id, const char* purpose, const UaVariant& argument = UaVariant(),
                  OpcUa_UInt16 nameSpace = 0)
{
    OpcUa_CallMethodRequest method;
    OpcUa_EncodeableObject_Initialize(&OpcUa_CallMethodRequest_EncodeableType, &method);
    method.MethodId.NamespaceIndex = nameSpace;
    method.MethodId.Identifier.Numeric = id;
    OpcUa_Variant first = *argument.get();
    method.NoOfInputArguments = argument.isNull() ? 0 : 1;
    method.InputArguments = &first;
    OpcUa_CallRequest request;
    OpcUa_EncodeableObject_Initialize(&OpcUa_CallRequest_EncodeableType, &request);
    request.NoOfMethodsToCall = 1;
    request.MethodsToCall = &method;
    const QlumOwnSubscriptions own;
    return qlumNeedOf({OpcUa_CallRequest_EncodeableType, &request, UaString(purpose), nullptr}, own);
}

// Each copy of a method in namespace 0 is as good an id as that of its type.
TEST(ServiceNeeds, NoCopyOfAMethodIsForgotten)
{
    std::ifstream header(TAVELIN_TEST_DATA "/../../stack/generated/include/opcua/opcua_identifiers.h");
    const std::regex line("#define OpcUaId_(\\w+)_(\\w+) (\\d+)");
    const std::regex harmless("ConditionRefresh2?|GetMonitoredItems|ResendData|GetRejectedList|Read|Close|"
                              "GetPosition");
    const std::regex harmful("Write|OpenWithMasks|CloseAndUpdate|AddCertificate|RemoveCertificate|"
                             "RequestServerStateChange|UpdateCertificate|ApplyChanges|CancelChanges|"
                             "CreateSigningRequest|ResetToServerDefaults|CreateFile|DeleteFileSystemObject");
    int found = 0;
    std::smatch match;
    for (std::string text; std::getline(header, text);) {
        if (!std::regex_match(text, match, line))
            continue;
        const auto id = static_cast<OpcUa_UInt32>(std::stoul(match[3]));
        const bool isOpen = match[2] == "Open";
        const bool isHarmless = std::regex_match(match[2].str(), harmless);
        if (!isOpen && !isHarmless && !std::regex_match(match[2].str(), harmful))
            continue;
        ++found;
        const UaVariant argument = isOpen ? UaVariant(OpcUa_Byte{1}) : UaVariant();
        EXPECT_EQ(needOfMethod(id, "", argument), isOpen || isHarmless ? Role::Look : Role::Commission)
            << match[1] << "_" << match[2];
        if (isOpen)
            for (const OpcUa_Byte mode : {OpcUa_Byte{0}, OpcUa_Byte{2}, OpcUa_Byte{3}, OpcUa_Byte{6}})
                EXPECT_EQ(needOfMethod(id, "", UaVariant(mode)), Role::Commission) << match[1];
    }
    EXPECT_GT(found, 120);
    EXPECT_EQ(needOfMethod(OpcUaId_FileType_Open, ""), Role::Commission) << "with no mode at all";
}

TEST(ServiceNeeds, PurposeTellsWhatMethodsOfInstancesAreFor)
{
    EXPECT_EQ(needOfMethod(7, "", {}, 2), Role::Operate);
    EXPECT_EQ(needOfMethod(7, "Trust", {}, 2), Role::Operate);
    EXPECT_EQ(needOfMethod(7, QlumPurpose::trustList, {}, 2), Role::Commission);
    EXPECT_EQ(needOfMethod(7, "ServerConfiguration: Pushing a certificate", {}, 2), Role::Commission);
    EXPECT_EQ(needOfMethod(7, "FileReading: Fetching a log", {}, 2), Role::Look);
    EXPECT_EQ(needOfMethod(OpcUaId_FileType_Write, QlumPurpose::fileReading), Role::Commission)
        << "an id that tells is not overruled";
    const QString purpose = qlumPurpose(QlumPurpose::fileReading, "Fetching a log");
    EXPECT_EQ(needOfMethod(7, purpose.toStdString().c_str(), {}, 2), Role::Look);
    EXPECT_EQ(qlumPurposeWords(purpose), "Fetching a log");
}

TEST(ServiceNeeds, OnlyOwnSubscriptionsMayBeTriggeredOrTakenOverByWhoLooks)
{
    const auto server = std::make_shared<QlumGuardedServer>(1, Role::Look);
    QlumServiceGuard guard(server);
    const UaString purpose;
    OpcUa_SetTriggeringRequest triggering{};
    triggering.SubscriptionId = 7;
    OpcUa_UInt32 ids[] = {7, 8};
    OpcUa_TransferSubscriptionsRequest transfer{};
    transfer.NoOfSubscriptionIds = 1;
    transfer.SubscriptionIds = ids;
    const auto isAllowed = [&](const OpcUa_EncodeableType& type, const void* request) {
        return guard.mayCall({type, request, purpose, nullptr}).isGood();
    };
    EXPECT_FALSE(isAllowed(OpcUa_SetTriggeringRequest_EncodeableType, &triggering));
    EXPECT_FALSE(isAllowed(OpcUa_TransferSubscriptionsRequest_EncodeableType, &transfer));
    const OpcUa_CreateSubscriptionRequest create{};
    const auto witness =
        guard.witness({OpcUa_CreateSubscriptionRequest_EncodeableType, &create, purpose, nullptr});
    ASSERT_TRUE(witness);
    OpcUa_CreateSubscriptionResponse created{};
    created.SubscriptionId = 7;
    witness->serviceEnded(
        1, {UaStatus(), &OpcUa_CreateSubscriptionResponse_EncodeableType, &created, {}, 1, {}});
    EXPECT_TRUE(isAllowed(OpcUa_SetTriggeringRequest_EncodeableType, &triggering));
    EXPECT_TRUE(isAllowed(OpcUa_TransferSubscriptionsRequest_EncodeableType, &transfer));
    transfer.NoOfSubscriptionIds = 2;
    EXPECT_FALSE(isAllowed(OpcUa_TransferSubscriptionsRequest_EncodeableType, &transfer));
}

// ---- sessions

struct Deed
{
    const char* what;
    const OpcUa_EncodeableType& request;
    Role need;
    std::function<UaStatus(QlumSessionServices&)> act;
};

UaStatus writeOne(QlumSessionServices& services, OpcUa_UInt32 attribute)
{
    UaWriteValues values(2);
    values[0].AttributeId = OpcUa_Attributes_Value;
    values[1].AttributeId = attribute;
    ServiceSettings settings;
    UaStatusCodeArray results;
    return services.write(settings, values, results);
}

template <typename Items, typename Results>
auto withItems(UaStatus (QlumSessionServices::*act)(ServiceSettings&, const Items&, Results&))
{
    return [act](QlumSessionServices& services) {
        ServiceSettings settings;
        Results results;
        return (services.*act)(settings, Items(1), results);
    };
}

std::vector<Deed> changingDeeds()
{
    using S = QlumSessionServices;
    const auto& history = OpcUa_HistoryUpdateRequest_EncodeableType;
    return {
        {"writing a value", OpcUa_WriteRequest_EncodeableType, Role::Operate,
         [](S& services) { return writeOne(services, OpcUa_Attributes_Value); }},
        {"writing a description beside a value", OpcUa_WriteRequest_EncodeableType, Role::Commission,
         [](S& services) { return writeOne(services, OpcUa_Attributes_Description); }},
        {"calling a method", OpcUa_CallRequest_EncodeableType, Role::Operate,
         [](S& services) {
             ServiceSettings settings;
             UaClientSdk::CallIn in;
             in.methodId = UaNodeId(7, 2);
             UaClientSdk::CallOut out;
             return services.call(settings, in, out);
         }},
        {"calling methods", OpcUa_CallRequest_EncodeableType, Role::Operate, withItems(&S::callList)},
        {"adding nodes", OpcUa_AddNodesRequest_EncodeableType, Role::Commission, withItems(&S::addNodes)},
        {"adding references", OpcUa_AddReferencesRequest_EncodeableType, Role::Commission,
         withItems(&S::addReferences)},
        {"deleting nodes", OpcUa_DeleteNodesRequest_EncodeableType, Role::Commission,
         withItems(&S::deleteNodes)},
        {"deleting references", OpcUa_DeleteReferencesRequest_EncodeableType, Role::Commission,
         withItems(&S::deleteReferences)},
        {"updating data", history, Role::Commission, withItems(&S::historyUpdateData)},
        {"updating events", history, Role::Commission, withItems(&S::historyUpdateEvents)},
        {"deleting history", history, Role::Commission, withItems(&S::historyDeleteRawModified)},
        {"deleting values", history, Role::Commission, withItems(&S::historyDeleteAtTime)},
        {"deleting events", history, Role::Commission, withItems(&S::historyDeleteEvents)},
    };
}

class GuardedServer : public ServerNode
{
protected:
    void connectNode()
    {
        make();
        ASSERT_TRUE(node->connectServer());
        services = qlumApplicationServices()(node->serverId());
        ASSERT_TRUE(services);
    }
    ~GuardedServer() override { node.reset(); }

    std::shared_ptr<QlumSessionServices> services;
};

TEST_F(GuardedServer, WhatItsRoleDoesNotAllowIsNotSentAndSaysSo)
{
    connectNode();
    for (const Deed& deed : changingDeeds()) {
        for (const Role role : allRoles) {
            SCOPED_TRACE(deed.what + std::string(" as ") + qlumRoleKey(role).toStdString());
            node->setRole(role);
            const int before = FakeStack::instance().calls(deed.request);
            const UaStatus status = deed.act(*services);
            const bool isAllowed = role >= deed.need;
            EXPECT_EQ(FakeStack::instance().calls(deed.request) - before, isAllowed ? 1 : 0);
            EXPECT_EQ(qlumNotSentText(status),
                      isAllowed ? QString() : "Not sent: this server is set to " + qlumRoleKey(role));
            if (!isAllowed)
                EXPECT_EQ(status.statusCode(), OpcUa_BadUserAccessDenied);
        }
    }
    EXPECT_TRUE(log().contains("50 HistoryUpdate: Not sent: this server is set to Operate.")) << "also there";
    EXPECT_EQ(qlumResultText(OpcUa_BadUserAccessDenied), "BadUserAccessDenied") << "the server's own refusal";
}

TEST_F(GuardedServer, LookingIsFreeAndSessionsBesideItAreGuardedAsWell)
{
    setting.role = Role::Look;
    connectNode();
    UaReadValueIds nodes(1);
    UaDataValues values;
    ServiceSettings settings;
    EXPECT_TRUE(services->read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values).isGood());
    QObject owner;
    QlumToolServices tools;
    qlumTakeServers(
        tools, &owner, [this](unsigned int) { return node.get(); },
        [this] { return std::make_unique<ConnectAnswers>(script); });
    std::shared_ptr<UaClientSdk::UaSession> beside;
    ASSERT_TRUE(tools.sideSession(
        node->serverId(), {}, nullptr, &owner,
        [&beside](std::shared_ptr<UaClientSdk::UaSession> opened, const UaStatus&) { beside = opened; }));
    ASSERT_TRUE(QTest::qWaitFor([&beside] { return beside != nullptr; }));
    const auto besideServices = qlumServicesOf(beside);
    EXPECT_FALSE(qlumNotSentText(writeOne(*besideServices, OpcUa_Attributes_Value)).isEmpty());
    node->setRole(Role::Operate);
    EXPECT_TRUE(qlumNotSentText(writeOne(*besideServices, OpcUa_Attributes_Value)).isEmpty());
    EXPECT_EQ(FakeStack::instance().calls(OpcUa_WriteRequest_EncodeableType), 1);
}

TEST_F(GuardedServer, RoleIsKeptInTheProjectAndAnUnknownOneIsTheLeast)
{
    QTemporaryDir folder;
    QSettings file(folder.filePath("project.ini"), QSettings::IniFormat);
    EXPECT_EQ(QlumDiscoverySetting::fromSetting(file).role, Role::Operate);
    application.settings["General.NewServerRole"] = "Look";
    EXPECT_EQ(QlumDiscoverySetting::fromSetting(file).role, Role::Look);
    for (const Role role : allRoles) {
        setting.role = role;
        setting.storeSettings(file);
        EXPECT_EQ(QlumDiscoverySetting::fromSetting(file).role, role);
    }
    file.setValue("Role", "Administrate");
    EXPECT_EQ(QlumDiscoverySetting::fromSetting(file).role, Role::Look);
}

TEST_F(GuardedServer, CommissionForATimeEndsByItselfAndIsNotKept)
{
    make();
    node->setRoleFor(Role::Commission, 3600 * 1000);
    EXPECT_EQ(node->guarded()->role(), Role::Commission);
    EXPECT_TRUE(node->toolTip().contains("Operate again at"));
    QTemporaryDir folder;
    QSettings file(folder.filePath("project.ini"), QSettings::IniFormat);
    node->storeSettings(file);
    EXPECT_EQ(QlumDiscoverySetting::fromSetting(file).role, Role::Operate);
    node->setRoleFor(Role::Commission, 1);
    EXPECT_TRUE(QTest::qWaitFor([this] { return node->guarded()->role() == Role::Operate; }));
}
} // namespace
