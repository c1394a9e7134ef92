// The recording engine: when a sample enters the store, by time or by
// distance, the TZR4100 channel stepping and the autosave countdown, all on
// the one-second tick.
#ifndef VELDOR_SURVEY_RECORDING_ENGINE_H
#define VELDOR_SURVEY_RECORDING_ENGINE_H

#include <stdint.h>

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

// Record > Start, Record > Stop, Record > Take a Reading.
void StartRecording();
void StopRecording();
void TakeReading();

// The engine's steps of the one-second tick, which the shell's Tick runs in
// this order (shell/tick.cpp): the store gauge in status pane 2 on every tick;
// after the link's timers and only while recording, RecordByDistance or
// RecordByTime, then AutosaveTick.
void ShowStoreGauge();
// Counts recordTicks down; at 0 stores a live sample, rearms the interval and
// steps the TZR4100 channel.
void RecordByTime();
// Stores a live sample once the position is recordIntervalMeters or more from
// the last record (the first one at once).
void RecordByDistance();
// Counts autosaveTicks down while autosave is on; at 0 saves through
// File > Save, or says why it cannot.
void AutosaveTick();

// The frame's one-second timer. The shell defines it (shell/tick.cpp, which
// declares it in shell/tick.h); it is declared here as well for the callers
// that drive the engine by its tick.
void Tick(int timerId);

// Distance in metres between the live position and the last stored record.
double DistanceFromLastRecord();

// The frame caption for the current data file: "VELDOR" or
// "VELDOR [ name ]".
void UpdateFrameCaption();

#endif
