#include <app/api/qlumjob.h>
#include <app/api/qlumrunningwork.h>
#include <app/mainwindow/qlumworkindicator.h>
#include <tests/support/testclock.h>

#include <QCoreApplication>
#include <QEvent>
#include <QFrame>
#include <QLabel>
#include <QProgressBar>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QToolButton>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>

namespace {
class WorkIndicator : public testing::Test
{
protected:
    WorkIndicator() : all([this] { return clock.now(); }), indicator(all, &window) { window.show(); }

    std::shared_ptr<QlumJobProgress> add(const QString& text)
    {
        const auto progress = std::make_shared<QlumJobProgress>();
        progress->setText(text);
        progress->begun = true;
        all.insert(progress);
        return progress;
    }
    QString shown() { return indicator.findChild<QLabel*>("workText")->text(); }
    bool waitFor(const QString& text)
    {
        return QTest::qWaitFor([&] { return indicator.isVisible() && shown() == text; });
    }
    QToolButton* button(const char* name) { return indicator.findChild<QToolButton*>(name); }
    QFrame* list() { return indicator.findChild<QFrame*>("workList"); }

    TestClock clock;
    QlumRunningWork all;
    QWidget window;
    QlumWorkIndicator indicator;
};

TEST_F(WorkIndicator, ShowsTheOldestWorkAndGoesWithTheLast)
{
    const auto first = add("Reading <b>history</b>");
    const auto second = add("Exporting");
    clock.advance(QlumRunningWork::shownAfter);
    ASSERT_TRUE(waitFor("Reading <b>history</b>"));
    EXPECT_EQ(indicator.findChild<QLabel*>("workText")->textFormat(), Qt::PlainText);
    auto* bar = indicator.findChild<QProgressBar*>("workProgress");
    EXPECT_EQ(bar->maximum(), 0) << "busy, without an end in sight";
    first->total = 4'000'000'000;
    first->done = 1'000'000'000;
    ASSERT_TRUE(waitFor("Reading <b>history</b>: 1,000,000,000 of 4,000,000,000"));
    EXPECT_EQ(bar->value() * 4, bar->maximum());
    clock.advance(1500);
    first->done = 2'000'000'000;
    ASSERT_TRUE(waitFor("Reading <b>history</b>: 2,000,000,000 of 4,000,000,000, 3 s left"));
    first->ended = true;
    ASSERT_TRUE(waitFor("Exporting"));
    EXPECT_FALSE(button("workAll")->isVisible());
    second->ended = true;
    ASSERT_TRUE(QTest::qWaitFor([&] { return !indicator.isVisible(); }));
    add("Later");
    clock.advance(QlumRunningWork::shownAfter);
    ASSERT_TRUE(waitFor("Later")) << "it looks again after it was idle";
}

TEST_F(WorkIndicator, EachWorkIsCancelledByItsOwnButton)
{
    const auto first = add("one");
    const auto second = add("two");
    const auto third = add("three");
    clock.advance(QlumRunningWork::shownAfter);
    ASSERT_TRUE(waitFor("one"));
    EXPECT_TRUE(button("workAll")->isVisible());
    button("workAll")->click();
    EXPECT_TRUE(list()->isVisible());
    const auto lines = [this] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QStringList texts;
        for (const QLabel* label : list()->findChildren<QLabel*>("lineText"))
            texts.append(label->text());
        return texts;
    };
    EXPECT_EQ(lines(), (QStringList{"one", "two", "three"}));
    first->ended = true;
    ASSERT_TRUE(waitFor("two"));
    EXPECT_EQ(lines(), (QStringList{"two", "three"}));
    list()->findChildren<QToolButton*>("lineCancel").at(1)->click();
    EXPECT_TRUE(third->cancelled);
    EXPECT_FALSE(second->cancelled);
    EXPECT_EQ(lines(), (QStringList{"two", "three: being cancelled"}));
    list()->hide();
    button("workCancel")->click();
    EXPECT_TRUE(second->cancelled);
    EXPECT_FALSE(button("workCancel")->isEnabled());
}
} // namespace
