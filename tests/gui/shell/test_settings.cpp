#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <app/settings/qlumappearance.h>
#include <app/settings/qlumlanguages.h>
#include <app/settings/qlumoutlinedstyle.h>
#include <app/settings/qlumsettingsdialog.h>
#include <app/settings/qlumsettingsform.h>
#include <app/settings/qlumsettingsmodel.h>
#include <plugins/events/qlumeventsettings.h>
#include <uawidgets/qlumtimefield.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QApplication>
#include <QCheckBox>
#include <QColor>
#include <QComboBox>
#include <QCoreApplication>
#include <QDate>
#include <QDateTime>
#include <QDateTimeEdit>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPalette>
#include <QPushButton>
#include <QRect>
#include <QSettings>
#include <QSpinBox>
#include <QString>
#include <QStringList>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTemporaryDir>
#include <QTime>
#include <QTranslator>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace {
// A dialog over settings of its own.
class SettingsDialog : public ::testing::Test
{
protected:
    SettingsDialog() { QSettings().clear(); }
    ~SettingsDialog() override { QSettings().clear(); }

    template <typename T>
    T* field(const QString& name)
    {
        auto* found = dialog->findChild<T*>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    QStringList shownPages()
    {
        QStringList pages;
        const auto* list = field<QListWidget>("settingsPages");
        for (int row = 0; row < list->count(); ++row)
            if (!list->item(row)->isHidden())
                pages.append(list->item(row)->text());
        return pages;
    }

    QlumSettingsModel settings;
    std::unique_ptr<QlumSettingsDialog> dialog = std::make_unique<QlumSettingsDialog>(&settings);
};
} // namespace

TEST_F(SettingsDialog, SearchLeavesWhatContainsTheWords)
{
    const int all = shownPages().size();
    field<QLineEdit>("settingsSearch")->setText("answer connection");
    EXPECT_EQ(shownPages().first(), QStringLiteral("Connections"));
    EXPECT_FALSE(field<QSpinBox>("General.ConnectTimeout")->isHidden()) << "its explanation has both words";
    EXPECT_TRUE(field<QSpinBox>("General.SessionTimeout")->isHidden());
    EXPECT_LT(shownPages().size(), all);
    field<QLineEdit>("settingsSearch")->setText("no such words");
    EXPECT_TRUE(shownPages().isEmpty());
    field<QLineEdit>("settingsSearch")->clear();
    EXPECT_EQ(shownPages().size(), all);
    EXPECT_FALSE(field<QSpinBox>("General.SessionTimeout")->isHidden());
}

TEST_F(SettingsDialog, DefaultsAreRestoredOfTheShownPageAlone)
{
    settings.setValue(QlumSettings::callTimeout.key(), 20000);
    settings.setValue(QlumSettings::browseTimeout.key(), 20000);
    dialog = std::make_unique<QlumSettingsDialog>(&settings);
    dialog->showSetting(QlumSettings::browseTimeout.key());
    dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::RestoreDefaults)->click();
    dialog->accept();
    EXPECT_EQ(settings.value(QlumSettings::browseTimeout.key()).toUInt(), 10000u);
    EXPECT_EQ(settings.value(QlumSettings::callTimeout.key()).toUInt(), 20000u);
}

TEST_F(SettingsDialog, NumbersThatAreMoreThanAnIntAreShownAndKeptWhole)
{
    static constexpr QlumSetting<unsigned int> queueSize{"Tool.QueueSize", 4294967295u};
    qlumRegisterSettings(
        {"Tool", "Tool", {QlumSettingRow::number(queueSize, {"Queue:", {}}, 0, 4294967295.0)}});
    dialog = std::make_unique<QlumSettingsDialog>(&settings);
    auto* size = field<QDoubleSpinBox>(queueSize.key());
    EXPECT_EQ(size->value(), 4294967295.0);
    size->setValue(3000000000.0);
    dialog->accept();
    EXPECT_EQ(settings.value(queueSize.key()).toULongLong(), 3000000000ULL);
}

TEST_F(SettingsDialog, TraceFileThatCannotBeWrittenIsToldWhenEnteredAndHoldsTheDialog)
{
    const QTemporaryDir folder;
    auto* file = field<QLineEdit>("Trace.Filename");
    auto* fault = field<QLabel>("Trace.FilenameFault");
    file->setText(folder.filePath("none/trace.log"));
    EXPECT_EQ(fault->text(), QStringLiteral("The folder %1 is not there.").arg(folder.filePath("none")));
    EXPECT_FALSE(fault->isHidden());
    dialog->accept();
    EXPECT_NE(dialog->result(), QDialog::Accepted);
    EXPECT_NE(settings.value("Trace.Filename").toString(), file->text());
    file->setText(folder.path());
    EXPECT_EQ(fault->text(), QStringLiteral("%1 is a folder.").arg(folder.path()));
    file->setText("trace.log");
    EXPECT_TRUE(fault->text().contains("must begin with its folder"));
    file->setText(folder.filePath("trace.log"));
    EXPECT_TRUE(fault->isHidden());
    dialog->accept();
    EXPECT_EQ(settings.value("Trace.Filename").toString(), folder.filePath("trace.log"));
}

