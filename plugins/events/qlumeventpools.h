#pragma once
#include <app/api/qlumserverpools.h>

/// The threads of all event views.
class QlumEventPools : public QlumServerPools
{
};
