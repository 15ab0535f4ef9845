#pragma once

/// The actions of an event view.
namespace QlumEventActions {
enum Id {
    Apply,
    ReadTypes,
    RemoveItem,
    Refresh,
    ClearLog,
    Pause,
    Autoscroll,
    HideRefreshed,
    ShowRetainIfFalse,
    Acknowledge,
    Confirm,
    AddComment,
    AcknowledgeAll,
    ConfirmAll,
    ReadHistory,
    TimedShelve,
    ShelveOnce,
    Unshelve,
    Enable,
    Disable,
    Suppress,
    Unsuppress,
    AddColumn,
    Sound
};
} // namespace QlumEventActions
