// The view: which image stands under which name, what it says where there is none, what a project keeps.
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumimageformat.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/imageviewer/qlumimagecanvas.h>
#include <plugins/imageviewer/qlumimagefacts.h>
#include <plugins/imageviewer/qlumimagefeed.h>
#include <plugins/imageviewer/qlumimagetile.h>
#include <plugins/imageviewer/qlumimageview.h>
#include <plugins/imageviewer/qlumimageviewerplugin.h>
#include <tests/gui/imageviewer/imagebytes.h>
#include <tests/support/modeltext.h>
#include <tests/support/stubapplication.h>
#include <tests/support/tableservices.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QByteArray>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QMimeData>
#include <QObject>
#include <QPlainTextEdit>
#include <QPoint>
#include <QPointer>
#include <QSettings>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

class CameraApplication : public StubApplication
{
public:
    QString serverName(unsigned int id) override { return id == 5 ? "Plc" : QString(); }
    QStringList namespaceTable(unsigned int) override { return table; }
    int namespaceIndexFromUri(unsigned int, const QString& uri) override { return table.indexOf(uri); }
    QString namespaceUriFromIndex(unsigned int, int index) override { return table.value(index); }
    void setModified() override { ++modified; }

    QStringList table{"http://opcfoundation.org/UA/", "urn:plc", "urn:cameras"};
    int modified = 0;
};

class ImageView : public testing::Test
{
protected:
    ImageView()
    {
        addImage(1, "Gate", OpcUaId_ImagePNG, imageValue(encoded("PNG")));
        addImage(2, "Hall", OpcUaId_ByteString, imageValue(gif(3)));
        view = make();
        view->resize(900, 600);
        view->show();
    }

    static UaNodeId node(OpcUa_UInt32 id) { return UaNodeId(id, 2); }
    void addImage(OpcUa_UInt32 id, const char* name, OpcUa_UInt32 type, const UaVariant& value)
    {
        server->table.variable(node(id), name, value);
        server->table.setAttribute(node(id), OpcUa_Attributes_DataType,
                                   UaDataValue(UaVariant(UaNodeId(type))));
    }
    std::unique_ptr<QlumImageView> make()
    {
        return std::make_unique<QlumImageView>(
            application, [this](unsigned int) { return server; }, QlumMonitoringProvider());
    }
    void open(OpcUa_UInt32 id)
    {
        const QlumToolNode one{5, node(id), OpcUa_NodeClass_Variable, {}, {}};
        view->addNodes({&one, 1});
    }
    [[nodiscard]] QlumImageFeed& feed(std::size_t tile = 0) const { return *view->tiles().at(tile)->feed(); }
    bool waitForImage(std::size_t tile = 0)
    {
        return QTest::qWaitFor([&] { return !feed(tile).image().isNull() && !feed(tile).isReading(); });
    }
    template <typename Widget = QLabel>
    Widget* part(const char* name, std::size_t tile = 0) const
    {
        return view->tiles().at(tile)->findChild<Widget*>(name);
    }
    [[nodiscard]] std::string refusal(std::size_t tile = 0) const
    {
        return (part("imageHeadline", tile)->text() + " " + part("imageHint", tile)->text())
            .trimmed()
            .toStdString();
    }
    bool waitForRefusal(const char* text)
    {
        return QTest::qWaitFor([&] { return refusal() == text; });
    }
    [[nodiscard]] std::string facts() const
    {
        return modelText(*view->findChild<QTableView*>("imageFacts")->model());
    }

    CameraApplication application;
    std::shared_ptr<TableServices> server = std::make_shared<TableServices>();
    std::unique_ptr<QlumImageView> view;
};

