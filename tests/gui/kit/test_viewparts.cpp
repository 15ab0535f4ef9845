#include <app/api/qlumconnectionstatus.h>
#include <uawidgets/qlumelidedlabel.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumscrollable.h>
#include <uawidgets/qlumturningsplitter.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/qlumwrappingbar.h>

#include <QChar>
#include <QDate>
#include <QDateTime>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSizePolicy>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTest>
#include <QTime>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>
#include <QWidget>
#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>

namespace {
QString text(const QWidget& part, const char* name)
{
    return part.findChild<QLabel*>(QLatin1String(name))->text();
}

TEST(MessageBar, TellsServersTextsAsTextAndInBounds)
{
    QlumMessageBar bar;
    EXPECT_TRUE(bar.isHidden());
    bar.tell({QlumMessage::Warning, "t", "<b>Motor</b>\nstopped", QString(100000, 'x'), {}, {}});
    EXPECT_EQ(text(bar, "severity"), "Warning");
    EXPECT_EQ(text(bar, "what"), "<b>Motor</b> stopped");
    EXPECT_EQ(bar.findChild<QLabel*>("what")->textFormat(), Qt::PlainText);
    EXPECT_LT(text(bar, "why").size(), 1000);
    EXPECT_TRUE(bar.accessibleName().startsWith("Warning: <b>Motor</b>"));
    EXPECT_TRUE(bar.findChild<QPushButton*>("help")->isHidden());
    bar.tell({QlumMessage::Error, "t", "Gone.", {}, {}, {}});
    EXPECT_EQ(text(bar, "severity"), "Error");
    EXPECT_TRUE(bar.findChild<QLabel*>("why")->isHidden()) << "no empty line";
}

TEST(Scrollable, ScrollsForWhatIsNeededOnlyAndNotForWhatIsWished)
{
    auto* const page = new QWidget;
    auto* const layout = new QVBoxLayout(page);
    auto* const bar = new QlumWrappingBar;
    bar->add(new QPushButton("Refresh"));
    layout->addWidget(bar); // whose height depends on the width
    auto* const tree = new QTreeView;
    layout->addWidget(tree);
    ASSERT_GT(tree->sizeHint().height(), 150);
    const std::unique_ptr<QScrollArea> area(qlumScrollable(page));
    area->resize(300, 170);
    area->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(area.get()));
    EXPECT_EQ(area->verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(page->height(), area->viewport()->height());
    tree->setMinimumHeight(400);
    EXPECT_TRUE(QTest::qWaitFor([&] { return area->verticalScrollBar()->maximum() > 200; }));
    area->resize(300, 700);
    EXPECT_TRUE(QTest::qWaitFor([&] { return area->verticalScrollBar()->maximum() == 0; }));
}

TEST(Scrollable, PageLeavesRoomForTextsThatNeedMoreLines)
{
    auto* const page = new QWidget;
    auto* const layout = new QVBoxLayout(page);
    auto* const text = new QLabel(QStringLiteral("some words that need many lines ").repeated(20));
    text->setWordWrap(true);
    layout->addWidget(text);
    layout->addWidget(new QTreeView);
    const std::unique_ptr<QScrollArea> area(qlumScrollablePage(page));
    area->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(area.get()));
    for (const int width : {600, 220, 400}) {
        area->resize(width, 200);
        EXPECT_TRUE(QTest::qWaitFor([&] { return text->height() >= text->heightForWidth(text->width()); }))
            << text->height() << " of " << text->heightForWidth(text->width());
    }
}

TEST(Scrollable, CountsOnlyThePageThatIsShown)
{
    auto* const tabs = new QTabWidget;
    auto* const large = new QWidget;
    large->setMinimumSize(900, 900);
    tabs->addTab(new QWidget, "small");
    tabs->addTab(large, "large");
    const std::unique_ptr<QScrollArea> area(qlumScrollable(tabs));
    area->resize(220, 200);
    area->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(area.get()));
    EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0);
    tabs->setCurrentWidget(large);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return area->horizontalScrollBar()->maximum() > 600 && area->verticalScrollBar()->maximum() > 600;
    }));
}

TEST(MessageBar, ItsButtonStandsBelowTheTextWhereThereIsNoRoomBeside)
{
    QlumMessageBar bar;
    bar.tell({QlumMessage::Error,
              "t",
              "The server cannot be configured.",
              "It says why in a longer text.",
              "Connect as an administrator",
              {}});
    const auto* button = bar.findChild<QPushButton*>("help");
    const auto* what = bar.findChild<QLabel*>("what");
    bar.resize(900, bar.heightForWidth(900));
    EXPECT_TRUE(QTest::qWaitFor([&] { return button->x() > what->geometry().right(); }));
    const int narrow = bar.minimumSizeHint().width();
    EXPECT_LT(narrow, button->width() + 150);
    bar.resize(narrow, 300);
    EXPECT_TRUE(QTest::qWaitFor([&] { return button->y() > what->geometry().bottom(); }));
    EXPECT_LE(button->geometry().right(), bar.width());
    EXPECT_EQ(bar.minimumSizeHint().width(), narrow);
}

