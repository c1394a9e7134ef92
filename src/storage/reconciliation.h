// The comparison of a survey's stored parameters (the calibration file names
// and the TZR4100 input channel of RecordingParams) with the ones in force,
// when a data file has been read and before one is written.
#ifndef VELDOR_STORAGE_RECONCILIATION_H
#define VELDOR_STORAGE_RECONCILIATION_H

// After a data file has been read, with STATUS_LOAD_STORED set: for each
// channel whose "ChN filename" (default "Default.cal") differs from the stored
// name, warns when the stored file can't be opened, else offers to load it;
// on Yes the key takes the stored name and the curve and lookup are rebuilt
// from that file. Changes settings and curves, never the survey.
void ReconcileOnLoad();

// Before a data file is written, with STATUS_CHECK_STORED set: an empty stored
// name takes the current one ("Default.cal" when the key is absent) without a
// question; any other difference in a name or in the input channel is put to
// the operator, and Yes brings the survey's value up to the current one.
void ReconcileOnSave();

#endif
