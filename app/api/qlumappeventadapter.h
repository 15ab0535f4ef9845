#pragma once
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <uabase/values/uanodeid.h>

#include <QMap>
#include <QSettings>

/// Answers every event by doing nothing; plugins derive from it and override what concerns them.
class QlumAppEventAdapter : public QlumAppEventInterface
{
public:
    void serverSelectionChanged(unsigned int) override {}
    void selectionChanged(unsigned int, UaNodeId*, OpcUa_NodeClass, UaNodeId*) override {}
    void sessionStatusChanged(unsigned int, QlumConnectionStatus, const NamespaceMap&) override {}
    void sessionRemoved(unsigned int) override {}
    void saveSettings(QSettings&) override {}
    void loadSettings(QSettings&, const QMap<int, int>&) override {}
    void serverModelChanged(unsigned int, const UaNodeId&, unsigned char) override {}
};
