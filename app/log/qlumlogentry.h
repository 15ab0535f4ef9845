#pragma once
#include <QDateTime>
#include <QString>

/// One row of the log window.
struct QlumLogEntry
{
    QDateTime timestamp;
    int level = 0;
    QString source;
    QString server; ///< display name, empty for no server
    QString message;
};
