// The three accessory modes of the controller's accessory port: TZR4100
// channel switch, AR3000A scanning receiver, differential GPS input. Each
// switch reads its inputs from the settings, which the dialogs write first.
#ifndef VELDOR_LINK_ACCESSORY_MODES_H
#define VELDOR_LINK_ACCESSORY_MODES_H

// 1 when all frames went out, 0 when the operator refused or a send failed.
int ApplyTzrMode();
// 1 while the TZR4100 mode steps the channel ("Increment channel").
int TzrStepping();
// After a timed record, while the program steps the TZR4100 (an interval of
// 2 s or more): "MC" with the next channel, after the last one back to 1.
void StepTzrChannel();
int ApplyAr3000aMode();
// Logs its own failure.
void ApplyGpsDiffMode();

// Builds the AR3000A configuration body ("AC T88.0W,...,4800") from the
// settings; at most 127 characters.
void BuildAr3000aConfiguration(char* body, int size);

#endif
