#pragma once

/// From now on messages of Qt, and those that are written the same way, go to the trace and no more to the
/// console, where nobody who started the program from a menu would see them.
void qlumTraceQtMessages();
