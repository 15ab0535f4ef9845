#include <opcua/opcua_attributes.h>
#include <servers/qlumiconloader.h>
#include <servers/qlumtypecache.h>
#include <tests/support/modeltext.h>
#include <tests/support/scriptedservices.h>
#include <tests/support/stubapplication.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>

namespace {
UaByteString picture(const char* format, QColor color, int side = 2)
{
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format);
    return UaByteString(bytes.size(), reinterpret_cast<const OpcUa_Byte*>(bytes.constData()));
}

UaVariant localized(const char* text)
{
    return UaVariant(UaLocalizedText(UaString("en"), UaString(text)));
}

class TypeCache : public testing::Test
{
protected:
    TypeCache() : cache(5, [this](unsigned int) { return services; }) {}

    void addType(const UaNodeId& id, OpcUa_NodeClass nodeClass, const char* name)
    {
        services->attributes[{id, OpcUa_Attributes_NodeClass}] =
            UaVariant(static_cast<OpcUa_Int32>(nodeClass));
        services->attributes[{id, OpcUa_Attributes_BrowseName}] =
            UaVariant(UaQualifiedName(UaString(name), 1));
        services->attributes[{id, OpcUa_Attributes_DisplayName}] = localized(name);
    }
    void addIcon(const UaNodeId& node, const UaNodeId& property, OpcUa_UInt32 dataType,
                 const UaByteString& bytes)
    {
        services->icons[node] = property;
        services->attributes[{property, OpcUa_Attributes_DataType}] = UaVariant(UaNodeId(dataType));
        services->attributes[{property, OpcUa_Attributes_Value}] = UaVariant(bytes);
    }
    QColor colorOf(const UaNodeId& id)
    {
        const QImage image = cache.getIcon(&id).toImage();
        return image.isNull() ? QColor() : image.pixelColor(0, 0);
    }

    StubApplication application;
    std::shared_ptr<ScriptedServices> services = std::make_shared<ScriptedServices>();
    QlumTypeCache cache;
};

TEST_F(TypeCache, NamesAreReadOnceAndAgainAfterClear)
{
    const UaNodeId type(35);
    addType(type, OpcUa_NodeClass_ReferenceType, "Organizes");
    EXPECT_EQ(cache.typeName(type, true), "Organizes") << "without an inverse name";
    services->attributes[{type, OpcUa_Attributes_InverseName}] = localized("OrganizedBy");
    EXPECT_EQ(cache.typeName(type), "Organizes");
    EXPECT_EQ(services->journal, QStringList{"read i=35"});
    cache.clear();
    EXPECT_EQ(cache.typeName(type, true), "OrganizedBy");
    EXPECT_EQ(services->journal.size(), 2);
    EXPECT_TRUE(application.texts().contains("Reading type info of NodeId ns=0;i=35 succeeded"));
}

TEST_F(TypeCache, FailedReadsAreNotKept)
{
    const UaNodeId type(35);
    addType(type, OpcUa_NodeClass_ReferenceType, "Organizes");
    services->callStatus = OpcUa_BadTimeout;
    EXPECT_FALSE(cache.readTypeInfo(type));
    EXPECT_EQ(cache.typeName(type), "");
    EXPECT_EQ(application.entries().last().level, 100);
    EXPECT_EQ(application.texts().last(),
              "Reading type info of NodeId ns=0;i=35 failed with error BadTimeout");
    services->callStatus = 0;
    EXPECT_EQ(cache.typeName(type), "Organizes");
    services->attributeStatus[{type, OpcUa_Attributes_DisplayName}] = OpcUa_BadNotReadable;
    cache.clear();
    EXPECT_EQ(cache.typeName(type), "");
    EXPECT_TRUE(application.texts().contains("DisplayName has bad statuscode: BadNotReadable"));
}

// Something happens to the session while it reads.
class InterruptedServices : public ScriptedServices
{
public:
    UaStatus read(UaClientSdk::ServiceSettings& settings, double maxAge, OpcUa_TimestampsToReturn timestamps,
                  const UaReadValueIds& nodes, UaDataValues& values) override
    {
        const UaStatus status = ScriptedServices::read(settings, maxAge, timestamps, nodes, values);
        if (during)
            std::exchange(during, nullptr)();
        return status;
    }

