// The frame's one-second tick: the order of the work done on each second.
#ifndef VELDOR_SHELL_TICK_H
#define VELDOR_SHELL_TICK_H

// The store gauge, the link timers, then, while recording, a sample by
// distance or by time and the autosave countdown. A timer id other than 1
// does nothing.
void Tick(int timerId);

#endif