TEST_F(SettingsDialog, ChangesThatWaitAreNamedUntilTheyAreTakenBack)
{
    const auto* waits = field<QLabel>("settingsWait");
    auto* time = field<QSpinBox>("General.SessionTimeout");
    const int before = time->value();
    field<QSpinBox>("General.CallTimeout")->setValue(4711); // felt at once
    EXPECT_TRUE(waits->isHidden());
    time->setValue(before + 1);
    field<QComboBox>("Appearance.Scale")->setCurrentIndex(2);
    EXPECT_EQ(waits->text(), QStringLiteral("When a server is connected the next time: Session time-out\n"
                                            "When Tavelin is started the next time: Size"));
    time->setValue(before);
    EXPECT_FALSE(waits->text().contains("Session"));
}

TEST_F(SettingsDialog, ValuesOfTheFileThatAreOutOfRangeCountAsNotSet)
{
    QSettings().setValue(QlumSettings::connectTimeout.key(), 0);
    QSettings().setValue(QlumSettings::traceBackupFiles.key(), -3);
    QSettings().setValue(QlumSettings::callTimeout.key(), "soon");
    QSettings().setValue(QlumSettings::browseTimeout.key(), 2000);
    const QlumSettingsModel edited;
    EXPECT_EQ(edited.value(QlumSettings::connectTimeout.key()).toUInt(), 5000u);
    EXPECT_EQ(edited.value(QlumSettings::traceBackupFiles.key()).toUInt(), 5u);
    EXPECT_EQ(edited.value(QlumSettings::callTimeout.key()).toUInt(), 10000u);
    EXPECT_EQ(edited.value(QlumSettings::browseTimeout.key()).toUInt(), 2000u);
}

TEST_F(SettingsDialog, FileThatCannotBeWrittenIsToldAndTheValueHolds)
{
    const QString base = QSettings().fileName().section("/" + QCoreApplication::organizationName(), 0, 0);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, "/proc/none");
    QlumSettingsModel unwritable;
    unwritable.setValue(QlumSettings::callTimeout.key(), 4711);
    EXPECT_FALSE(unwritable.flush());
    EXPECT_EQ(unwritable.value(QlumSettings::callTimeout.key()).toInt(), 4711);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, base);
    EXPECT_TRUE(settings.flush());
}

TEST(Appearance, FollowsTheSettingsAndReturnsToTheSystem)
{
    QSettings().clear();
    QlumSettingsModel settings;
    const QColor before = QApplication::palette().color(QPalette::Base);
    const QlumAppearance appearance(settings);
    const auto red = qlumStatusColor(QlumStatusLevel::Bad, QApplication::palette());
    QDateTimeEdit field;
    const QDateTime noon(QDate(2026, 1, 31), QTime(12, 0), Qt::UTC);
    qlumFollowTimeLook(&field);
    qlumSetMoment(&field, noon);

    settings.setValue("Appearance.Palette", "Dark");
    settings.setValue("Appearance.SafeStatusColours", true);
    settings.setValue("Appearance.UtcTimes", true);
    settings.setValue("Appearance.TimeFormat", "ISO");
    EXPECT_LT(QApplication::palette().color(QPalette::Base).lightness(), 80);
    const auto safe = qlumStatusColor(QlumStatusLevel::Bad, QApplication::palette());
    EXPECT_NE(safe, red);
    EXPECT_NE(safe, qlumStatusColor(QlumStatusLevel::Uncertain, QApplication::palette()));
    EXPECT_EQ(qlumShowDateTime(noon.toOffsetFromUtc(7200)), QStringLiteral("2026-01-31 12:00:00.000Z"));
    EXPECT_EQ(qlumShowDateTime(qlumUaDateTime(noon)), qlumShowDateTime(noon));
    EXPECT_EQ(qlumShowTime(noon), QStringLiteral("12:00:00.000Z"));
    EXPECT_EQ(field.text(), QStringLiteral("2026-01-31 12:00:00.000 UTC"));
    EXPECT_EQ(field.dateTime(), noon);

    for (const char* key : {"Appearance.SafeStatusColours", "Appearance.UtcTimes"})
        settings.setValue(key, false);
    settings.setValue("Appearance.TimeFormat", "System");
    settings.setValue("Appearance.Palette", "System");
    EXPECT_EQ(QApplication::palette().color(QPalette::Base), before);
    EXPECT_EQ(field.dateTime(), noon);
    EXPECT_FALSE(field.text().contains("UTC"));
    QSettings().clear();
}

// Nobody ticks what he does not see.
TEST(Appearance, BoxesToBeTickedCanBeSeenOnDarkBackgrounds)
{
    const QlumOutlinedStyle style;
    for (const bool isDark : {true, false}) {
        const QPalette palette = qlumPalette(isDark);
        const QColor base = palette.color(QPalette::Base);
        QImage image(20, 20, QImage::Format_RGB32);
        image.fill(base);
        QStyleOptionViewItem box;
        box.palette = palette;
        box.rect = QRect(3, 3, 13, 13);
        box.state = QStyle::State_Enabled | QStyle::State_Off;
        {
            QPainter painter(&image);
            style.drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &box, &painter);
        }
        int contrast = 0;
        for (int x = 0; x < image.width(); ++x)
            contrast = std::max(contrast, std::abs(image.pixelColor(x, 9).lightness() - base.lightness()));
        EXPECT_GT(contrast, 60) << (isDark ? "dark" : "light");
    }
}

TEST(Appearance, LanguagesAreTheFilesThatAreThere)
{
    const QTemporaryDir folder;
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    QFile file("tavelin_fr.qm");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_TRUE(qlumLanguages().contains("fr"));
    QDir::setCurrent(before);
    EXPECT_EQ(qlumLanguageName("fr"), QString::fromUtf8("Fran\u00e7ais"));
    EXPECT_EQ(qlumLanguageName("tlhx"), QStringLiteral("tlhx"));
}
