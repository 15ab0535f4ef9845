// Images of a server that is not ours, in the window of the whole client: each format, an array, a structure,
// one that changes all the time, and a double click in another view.
#include <app/api/qlumimageformat.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/imageviewer/qlumimagefeed.h>
#include <plugins/imageviewer/qlumimagetile.h>
#include <plugins/imageviewer/qlumimageview.h>
#include <tests/integration/clientondemoserver.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <QImage>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class ImagesOnDemoServer : public ClientOnDemoServer
{
protected:
    QlumImageFeed* open(const char* id, OpcUa_UInt16 index = 2)
    {
        const QlumToolNode node{serverId, UaNodeId(UaString(id), index), OpcUa_NodeClass_Variable, {}, {}};
        EXPECT_TRUE(QlumToolServices::instance()->openNodes("Image Viewer", {&node, 1}));
        view = window->findChild<QlumImageView*>();
        return view->current()->feed();
    }
    // Until there is one, with whatever is wrong with it.
    QString wait(QlumImageFeed* feed)
    {
        EXPECT_TRUE(QTest::qWaitFor(
            [feed] { return !feed->shown().headline.isEmpty() || !feed->image().isNull(); }, limit))
            << feed->trouble().toStdString();
        return feed->shown().headline + feed->shown().hint + feed->shown().decoded.remark;
    }
    // A watched value can come before its type, and what is wrong with it with the type only.
    bool isTold(QlumImageFeed* feed, const char* text)
    {
        return QTest::qWaitFor([&] { return wait(feed).contains(text); }, limit);
    }

    QlumImageView* view = nullptr;
};

TEST_F(ImagesOnDemoServer, EachFormatIsShownAndFaultsAreSaid)
{
    openDemoProject();
    for (const char* id : {"Image.BMP", "Image.GIF", "Image.PNG", "Image.Any", "Image.ByteString"}) {
        QlumImageFeed* feed = open(id);
        EXPECT_EQ(wait(feed), QString()) << id;
        EXPECT_EQ(feed->image().size(), QSize(64, 64)) << id;
        EXPECT_LT(qRed(feed->image().pixel(63, 63)) - qRed(feed->image().pixel(0, 0)), 16) << id;
    }
    QlumImageFeed* large = open("Image.Large");
    EXPECT_EQ(wait(large), QString());
    EXPECT_EQ(large->image().size(), QSize(3000, 3000));
    EXPECT_EQ(large->shown().decoded.header.format, QlumImageFormat::Jpg);
    EXPECT_FALSE(large->shown().decoded.overview.isNull());
    EXPECT_TRUE(isTold(open("Image.WrongType"), "bytes are those of a GIF"));
    EXPECT_TRUE(isTold(open("Image.Huge"), "60000 x 60000"));
    EXPECT_TRUE(isTold(open("Image.NoPixels"), "0 x 0"));
    EXPECT_TRUE(isTold(open("Image.Truncated"), "cut off"));
    EXPECT_TRUE(isTold(open("Image.Null"), "null"));
}

TEST_F(ImagesOnDemoServer, ElementsAreFoundInArraysAndStructures)
{
    openDemoProject();
    QlumImageFeed* array = open("Image.Array");
    EXPECT_EQ(wait(array), QString());
    EXPECT_EQ(array->shown().elements, (QStringList{"[0]", "[1]", "[2]", "[3]"}));
    const QImage first = array->image();
    array->setElement("[2]");
    EXPECT_TRUE(QTest::qWaitFor([&] { return array->image() != first; }, limit));
    QlumImageFeed* structure = open("Image.Snapshot");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !structure->image().isNull(); }, limit));
    EXPECT_EQ(structure->shown().element, "Picture");
    EXPECT_EQ(structure->shown().decoded.remark, QString());
}

TEST_F(ImagesOnDemoServer, ChangingImageIsFollowedAndCounted)
{
    openDemoProject();
    QlumImageFeed* camera = open("Image.Camera");
    camera->setInterval(100);
    EXPECT_TRUE(QTest::qWaitFor([&] { return camera->shownCount() > 10 && camera->rate() > 2; }, limit));
    EXPECT_GT(camera->revisedInterval(), 0);
    const QImage before = camera->image();
    camera->setWatched(false);
    view->action(QlumImageView::ReadAgain)->trigger();
    EXPECT_TRUE(QTest::qWaitFor([&] { return camera->image() != before; }, limit)) << "read once";
    QlumImageFeed* moved = open("Image.Camera", 3); // as a project has it that was made with other namespaces
    moved->setNode(UaNodeId(UaString("Image.Camera"), 2), false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return moved->shownCount() > 2; }, limit)) << "watched where it is now";
}

} // namespace
