#pragma once
#include <QtGlobal>

/// Debug builds stop here when the caller is not on the GUI thread, the only one that may touch item models
/// and widgets. Passes while there is no application; does nothing in release builds.
#if defined(QT_NO_DEBUG) && !defined(QT_FORCE_ASSERTS)
inline void qlumAssertGuiThread() {}
#else
void qlumAssertGuiThread();
#endif