    std::function<void()> during;
};

TEST_F(TypeCache, WhatWasReadForTheSessionBeforeIsNotKept)
{
    const auto interrupted = std::make_shared<InterruptedServices>();
    services = interrupted;
    const UaNodeId type(35);
    const UaNodeId colors(3000, 2);
    addType(type, OpcUa_NodeClass_ReferenceType, "Organizes");
    interrupted->during = [this] { cache.clear(); };
    EXPECT_EQ(cache.typeName(type), "Organizes") << "for who has asked before";
    services->attributes[{type, OpcUa_Attributes_DisplayName}] = localized("HasComponent");
    EXPECT_EQ(cache.typeName(type), "HasComponent");

    interrupted->during = [this] { cache.clearDefinitions(); };
    EXPECT_FALSE(cache.isEnum(&colors));
    services->enums[colors] = UaEnumDefinition(UaString("Colors"), colors);
    EXPECT_TRUE(cache.isEnum(&colors)) << "that there is none was found in the old definitions";
}

TEST_F(TypeCache, NamesWereAskedOfServersThatAreNotConnected)
{
    const UaNodeId type(35);
    addType(type, OpcUa_NodeClass_ReferenceType, "Organizes");
    services->connected = false;
    EXPECT_EQ(cache.typeName(type), "");
    EXPECT_FALSE(cache.readTypeInfo(type));
    EXPECT_EQ(services->journal, QStringList());
    EXPECT_TRUE(application.entries().empty());
    services->connected = true;
    EXPECT_EQ(cache.typeName(type), "Organizes");
}

TEST_F(TypeCache, EnumerationsByTypeOrByVariableAndNoneIsKeptToo)
{
    const UaNodeId colors(3000, 2);
    const UaNodeId variable(1, 2);
    const UaNodeId other(2, 2);
    services->enums[colors] = UaEnumDefinition(UaString("Colors"), colors);
    addType(variable, OpcUa_NodeClass_Variable, "v");
    services->attributes[{variable, OpcUa_Attributes_DataType}] = UaVariant(colors);
    EXPECT_TRUE(cache.isEnum(&colors));
    EXPECT_EQ(toQString(cache.getEnumDefinition(&variable).name()), "Colors");
    EXPECT_FALSE(cache.isEnum(&other));
    const int calls = services->journal.size();
    EXPECT_TRUE(cache.isEnum(&colors));
    EXPECT_TRUE(cache.isEnum(&variable));
    EXPECT_FALSE(cache.isEnum(&other));
    EXPECT_EQ(services->journal.size(), calls);
    EXPECT_FALSE(cache.isEnum(nullptr));
    services->connected = false;
    EXPECT_FALSE(cache.isEnum(&colors)) << "nothing is known of a server that is not there";
}

TEST_F(TypeCache, NewDefinitionsReplaceOldOnesButNoNames)
{
    const UaNodeId colors(3000, 2);
    addType(colors, OpcUa_NodeClass_DataType, "Colors");
    EXPECT_FALSE(cache.isEnum(&colors)) << "the definitions are not there yet";
    EXPECT_EQ(cache.typeName(colors), "Colors");
    services->enums[colors] = UaEnumDefinition(UaString("Colors"), colors);
    cache.clearDefinitions();
    EXPECT_TRUE(cache.isEnum(&colors));
    services->journal.clear();
    EXPECT_EQ(cache.typeName(colors), "Colors");
    EXPECT_EQ(services->journal, QStringList());
}

TEST_F(TypeCache, IconOfTheNodeOrOfItsType)
{
    const UaNodeId own(1, 2);
    const UaNodeId typed(2, 2);
    const UaNodeId type(3, 2);
    addIcon(own, UaNodeId(11, 2), 2003, picture("PNG", Qt::red));
    addIcon(type, UaNodeId(13, 2), 2000, picture("BMP", Qt::blue));
    services->browses[own] = {{{{"t", type}}}};
    services->browses[typed] = {{{{"t", type}}}};
    EXPECT_EQ(colorOf(own), QColor(Qt::red));
    EXPECT_EQ(colorOf(typed), QColor(Qt::blue));
    EXPECT_EQ(services->lastContext.referenceTypeId, UaNodeId(40));
    EXPECT_FALSE(services->lastContext.includeSubtypes);
    const int calls = services->journal.size();
    EXPECT_TRUE(cache.hasIcon(&typed));
    EXPECT_EQ(services->journal.size(), calls);
}