TEST_F(ImageView, ImageComesWithItsNameItsFactsAndItsPixels)
{
    open(1);
    ASSERT_TRUE(waitForImage());
    EXPECT_EQ(part("imageName")->text(), "Gate");
    const std::string text = facts();
    for (const char* line : {"Server | Plc\n", "Variable | Gate\n", "Format | PNG\n", "Size | 40 x 30\n",
                             "Status | Good\n", "Frames"})
        EXPECT_EQ(text.find(line) != std::string::npos, line != std::string("Frames")) << line << text;
    QlumImageCanvas* canvas = view->current()->canvas();
    view->action(QlumImageView::OneToOne)->trigger();
    view->action(QlumImageView::ZoomIn)->trigger();
    EXPECT_GT(canvas->zoom(), 1);
    canvas->setZoom(16);
    const QPoint middle = canvas->viewport()->rect().center();
    ASSERT_TRUE(canvas->pixelAt(middle));
    EXPECT_EQ(canvas->pixelText({3, 2}), "x 3, y 2: #ff0000 (255, 0, 0)");
    view->action(QlumImageView::Fit)->trigger();
    EXPECT_LE(canvas->zoom(), 1);
    EXPECT_FALSE(canvas->pixelAt({0, 0})) << "there is room around it";
}

TEST_F(ImageView, WhatIsNoImageSaysWhyAndShowsItsFirstBytes)
{
    addImage(3, "Broken", OpcUaId_ImageJPG, imageValue("this is no picture"));
    open(3);
    ASSERT_TRUE(waitForRefusal(
        "The image cannot be shown. The data type says JPG, but the bytes do not begin like one."));
    EXPECT_TRUE(part<QPlainTextEdit>("imageFirstBytes")->toPlainText().contains("this is no pictu"));
    EXPECT_TRUE(view->action(QlumImageView::SaveImage)->isEnabled())
        << "what came can be looked at elsewhere";

    server->table.setValue(node(3), UaVariant(2.5));
    view->action(QlumImageView::ReadAgain)->trigger();
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return refusal().starts_with("The value is no image but a Double."); }));
    server->table.setValue(node(3), UaVariant());
    view->action(QlumImageView::ReadAgain)->trigger();
    EXPECT_TRUE(waitForRefusal("The value is null. The server has no image at the moment."));
    server->table.setValue(node(3), imageValue(encoded("JPG")));
    view->action(QlumImageView::ReadAgain)->trigger();
    EXPECT_TRUE(waitForImage());

    server->table.object(node(9), "Folder");
    server->table.fail(NodeTable::Read, node(9), OpcUa_BadAttributeIdInvalid);
    view->action(QlumImageView::RemoveImage)->trigger();
    open(9);
    EXPECT_TRUE(waitForRefusal("This node is no variable: it has no value to show."));
}

TEST_F(ImageView, ArrayIsOpenedByElementAndAllElementsSideBySide)
{
    const std::vector<UaVariant> elements{imageValue("no picture"), imageValue(encoded("PNG")),
                                          imageValue(encoded("PNG", noise(7, 5)))};
    UaVariant array;
    ASSERT_EQ(array.setArray(OpcUaType_ByteString, elements), OpcUa_Good);
    addImage(4, "Cameras", OpcUaId_ByteString, array);
    open(4);
    ASSERT_TRUE(waitForImage());
    auto* list = part<QComboBox>("imageElement");
    EXPECT_EQ(list->currentText(), "[1]") << "the first that holds an image";
    ASSERT_EQ(list->count(), 2);
    feed().setElement("[2]");
    ASSERT_TRUE(QTest::qWaitFor([this] { return feed().image().size() == QSize(7, 5); }));
    view->action(QlumImageView::OpenElements)->trigger();
    ASSERT_EQ(view->tiles().size(), 2U);
    ASSERT_TRUE(waitForImage(1));
    EXPECT_EQ(feed(1).image().size(), QSize(40, 30));
    server->table.setValue(node(4), imageValue("no array any more"));
    view->action(QlumImageView::ReadAgain)->trigger();
    EXPECT_TRUE(
        waitForRefusal("The image cannot be shown. The bytes begin like none of BMP, GIF, JPG and PNG."));
}

