#pragma once
#include <app/mainwindow/qlumtavelinservices.h>

/// What servers, certificates and the address space view do for the main window.
[[nodiscard]] QlumTavelinServices qlumServices();