TEST_F(TypeCache, NoIconIsKeptAndOddPicturesAreNone)
{
    const UaNodeId plain(1, 2);
    const UaNodeId image(2, 2);
    const UaNodeId huge(3, 2);
    const UaNodeId loop(4, 2);
    addIcon(image, UaNodeId(12, 2), 30, picture("PNG", Qt::red)); // Image itself says nothing of the format
    addIcon(huge, UaNodeId(13, 2), 2003, picture("PNG", Qt::red, 3000));
    services->browses[loop] = {{{{"t", loop}}}};
    for (const UaNodeId& id : {plain, image, huge, loop})
        EXPECT_FALSE(cache.hasIcon(&id));
    for (const StubApplication::Entry& entry : application.entries())
        EXPECT_LT(entry.level, 100) << "most nodes have none: " << entry.text.toStdString();
    const int calls = services->journal.size();
    EXPECT_FALSE(cache.hasIcon(&plain));
    EXPECT_EQ(services->journal.size(), calls);
}

TEST_F(TypeCache, IconsWereReadWhileTheTreeWasPainted)
{
    const UaNodeId own(1, 2);
    const UaNodeId plain(2, 2);
    addIcon(own, UaNodeId(11, 2), 2003, picture("PNG", Qt::red));
    const std::shared_ptr<QlumTypeCache> shared(&cache, [](QlumTypeCache*) {});
    QlumIconLoader loader(5, shared, true);
    int news = 0;
    QObject::connect(&loader, &QlumIconLoader::loaded, &loader, [&news] { ++news; });
    EXPECT_TRUE(loader.icon(own).isNull()) << "it is asked for";
    EXPECT_TRUE(loader.icon(plain).isNull());
    ASSERT_TRUE(QTest::qWaitFor([&] { return news == 1; }));
    EXPECT_EQ(loader.icon(own).pixmap(2, 2).toImage().pixelColor(0, 0), QColor(Qt::red));
    EXPECT_TRUE(loader.icon(plain).isNull());
    loader.setWanted(false);
    EXPECT_EQ(news, 2) << "the setting applies at once";
    EXPECT_TRUE(loader.icon(own).isNull());
    const int calls = services->journal.size();
    loader.setWanted(true);
    EXPECT_TRUE(loader.icon(own).isNull());
    ASSERT_TRUE(QTest::qWaitFor([&] { return news == 4; }));
    EXPECT_FALSE(loader.icon(own).isNull());
    EXPECT_EQ(services->journal.size(), calls) << "what is known of the server stays known";
}

TEST_F(TypeCache, DataTypeOfAVariable)
{
    const UaNodeId variable(1, 2);
    addType(variable, OpcUa_NodeClass_Variable, "Level");
    addType(UaNodeId(11), OpcUa_NodeClass_DataType, "Double");
    services->attributes[{variable, OpcUa_Attributes_DataType}] = UaVariant(UaNodeId(11));
    services->attributes[{variable, OpcUa_Attributes_ValueRank}] = UaVariant(OpcUa_Int32{2});
    UaUInt32Array dimensions(2);
    dimensions[1] = 7;
    services->attributes[{variable, OpcUa_Attributes_ArrayDimensions}].setUInt32Array(dimensions);
    UaNodeId dataType;
    int rank = 0;
    UaUInt32Array read;
    QString name;
    UaLocalizedText displayName;
    EXPECT_TRUE(cache.readDataTypeId(variable, &dataType, &rank, &read, &name, &displayName).isGood());
    EXPECT_EQ(dataType, UaNodeId(11));
    EXPECT_EQ(rank, 2);
    ASSERT_EQ(read.length(), 2u);
    EXPECT_EQ(read[1], 7u);
    EXPECT_EQ(name, "Double");
    EXPECT_EQ(toQString(displayName.text()), "Level");
    services->connected = false;
    EXPECT_EQ(cache.readDataTypeId(variable, nullptr, nullptr, nullptr, nullptr, nullptr).statusCode(),
              OpcUa_BadConnectionClosed);
}
} // namespace
