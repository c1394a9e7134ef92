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

// The frame's one-second timer; a timer id other than 1 does nothing.
void Tick(int timerId);

// Distance in metres between the live position and the last stored record.
double DistanceFromLastRecord();

// The frame caption for the current data file: "VELDOR" or
// "VELDOR [ name ]".
void UpdateFrameCaption();

#endif
