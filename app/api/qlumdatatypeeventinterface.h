#pragma once
#include <QtPlugin>

/// Offered by plugins that show values by the data types of their server. Apart from QlumAppEventInterface,
/// which older plugins implement as it is.
class QlumDataTypeEventInterface
{
public:
    virtual ~QlumDataTypeEventInterface() = default;

    /// The definitions of the server's data types have been loaded, or loaded anew, which goes on beside the
    /// connection: what was shown undecoded may be decoded now. On the GUI thread.
    virtual void dataTypesLoaded(unsigned int serverId) = 0;
};

#define QlumDataTypeEventInterface_iid "com.korvanda.UaClient.DataTypeEventInterface/1.0"
Q_DECLARE_INTERFACE(QlumDataTypeEventInterface, QlumDataTypeEventInterface_iid)
