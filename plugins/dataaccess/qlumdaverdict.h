// Whether all values of a variable have come, as far as that can be known.
#pragma once
#include <opcua/opcua_types.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdataitem.h>

/// What is known of a row. Times and spans in units of 100 ns.
struct QlumDaEvidence
{
    QlumDataState state = QlumDataState::Waiting;
    bool isConnected = false;
    QlumDataSettings asked;
    double revisedPublishing = 0; ///< ms; 0: not known
    double revisedSampling = 0;   ///< ms
    quint32 revisedQueue = 0;
    quint32 keepAliveCount =
        0;                 ///< publishing intervals without news until the server shows a sign; 0: not known
    quint64 count = 0;     ///< values that came
    quint32 overflows = 0; ///< times that the server's queue has lost some
    quint32 gaps = 0;      ///< notifications that were lost on the way
    OpcUa_DateTime now = 0;
    OpcUa_DateTime lastValue = 0;         ///< when the newest one came; 0 before the first
    OpcUa_DateTime subscriptionHeard = 0; ///< when the subscription last told anything; 0 before that
    OpcUa_DateTime delay = 0; ///< how much later the newest value came than the quickest of its server
};

/// The verdict on it.
[[nodiscard]] QlumDaVerdict qlumDaJudge(const QlumDaEvidence& evidence);
