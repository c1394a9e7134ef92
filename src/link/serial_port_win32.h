// The one serial port to the controller and its reader thread.
#ifndef VELDOR_LINK_SERIAL_PORT_WIN32_H
#define VELDOR_LINK_SERIAL_PORT_WIN32_H

#include <windows.h>

// INVALID_HANDLE_VALUE while the port is closed.
extern HANDLE portHandle;
// 0 run, 1 stop asked, 2 the reader thread has ended.
extern volatile LONG readerState;

// Opens the port named by "PC Port" and starts the reader thread; 1 on
// success. Closes an open port first. User-interface thread only.
int OpenPort();
// Sends "OP 0", drops the lines and stops the thread; 1 when the port was
// closed in good order or was not open, 0 when the thread did not end within
// 3 seconds (the handle is closed all the same). Never from the reader thread.
int ClosePort();
// The reader thread's body; its parameter is the port handle.
DWORD WINAPI ReaderThread(LPVOID port);

// Writes the bytes with an overlapped write and waits until they have left;
// 1 when written. Any thread.
int PortWrite(const char* data, int length);

#endif
