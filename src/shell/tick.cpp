// The frame's one-second tick.
#include "shell/tick.h"

#include "link/accessory_modes.h"
#include "link/controller_messages.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"

void Tick(int timerId) {
    if (timerId != 1) return;
    ShowStoreGauge();
    LinkTick();
    if (!(statusFlags & STATUS_RECORDING)) return;
    if (statusFlags & STATUS_DISTANCE_INTERVAL)
        RecordByDistance();
    else if (RecordByTime())
        StepTzrChannel();
    AutosaveTick();
}
