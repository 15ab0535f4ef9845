#pragma once
#include <app/api/qlumconnectionstatus.h>

#include <QStringList>

/// Old index -> new index of every namespace that is in both tables; of a URI that occurs twice the first
/// counts.
[[nodiscard]] NamespaceMap qlumNamespaceMap(const QStringList& oldUris, const QStringList& newUris);