TEST_F(ImageView, WhatIsOpenedAgainIsShownAndNotDoubled)
{
    open(1);
    open(2);
    ASSERT_TRUE(waitForImage(0) && waitForImage(1));
    feed(0).setWatched(false);
    server->table.setValue(node(1), imageValue(encoded("PNG", noise(7, 5))));
    open(1);
    EXPECT_EQ(view->tiles().size(), 2U);
    EXPECT_EQ(view->current(), view->tiles().front());
    EXPECT_TRUE(QTest::qWaitFor([this] { return feed(0).image().size() == QSize(7, 5); }))
        << "what is read once is read again";

    const UaVariant part = imageValue(encoded("BMP"));
    view->showValue(5, part, {}, {});
    view->showValue(5, part, {}, {}); // before it is decoded
    ASSERT_TRUE(waitForImage(2));
    view->showValue(5, part, {}, {});
    EXPECT_EQ(view->tiles().size(), 3U);
    view->showValue(5, imageValue(encoded("PNG", noise(5, 5))), {}, {});
    EXPECT_EQ(view->tiles().size(), 4U) << "another value is another image";
}

// As from a subscription that is faster than the decoder.
TEST_F(ImageView, NewestImageWinsAndTheOthersAreCounted)
{
    open(1);
    ASSERT_TRUE(waitForImage());
    const quint64 before = feed().shownCount();
    for (int i = 1; i <= 20; ++i)
        feed().take(UaDataValue(imageValue(encoded("PNG", noise(i, 3)))), i == 1 ? 5 : 0);
    ASSERT_TRUE(QTest::qWaitFor([this] { return feed().image().width() == 20 && !feed().isDecoding(); }));
    EXPECT_EQ(feed().shownCount() - before + feed().droppedCount(), 25U);
    EXPECT_GE(feed().droppedCount(), 5U + 18U);
    EXPECT_GT(feed().rate(), 0);
    EXPECT_TRUE(qlumImageLine(feed()).contains("dropped")) << qlumImageLine(feed()).toStdString();
}

TEST_F(ImageView, LateAnswerStandsUnderNoOtherName)
{
    server->clock.hold();
    server->delay(NodeTable::Read, 1000);
    open(1);
    view->action(QlumImageView::RemoveImage)->trigger();
    EXPECT_TRUE(view->tiles().empty());
    open(2);
    server->delay(NodeTable::Read, 0);
    ASSERT_TRUE(QTest::qWaitFor([&] {
        server->clock.advance(1000);
        return !feed().image().isNull();
    }));
    EXPECT_EQ(feed().shown().decoded.header.format, QlumImageFormat::Gif);
    EXPECT_EQ(part("imageName")->text(), "Hall");
    view->sessionRemoved(5);
    EXPECT_TRUE(view->tiles().empty());
}

TEST_F(ImageView, WithoutAConnectionTheLastImageStaysAndSaysSo)
{
    open(1);
    ASSERT_TRUE(waitForImage());
    view->sessionStatusChanged(5, QlumConnectionStatus::Disconnected, {});
    EXPECT_EQ(part("imageRemark")->text(), "The server is not connected.");
    EXPECT_FALSE(feed().image().isNull());
    server->disconnect();
    open(2);
    EXPECT_EQ(refusal(1), "The server is not connected.");
}

TEST_F(ImageView, AnimationPlaysOnDemand)
{
    open(2);
    ASSERT_TRUE(waitForImage());
    EXPECT_NE(facts().find("Frames | 3; number 1 is shown"), std::string::npos) << facts();
    view->action(QlumImageView::Play)->trigger();
    EXPECT_TRUE(QTest::qWaitFor([this] { return feed().frame() == 3; }));
    EXPECT_TRUE(QTest::qWaitFor([this] { return feed().frame() == 1; }));
    view->action(QlumImageView::Play)->trigger();
    EXPECT_FALSE(feed().isPlaying());
}

TEST_F(ImageView, BytesAreSavedAndCopiedAsTheyCame)
{
    const QByteArray bytes = encoded("PNG");
    open(1);
    ASSERT_TRUE(waitForImage());
    const QTemporaryDir folder;
    view->saveAs(folder.filePath("gate.png"));
    QFile file(folder.filePath("gate.png"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), bytes);
    view->saveAs("/nowhere/gate.png");
    bool isTold = false;
    for (const QLabel* label : view->findChildren<QLabel*>())
        isTold = isTold || label->text() == "/nowhere/gate.png was not written.";
    EXPECT_TRUE(isTold);
    view->action(QlumImageView::CopyImage)->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->mimeData()->data("image/png"), bytes);
    EXPECT_EQ(QGuiApplication::clipboard()->image().size(), QSize(40, 30));
}

