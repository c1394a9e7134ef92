// What the bodies of inbound frames mean, and the link timers that run on the
// one-second tick.
#ifndef VELDOR_LINK_CONTROLLER_MESSAGES_H
#define VELDOR_LINK_CONTROLLER_MESSAGES_H

#include <stdint.h>

// Ticks until "No communications from controller"; re-armed to 12 by every
// recognised message.
extern int32_t commsWatchdogTicks;

// Handles the body of a good frame. Returns 1 for a recognised code, 0
// otherwise. Runs on the serial reader thread.
int HandleControllerMessage(const char* body);

// The link's share of the one-second tick: watchdog and keep-alive (port open
// only), then the data-valid countdown and "OP 1" while data are stale.
void LinkTick();

// Link timers as the start-up sequence sets them.
void ResetLinkTimers();

#endif
