#pragma once

class QlumSettingsRegistry;

/// Registers the application's own settings with the pages that they are on.
void qlumAddApplicationSettings(QlumSettingsRegistry& registry);