TEST(MessageBar, TheButtonHelpsOnceAndMayHaveSomethingToTell)
{
    QlumMessageBar bar;
    int helped = 0;
    bar.tell({QlumMessage::Error, "read", "Failed.", {}, "Try Again", [&] {
                  ++helped;
                  bar.tell({QlumMessage::Error, "read", "Failed again.", {}, {}, {}});
              }});
    auto* button = bar.findChild<QPushButton*>("help");
    EXPECT_EQ(button->text(), "Try Again");
    button->click();
    EXPECT_EQ(helped, 1);
    EXPECT_FALSE(bar.isHidden());
    EXPECT_EQ(text(bar, "what"), "Failed again.");
    EXPECT_TRUE(button->isHidden());
}

TEST(MessageBar, ClosesByItsTopicByTheUserAndByKey)
{
    QlumMessageBar bar;
    const auto tell = [&bar] { bar.tell({QlumMessage::Note, "write", "Failed.", {}, {}, {}}); };
    tell();
    bar.dismiss("read");
    EXPECT_FALSE(bar.isHidden());
    bar.dismiss("write");
    EXPECT_TRUE(bar.isHidden());
    tell();
    bar.findChild<QToolButton*>("close")->click();
    EXPECT_TRUE(bar.isHidden());
    tell();
    QTest::keyClick(&bar, Qt::Key_Escape);
    EXPECT_TRUE(bar.isHidden());
}

class ViewHeading : public testing::Test
{
protected:
    // What the strip says when it is looked at.
    QString ageAfter(qint64 seconds)
    {
        now = now.addSecs(seconds);
        heading.hide();
        heading.show();
        return text(heading, "age");
    }

    QDateTime now{QDate(2026, 3, 29), QTime(0, 30), Qt::UTC};
    QlumViewHeading heading{nullptr, [this] { return now; }};
};

TEST_F(ViewHeading, TheAgeGrowsCoarserAndSurvivesAClockThatIsSetBack)
{
    EXPECT_EQ(ageAfter(5), "") << "nothing was received";
    heading.touch();
    EXPECT_EQ(ageAfter(1), "received now");
    EXPECT_EQ(ageAfter(58), "received 59 s ago");
    EXPECT_EQ(ageAfter(1), "received 1 min ago");
    EXPECT_EQ(ageAfter(3540), "received 1 h ago");
    EXPECT_TRUE(ageAfter(24 * 3600).contains("26")) << "the date";
    EXPECT_TRUE(ageAfter(-48 * 3600).contains("26"));
    heading.clear();
    EXPECT_EQ(ageAfter(1), "");
}

TEST_F(ViewHeading, FollowsOnceASecondAndOnlyWhileItIsSeen)
{
    heading.show();
    heading.touch();
    now = now.addSecs(30);
    EXPECT_EQ(text(heading, "age"), "") << "a value costs no painting";
    ASSERT_TRUE(QTest::qWaitFor([this] { return text(heading, "age") == "received 30 s ago"; }, 5000));
    const auto* timer = heading.findChild<QTimer*>();
    ASSERT_NE(timer, nullptr);
    EXPECT_GE(timer->interval(), 1000);
    heading.hide();
    EXPECT_FALSE(timer->isActive());
}

TEST(ElidedLabel, IsCutWithDotsWhereItsRoomEndsAndWidensNothing)
{
    const QString text = QStringLiteral("/home/somebody/recordings & more/plant.sqlite");
    QlumElidedLabel end, middle(Qt::ElideMiddle);
    for (QlumElidedLabel* const label : {&end, &middle}) {
        label->setText(text);
        label->resize(label->fontMetrics().horizontalAdvance(text) + 4, 30);
        EXPECT_EQ(label->shownText(), text);
        label->resize(label->width() / 2, 30);
        EXPECT_LE(label->fontMetrics().horizontalAdvance(label->shownText()), label->width());
        EXPECT_TRUE(label->shownText().contains(QChar(0x2026)));
        EXPECT_LT(label->minimumSizeHint().width(), 40);
    }
    EXPECT_TRUE(end.shownText().startsWith("/home/somebody"));
    EXPECT_TRUE(middle.shownText().endsWith("sqlite"));
    const auto isDrawn = [](QlumElidedLabel& label) {
        const QImage image = label.grab().toImage();
        label.setText(QString());
        return image != label.grab().toImage();
    };
    EXPECT_TRUE(isDrawn(end));
}