TEST_F(ImageView, ProjectKeepsImagesByTheirNamespace)
{
    open(1);
    open(2);
    ASSERT_TRUE(waitForImage(0));
    ASSERT_TRUE(waitForImage(1));
    feed(1).setWatched(false);
    const QTemporaryDir folder;
    QSettings kept(folder.filePath("p.ini"), QSettings::IniFormat);
    view->saveSettings(kept);
    application.table = QStringList{"http://opcfoundation.org/UA/", "urn:plc", "urn:new", "urn:cameras"};
    view = make();
    application.modified = 0;
    view->loadSettings(kept, {{5, 5}});
    ASSERT_EQ(view->tiles().size(), 2U);
    EXPECT_EQ(feed(0).source().nodeId, UaNodeId(1, 3)) << "the namespace has moved";
    EXPECT_EQ(feed(0).source().name, "Gate");
    EXPECT_TRUE(feed(0).source().isWatched);
    EXPECT_FALSE(feed(1).source().isWatched);
    EXPECT_EQ(application.modified, 0);
    application.table = QStringList{"http://opcfoundation.org/UA/"};
    view->sessionStatusChanged(5, QlumConnectionStatus::Connected, {});
    EXPECT_EQ(refusal(), "The server has no namespace urn:cameras.");
    application.table = QStringList{"http://opcfoundation.org/UA/", "urn:plc", "urn:cameras"};
    view->sessionStatusChanged(5, QlumConnectionStatus::Disconnected, {});
    view->sessionStatusChanged(5, QlumConnectionStatus::Connected, {});
    EXPECT_TRUE(waitForImage());
    view = make();
    view->loadSettings(kept, {});
    EXPECT_TRUE(view->tiles().empty()) << "the server is not in the project";
}

TEST_F(ImageView, OneThatIsOpenedWhileTheServerIsConnectedHearsThatTheConnectionBreaks)
{
    QlumImageViewerPlugin plugin([this](unsigned int) { return server; }, {});
    plugin.init(&application);
    plugin.sessionStatusChanged(5, QlumConnectionStatus::NewSessionCreated, {});
    plugin.sessionStatusChanged(5, QlumConnectionStatus::Connected, {});
    view.reset(qobject_cast<QlumImageView*>(plugin.createDocument("Image Viewer")));
    open(1);
    ASSERT_TRUE(waitForImage());
    plugin.sessionStatusChanged(5, QlumConnectionStatus::ConnectionError, {});
    EXPECT_EQ(feed().trouble(), "The server is not connected.");
    plugin.sessionStatusChanged(5, QlumConnectionStatus::Connected, {});
    EXPECT_EQ(feed().trouble(), "");
    const QPointer<QWidget> document = view.release();
    plugin.shutdown();
    EXPECT_FALSE(document) << "what it calls ends with the plugin";
}

TEST_F(ImageView, ValuesThatAreImagesAreTakenFromOtherViews)
{
    QlumToolServices tools;
    QlumImageViewerPlugin plugin([this](unsigned int) { return server; }, {});
    plugin.init(&application);
    QObject owner;
    tools.takeDocuments(&owner, [this](const QString&) { return view.get(); });
    int others = 0;
    tools.takeShowValue(&owner, [&others](unsigned int, const UaVariant&, const UaNodeId&) { ++others; });
    EXPECT_TRUE(tools.showValue(5, imageValue(encoded("BMP")), {}));
    ASSERT_TRUE(waitForImage());
    EXPECT_FALSE(view->action(QlumImageView::Watch)->isEnabled()) << "it has no node";
    EXPECT_TRUE(tools.showValue(5, imageValue("plain bytes"), {}));
    EXPECT_EQ(others, 1);
    const QlumToolNode gate{5, node(1), OpcUa_NodeClass_Variable, {}, "Gate"};
    EXPECT_TRUE(tools.showValue(5, imageValue(encoded("PNG")), UaNodeId(OpcUaId_ImagePNG), gate));
    EXPECT_EQ(feed(1).source().nodeId, node(1));
    tools.removeTakers(&plugin);
    EXPECT_TRUE(tools.showValue(5, imageValue(encoded("BMP")), {}));
    EXPECT_EQ(others, 2);
    plugin.shutdown();
}

} // namespace
