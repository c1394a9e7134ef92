// Record > Start and Record > Stop: the recording engine's run state with
// what goes with it, the TZR4100's first channel and stepping mode, the
// autosave file name, the parameters stored with the survey.
#ifndef VELDOR_SHELL_RECORDING_COMMANDS_H
#define VELDOR_SHELL_RECORDING_COMMANDS_H

// Takes RecordingParams from the settings in force.
void SnapshotRecordingParams();

void StartRecording();
void StopRecording();

#endif
