#pragma once
#include <QString>
#include <QVariant>

#include <vector>

struct QlumSettingDefault
{
    QString key;
    QVariant value;
};

/// Every setting of the application that has a default, with its type. Tools register those of their own by
/// giving a default when they ask.
[[nodiscard]] const std::vector<QlumSettingDefault>& qlumSettingsDefaults();
