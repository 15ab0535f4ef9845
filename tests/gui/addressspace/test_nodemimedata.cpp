#include <plugins/addressspace/qlumnodemimedata.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <QByteArray>
#include <gtest/gtest.h>

#include <cstring>

namespace {
QlumDraggedNodes oneOfEachKind()
{
    OpcUa_Guid guid;
    for (unsigned char i = 0; i < 16; ++i)
        reinterpret_cast<unsigned char*>(&guid)[i] = i;
    const OpcUa_Byte opaque[] = {0xAA, 0xBB};
    QlumDraggedNodes dragged;
    dragged.serverId = 3;
    dragged.nodes = {{UaNodeId(0xFFFFFFFEu, 2), "n"},
                     {UaNodeId(UaString("id"), 1), "s"},
                     {UaNodeId(UaGuid(guid), 0), "g"},
                     {UaNodeId(UaByteString(2, opaque), 65535), "o"}};
    return dragged;
}

TEST(NodeMimeData, BytesLieAsReceiversExpectThem)
{
    const QByteArray expected = QByteArray::fromHex("00000003"
                                                    "00000009"
                                                    "00000002"
                                                    "00000000"
                                                    "fffffffe"
                                                    "00000002"
                                                    "006e"
                                                    "00000001"
                                                    "00000001"
                                                    "00000004"
                                                    "00690064"
                                                    "00000002"
                                                    "0073"
                                                    "00000000"
                                                    "00000002"
                                                    "000102030405060708090a0b0c0d0e0f"
                                                    "00000002"
                                                    "0067"
                                                    "0000ffff"
                                                    "00000003"
                                                    "00000002"
                                                    "aabb"
                                                    "00000002"
                                                    "006f");
    EXPECT_EQ(qlumEncodeNodes(oneOfEachKind(), 9).toHex().toStdString(), expected.toHex().toStdString());
}

TEST(NodeMimeData, ReadsBackWhatItWrote)
{
    QlumDraggedNodes read;
    ASSERT_TRUE(qlumDecodeNodes(qlumEncodeNodes(oneOfEachKind(), 4), read));
    const QlumDraggedNodes wanted = oneOfEachKind();
    EXPECT_EQ(read.serverId, wanted.serverId);
    ASSERT_EQ(read.nodes.size(), wanted.nodes.size());
    for (std::size_t i = 0; i < read.nodes.size(); ++i) {
        EXPECT_EQ(read.nodes[i].nodeId, wanted.nodes[i].nodeId);
        EXPECT_EQ(read.nodes[i].name.toStdString(), wanted.nodes[i].name.toStdString());
    }
}

TEST(NodeMimeData, RefusesCutAndLyingBytes)
{
    const QByteArray good = qlumEncodeNodes(oneOfEachKind(), 4);
    QlumDraggedNodes read;
    const int header = 8;
    for (int length = 0; length < good.size(); ++length) {
        const bool whole = qlumDecodeNodes(good.left(length), read);
        EXPECT_TRUE(!whole || length == header || read.nodes.size() < 4) << length;
        EXPECT_TRUE(whole || read.nodes.empty()) << length;
    }
    EXPECT_FALSE(qlumDecodeNodes(QByteArray::fromHex("0000000300000001"
                                                     "0000000000000003"
                                                     "7fffffff"
                                                     "aa"),
                                 read));
    EXPECT_FALSE(qlumDecodeNodes(QByteArray::fromHex("0000000300000001"
                                                     "0001000000000000"
                                                     "00000001"),
                                 read));
    EXPECT_FALSE(qlumDecodeNodes(QByteArray::fromHex("0000000300000001"
                                                     "0000000000000004"
                                                     "00000001"),
                                 read));
}
} // namespace
