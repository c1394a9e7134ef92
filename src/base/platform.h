// The one list of what the portable core needs from the platform.
//
// The program links the Win32 implementation (platform_win32.cpp); the unit
// tests link a fake that records every call and answers questions from a
// script. Plain free functions resolved at link time.
#ifndef VELDOR_BASE_PLATFORM_H
#define VELDOR_BASE_PLATFORM_H

#include <stdint.h>

// ---- Serial port -----------------------------------------------------------
// 1 while the port handle is valid.
int PlatformPortIsOpen();
// Writes the bytes and waits until they have left; 1 when written. Any thread.
int PlatformPortWrite(const char* data, int length);

// ---- Status bar ------------------------------------------------------------
// Pane 0 is the log line (use LogStatus), 1 the run state, 2 the store gauge.
// Safe from any thread; the text is copied before returning.
void PlatformSetStatusPane(int pane, const char* text);

// ---- Questions and message boxes --------------------------------------------
enum MessageIcon {
    ICON_STOP = 1,
    ICON_EXCLAMATION = 2,
    ICON_QUESTION = 3,
    ICON_INFORMATION = 4
};
// A question titled "VELDOR" with Yes and No and the question icon; 1 for Yes.
int PlatformAskYesNo(const char* text);
// A message box titled "VELDOR" with one OK button.
void PlatformMessageBox(const char* text, int icon);

// ---- Windows and repaints ---------------------------------------------------
enum WindowId {
    WINDOW_FRAME = 0,
    WINDOW_LISTING = 1,
    WINDOW_PLOT = 2,
    WINDOW_CHART = 3,
    WINDOW_TAGS = 4,
    WINDOW_CALIBRATION = 5,  // the calibration editor dialog
    WINDOW_GPS = 6,          // the GPS dialog
    WINDOW_COUNT = 7
};
enum WindowArea {
    AREA_WHOLE = 0,            // the whole client area
    AREA_LISTING_COLUMNS = 1,  // the seven column strips of the Listing
    AREA_LISTING_LIVE_ROW = 2, // the Listing's live row
    AREA_LISTING_INDEX = 3,    // the Listing's index column
    AREA_PLOT_RECT = 4,        // the Plot's plot rectangle
    AREA_CHART_RECT = 5,       // the Chart's chart rectangle
    AREA_LIVE_READING = 6,     // the calibration editor's live reading
    AREA_PLOT_READOUT = 7      // the Plot's cursor read-out
};
int PlatformWindowExists(int window);
// Asks for a repaint; nothing happens when the window does not exist.
void PlatformRepaint(int window, int area, int erase);
// Sets the vertical scroll position (0..100) of a window, if it exists.
void PlatformSetVerticalScroll(int window, int position);
// Sets the horizontal scroll position (0..100) of a window, if it exists.
void PlatformSetHorizontalScroll(int window, int position);
// Sets a window's caption, if it exists.
void PlatformSetWindowCaption(int window, const char* text);
// The client size of a window; 0 (and 0 by 0) when it does not exist.
int PlatformClientSize(int window, int* width, int* height);
// Posts the window's private message (1024) with a code; for the Tags window
// code 0 asks it to refresh its list. Skipped when the window does not exist.
void PlatformNotifyWindow(int window, int code);

// ---- Frame -----------------------------------------------------------------
void PlatformSetFrameCaption(const char* text);
// Performs a frame menu command as if the operator had chosen it (ids of the
// menu resource, e.g. 40023 File > Save).
void PlatformFrameCommand(int commandId);

// ---- Clock -----------------------------------------------------------------
struct LocalTime {
    int year;    // e.g. 2026
    int month;   // 1..12
    int day;     // 1..31
    int hour;    // 0..23
    int minute;  // 0..59
    int second;  // 0..59
    int weekday; // 0 = Sunday
};
// The PC clock, seconds since 1 January 1970 UTC, 32 bits.
uint32_t PlatformTime();
// Local-time breakdown of a clock value; 0 when the value cannot be broken down.
int PlatformLocalTime(uint32_t seconds, LocalTime* out);

// ---- Busy cursor ------------------------------------------------------------
// The nesting count of long operations (BeginBusy, EndBusy) is portable, in
// base/busy.h. The platform is told when the count leaves 0 (1) and when it
// comes back to 0 (0): the wait cursor shows while it is above 0.
void PlatformBusyChanged(int busyCount);

// ---- File chooser -----------------------------------------------------------
enum ChooseFileMode {
    CHOOSE_OPEN_DATA = 0,
    CHOOSE_SAVE_DATA = 1,
    CHOOSE_SAVE_TEXT = 2,
    CHOOSE_SAVE_CALIBRATION = 3
};
// The standard file dialog; 1 with the full path in path, or 0 with path
// emptied.
int ChooseFile(char* path, int size, int mode);

// ---- Private profile (the settings file) -----------------------------------
int ProfileGetInt(const char* section, const char* key, int defaultValue,
                  const char* path);
// Copies the value, cut to size-1 characters, or the default; returns the
// number of characters copied.
int ProfileGetString(const char* section, const char* key,
                     const char* defaultValue, char* buffer, int size,
                     const char* path);
// Sets one key, creating the file and the section as needed; 1 on success.
int ProfileWriteString(const char* section, const char* key, const char* value,
                       const char* path);

#endif
