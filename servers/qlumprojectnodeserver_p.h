// What the parts of the server node share.
#pragma once
#include <servers/qlumendpoint.h>
#include <servers/qlumprojectnodeserver.h>

#include <QMessageBox>
#include <QString>
#include <QVector>
#include <QWidget>

struct QlumProjectNodeServer::Attempt
{
    QVector<QlumEndpoint> endpoints;
    QlumEndpoint endpoint; ///< the chosen one, or the stored one when the user insists
    UaClientSdk::SessionSecurityInfo security;
    bool changesUser = false; ///< of a session that stands
};

/// Null while there is none.
[[nodiscard]] QWidget* qlumMainWindow();
/// A warning in plain text, with details below that nobody else has written. The button pressed; NoButton
/// when the box went away with its window.
int qlumWarn(const QString& title, const QString& text, QMessageBox::StandardButtons buttons,
             QMessageBox::StandardButton defaultButton = QMessageBox::Ok, const QString& details = QString());
