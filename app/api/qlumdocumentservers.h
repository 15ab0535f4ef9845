#pragma once
#include <QList>
#include <QWidget>

/// Tells which servers a document shows or works on, so that its tab can bear their role. Call it again
/// whenever they are others.
void qlumSetDocumentServers(QWidget* document, const QList<unsigned int>& serverIds);
/// What was told last; none when nothing was.
[[nodiscard]] QList<unsigned int> qlumDocumentServers(const QWidget* document);
/// The name of the widget's dynamic property that changes with them.
[[nodiscard]] const char* qlumDocumentServersProperty();
