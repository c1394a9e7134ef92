// The recording engine: when a sample enters the store, by time or by
// distance, and the autosave countdown, all on the one-second tick. Record >
// Start and Record > Stop, which also drive the TZR4100 and the autosave file
// name, are the frame's (shell/recording_commands.h).
#ifndef VELDOR_SURVEY_RECORDING_ENGINE_H
#define VELDOR_SURVEY_RECORDING_ENGINE_H

#include <stdint.h>

// The engine's settings as an empty settings file gives them.
constexpr int32_t DefaultRecordIntervalSeconds = 5;
constexpr int32_t DefaultRecordIntervalMeters = 500;
constexpr int32_t DefaultAutosaveMinutes = 5;
constexpr int32_t DefaultEarthRadiusKm = 6371;
constexpr int32_t DefaultMaxPlotTime = 1000;
constexpr int32_t DefaultTzrChannelCount = 10;

extern int32_t recordIntervalSeconds;
extern int32_t recordIntervalMeters;
extern int32_t recordTicks;
extern int32_t autosaveMinutes;
extern int32_t autosaveTicks;
extern int32_t EarthRadiusKm;
extern int32_t maxPlotTime;
// Number of TZR4100 channels (setting "Number of channels").
extern int32_t tzrChannelCount;

// Engine settings back to their defaults (as from an empty settings file).
void ResetRecordingEngine();

// Record > Take a Reading.
void TakeReading();

// The engine's steps of the one-second tick, which the shell's Tick runs in
// this order (shell/tick.cpp): the store gauge in status pane 2 on every tick;
// after the link's timers and only while recording, RecordByDistance or
// RecordByTime (and after a timed record the TZR4100's next channel), then
// AutosaveTick.
void ShowStoreGauge();
// Counts recordTicks down; at 0 stores a live sample and rearms the interval.
// 1 when it stored one and the store still has room.
int RecordByTime();
// Stores a live sample once the position is recordIntervalMeters or more from
// the last record (the first one at once).
void RecordByDistance();
// Counts autosaveTicks down while autosave is on; at 0 saves through
// File > Save, or says why it cannot.
void AutosaveTick();

// Distance in metres between the live position and the last stored record.
double DistanceFromLastRecord();

#endif
