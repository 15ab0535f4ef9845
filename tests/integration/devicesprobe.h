// What tests ask of a view of devices, and have done in it.
#pragma once
#include <plugins/devices/qlumdevicedata.h>
#include <plugins/devices/qlumdevicesview.h>
#include <plugins/devices/qlumparametermodel.h>
#include <plugins/devices/qlumparameterpage.h>
#include <uabase/values/uavariant.h>

#include <QLabel>
#include <QString>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>
#include <ranges>
#include <string>

class DevicesProbe
{
public:
    static constexpr int longest = 20000; // ms; far more than any step takes

    [[nodiscard]] bool isIdle() const { return !view->isBusy(); }
    [[nodiscard]] bool waitUntilIdle() const
    {
        return QTest::qWaitFor([this] { return isIdle(); }, longest);
    }
    [[nodiscard]] bool waitUntilRead() const
    {
        return QTest::qWaitFor([this] { return view->space().devices.size() >= 6 && isIdle(); }, longest);
    }
    [[nodiscard]] int place(const char* path) const
    {
        const auto& devices = view->space().devices;
        const auto found = std::ranges::find_if(
            devices, [path](const QlumDevice& device) { return device.pathNames == QLatin1String(path); });
        return found == devices.end() ? -1 : static_cast<int>(found - devices.begin());
    }
    [[nodiscard]] const QlumDevice& device(const char* path) const
    {
        return view->space().devices.at(static_cast<std::size_t>(place(path)));
    }
    void show(const char* path) const
    {
        view->selectDevice(place(path));
        EXPECT_TRUE(waitUntilIdle());
    }
    [[nodiscard]] int row(const char* name) const
    {
        for (int i = 0; i < model().rowCount(); ++i)
            if (model().rowAt(i).parameter.browseName == QLatin1String(name))
                return i;
        return -1;
    }
    [[nodiscard]] const UaVariant& valueOf(const char* name) const
    {
        return model().rowAt(row(name)).parameter.value.value();
    }
    [[nodiscard]] QlumParameterModel& model() const { return *view->parameters()->model(); }
    [[nodiscard]] std::string said(const char* label) const
    {
        const auto* const found = view->findChild<QLabel*>(QLatin1String(label));
        return found ? found->text().toStdString() : std::string();
    }
    [[nodiscard]] bool says(const char* label, const char* text) const
    {
        return said(label).find(text) != std::string::npos;
    }
    /// What the view has to tell, and why.
    [[nodiscard]] std::string message() const { return said("what") + ": " + said("why"); }
    [[nodiscard]] bool tells(const char* text) const { return message().find(text) != std::string::npos; }
    void write() const
    {
        view->writeParameters();
        EXPECT_TRUE(waitUntilIdle());
    }
    void lock(bool isWanted) const
    {
        if (isWanted)
            view->lockDevice();
        else
            view->unlockDevice();
        EXPECT_TRUE(waitUntilIdle());
    }

    QlumDevicesView* view = nullptr;
};
