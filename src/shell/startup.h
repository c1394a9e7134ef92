// The portable share of bringing the program up and down: the initial values
// and the settings read by the start-up sequence, the frame's place on the
// screen, and the window state written at exit. The Windows front end runs
// these in the order of its start-up message and its exit sequence.
#ifndef VELDOR_SHELL_STARTUP_H
#define VELDOR_SHELL_STARTUP_H

#include <stdint.h>

// The initial values of the start-up sequence: empty store, no flags, no
// file, link timers armed, and one busy level (ended by the sequence).
void SetInitialValues();

// Reads every setting the start-up sequence takes, in its order: display
// formats, channels, intervals, flags, plot breaks and dot size, the plot
// colours (defaults, then Colours.txt beside the program), the TZR4100 input
// channel, the channel labels and the four calibration curves.
void ReadStartupSettings();

// 1 when "Status" of "Setup" asks for the first-run layout (maximised frame,
// cascaded children); the key is then set to "2" so that it happens once.
int TakeFirstRunLayout();

struct FramePlace {
    int x;
    int y;
    int width;
    int height;
};

// The frame's place from the stored values (SettingNotStored where nothing is
// stored) on a screen of the given size: a negative origin becomes 0, and an
// origin that puts the window past the screen's edge is pulled back.
FramePlace PlaceFrame(FramePlace stored, int screenWidth, int screenHeight);

// What the frame looks like at exit.
struct FrameExitState {
    int minimised;
    int maximised;
    FramePlace place;  // the window rectangle, when neither of the above
};

// Exit steps after the question to save: the "Show ..." keys from the
// windows that exist now, the chart and plot channels, and the frame's state.
void WriteExitSettings(const FrameExitState& frame);

#endif
