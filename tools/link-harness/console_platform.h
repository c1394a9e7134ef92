#ifndef VELDOR_LINK_HARNESS_CONSOLE_PLATFORM_H
#define VELDOR_LINK_HARNESS_CONSOLE_PLATFORM_H

// The open port, or -1.
extern int consolePortFd;

#endif
