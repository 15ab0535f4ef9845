#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QColor>
#include <QString>

/// A variable whose history is shown.
struct QlumTrendItem
{
    int key = 0;                          ///< of the item in its document, as long as it is there
    unsigned int serverId = qlumNoServer; ///< that keeps the history
    UaNodeId nodeId;                      ///< as the server calls it now
    QString name;                         ///< for the user
    QColor color;                         ///< of the curve
    bool stepped = false;                 ///< values hold until the next
    int width = 1;                        ///< of the line; pixels
    bool isLost = false;                  ///< its namespace is not on the server any more
    QString history;                      ///< what was read, or why nothing was
    QlumStatusLevel level = QlumStatusLevel::Inactive; ///< of that
};
