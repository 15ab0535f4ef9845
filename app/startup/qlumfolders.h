#pragma once
#include <QString>

/// Creates the folders of the user's configuration, and moves the files of an older layout of the certificate
/// store into them. What cannot be created or moved stays as it is; the next start tries again.
void prepareFolders();

/// Where unsaved changes are kept for the case of a crash.
[[nodiscard]] QString qlumRecoveryFolder();