TEST(WrappingBar, KeepsAllInsideAndGivesWhatIsLeftToFields)
{
    QWidget window;
    QlumWrappingBar bar(&window);
    auto* button = new QPushButton("What it does");
    auto* field = new QLineEdit;
    auto* away = new QPushButton("Not now");
    away->hide();
    auto* last = new QPushButton("And more");
    for (QWidget* one : std::initializer_list<QWidget*>{button, field, away, last})
        bar.add(one);
    window.show();
    bar.resize(900, bar.heightForWidth(900));
    EXPECT_EQ(last->y(), button->y());
    EXPECT_GT(field->width(), 400) << "what is left";
    EXPECT_LT(last->geometry().left() - field->geometry().right(), last->width())
        << "nothing for what is away";
    const int narrow = bar.minimumSizeHint().width();
    EXPECT_LT(narrow, bar.sizeHint().width());
    bar.resize(narrow, bar.heightForWidth(narrow));
    for (const QWidget* one : std::initializer_list<QWidget*>{button, field, last})
        EXPECT_TRUE(bar.rect().contains(one->geometry())) << one->metaObject()->className();
    EXPECT_GT(last->y(), field->geometry().bottom());
    EXPECT_GT(field->y(), button->geometry().bottom());
    away->show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar.minimumHeight() > last->geometry().bottom(); }));
    EXPECT_GT(last->y(), away->geometry().bottom()) << "what comes back has its place";
}

TEST_F(ViewHeading, SaysTheStateByAWordAndNamesAsText)
{
    QStringList words;
    for (const auto status : {QlumConnectionStatus::Disconnected, QlumConnectionStatus::Connecting,
                              QlumConnectionStatus::Connected, QlumConnectionStatus::ConnectFailed,
                              QlumConnectionStatus::ConnectionError}) {
        heading.setStatus(status);
        words.append(text(heading, "status"));
    }
    EXPECT_EQ(words.removeDuplicates(), 0);
    EXPECT_FALSE(words.contains(QString()));
    heading.setNode("<i>Speed</i>\n" + QString(5000, 'x'));
    EXPECT_TRUE(text(heading, "node").startsWith("<i>Speed</i> x"));
    EXPECT_LT(text(heading, "node").size(), 200);
    EXPECT_EQ(heading.findChild<QLabel*>("node")->textFormat(), Qt::PlainText);
    heading.setServer("Press " + QString(70, 'x'));
    EXPECT_LT(heading.minimumSizeHint().width(), 300) << "a long name must not make the view wide";
}
} // namespace

TEST(WrappingBar, KeepsATextInOneLineAsLongAsItHasTheRoom)
{
    QWidget window;
    QlumWrappingBar bar(&window);
    auto* text = new QLabel("The conveyor in hall 3 is locked by somebody else.");
    text->setWordWrap(true);
    text->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    auto* button = new QPushButton("Break the lock");
    bar.add(text);
    bar.add(button);
    window.show();
    const int line = text->fontMetrics().height();
    const int words = text->fontMetrics().horizontalAdvance(text->text());
    bar.resize(words + button->sizeHint().width() + 50, 100);
    EXPECT_LT(text->height(), 2 * line);
    EXPECT_LT(button->geometry().top(), text->geometry().bottom()) << "beside it";
    bar.resize(words + 20, 100);
    EXPECT_LT(text->height(), 2 * line) << "the button gives way";
    EXPECT_GT(button->geometry().top(), text->geometry().bottom());
    bar.resize(words / 2 + 20, 100);
    EXPECT_GT(text->height(), line * 3 / 2) << "two lines";
    EXPECT_TRUE(bar.rect().contains(text->geometry()));
    EXPECT_LT(bar.minimumSizeHint().width(), words / 2);
}

TEST(TurningSplitter, PutsPartsBelowEachOtherWhereTheyHaveNoRoomAndKeepsTheUsersSizes)
{
    QWidget window;
    QlumTurningSplitter splitter(&window);
    auto* list = new QWidget;
    auto* details = new QWidget;
    list->setMinimumSize(200, 50);
    details->setMinimumSize(300, 60);
    splitter.addWidget(list);
    splitter.addWidget(details);
    splitter.resize(1000, 400);
    window.show();
    splitter.setSizes({400, 600});
    const QList<int> chosen = splitter.sizes();
    ASSERT_EQ(list->y(), details->y());
    EXPECT_EQ(splitter.minimumSizeHint().width(), 300) << "however it stands";
    splitter.resize(450, 400);
    EXPECT_EQ(list->x(), details->x());
    EXPECT_GT(details->y(), list->geometry().bottom());
    splitter.resize(1000, 400);
    EXPECT_EQ(splitter.sizes(), chosen);
    details->setMinimumWidth(900);
    EXPECT_TRUE(QTest::qWaitFor([&] { return splitter.orientation() == Qt::Vertical; })) << "needs more now";
    details->hide();
    EXPECT_TRUE(QTest::qWaitFor([&] { return splitter.orientation() == Qt::Horizontal; }));
}
