#include <app/api/qlumsettings.h>
#include <app/api/qlumsettingsregistry.h>
#include <tests/support/stubapplication.h>
#include <uawidgets/qlumformrow.h>

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>
#include <gtest/gtest.h>

namespace {
constexpr QlumSetting<unsigned int> age{"Test.Age", 250};
constexpr QlumSetting<QString> greeting{"Test.Greeting", "hello"};

TEST(Settings, HaveTheirDefaultWhereTheUserHasSaidNothingOrNonsense)
{
    EXPECT_EQ(age.value(nullptr), 250u);
    StubApplication application;
    EXPECT_EQ(age.value(), 250u);
    EXPECT_EQ(greeting.value(), "hello");
    application.settings["Test.Age"] = QStringLiteral("seven");
    EXPECT_EQ(age.value(), 250u) << "a file edited by hand must not make it 0";
    application.settings["Test.Age"] = QStringLiteral("-7");
    EXPECT_EQ(age.value(), 250u);
    application.settings["Test.Age"] = QStringLiteral("70");
    EXPECT_EQ(age.value(), 70u);
    greeting.store(application, QStringLiteral("good day"));
    EXPECT_EQ(greeting.value(&application), "good day");
}

TEST(SettingsRegistry, JoinsPagesByNameAndKeepsWhatWasThereFirst)
{
    StubApplication application;
    QlumSettingsRegistry registry;
    ASSERT_EQ(QlumSettingsRegistry::instance(), &registry);
    const QlumSettingText text{"&Age:", "How old."};
    qlumRegisterSettings({"page", "&Page", {QlumSettingRow::number(age, text, 0, 9)}});
    qlumRegisterSettings({"other", "&Other", {QlumSettingRow::unseen("Test.Hidden", 3)}});
    constexpr QlumSetting<int> rival{"Test.Age", 1};
    qlumRegisterSettings({"page",
                          "&Ignored",
                          {QlumSettingRow::number(rival, text, 0, 9), QlumSettingRow::line(greeting, text)}});

    ASSERT_EQ(registry.pages().size(), 2u);
    const QlumSettingsPage& page = registry.pages().front();
    EXPECT_EQ(page.title, "&Page");
    ASSERT_EQ(page.rows.size(), 2u);
    EXPECT_EQ(page.rows[0].standard, QVariant(250u));
    EXPECT_EQ(page.rows[1].key, "Test.Greeting");
    EXPECT_EQ(registry.standard("Test.Age"), QVariant(250u));
    EXPECT_EQ(registry.standard("Test.Hidden"), QVariant(3));
    EXPECT_FALSE(registry.standard("Test.Unknown").isValid());
    EXPECT_EQ(application.texts().filter("Test.Age").size(), 1) << "two tools with one key must be found out";
}

TEST(FormRow, NamesTheFieldForKeysScreenReadersAndTests)
{
    QWidget page;
    auto* form = new QFormLayout(&page);
    auto* edit = new QLineEdit;
    auto* line = new QHBoxLayout;
    line->addWidget(edit);
    qlumAddRow(form, edit, {"host", "R&&D &host (0: none):", "<b>Host</b>", {}}, line);
    auto* label = qobject_cast<QLabel*>(form->itemAt(0, QFormLayout::LabelRole)->widget());
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->buddy(), edit) << "else the mnemonic leads nowhere";
    EXPECT_EQ(label->text(), "R&&D &host (0: none):");
    EXPECT_EQ(edit->accessibleName(), "R&D host (0: none)");
    EXPECT_EQ(edit->toolTip(), edit->accessibleName());
    EXPECT_EQ(edit->whatsThis(), "<b>Host</b>");
    EXPECT_EQ(page.findChild<QLineEdit*>("host"), edit);
}
} // namespace
