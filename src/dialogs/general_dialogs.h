// The rules of the four dialogs that edit settings: DisplayBox (the screen
// format), ColoursBox (the plot's colour breaks and dot size), RecSettingsBox
// (recording interval, autosave, averaging, channel labels) and PrefBox (the
// views' fonts and four preferences). Each works on a plain struct of what
// its controls hold; opening fills the struct from the state, OK takes it
// back, writes the dialog's keys to the settings file at once and repaints
// what depends on them. User-interface thread.
#ifndef VELDOR_DIALOGS_GENERAL_DIALOGS_H
#define VELDOR_DIALOGS_GENERAL_DIALOGS_H

#include <stdint.h>

#include "survey/survey_state.h"
#include "views/display_format.h"

constexpr int GeneralEditSize = 32;  // a number's edit, 31 characters

// ---- DisplayBox ---------------------------------------------------------------------
// Indexes of the checked radio button of each group, in the order shown.
struct DisplayBoxValues {
    int32_t latLong;  // "Deg", "Deg Min", "Deg Min Sec", "Milliseconds"
    int32_t sign;     // "North/South", "+/-"
    int32_t reading;  // "0", "0.0", "0.000", "Raw"
};
void DisplayBoxOpen(DisplayBoxValues* values);
// A format's buttons and back; a value with no button of its own shows the
// group's first ("Deg", "North/South", "0").
DisplayBoxValues DisplayFormatButtons(const DisplayFormat& format);
DisplayFormat DisplayFormatOfButtons(const DisplayBoxValues& values);
// Sets ScreenFormat, writes its three keys and repaints the three views.
void DisplayBoxStore(const DisplayBoxValues* values);

// ---- ColoursBox ---------------------------------------------------------------------
struct ColoursBoxValues {
    char breaks[3][GeneralEditSize];  // "%.3f", highest first
    char dotSize[GeneralEditSize];    // "%d"
};
constexpr int COLOURS_DOT_SIZE = 3;  // the spin of the dot size; 0..2 the breaks'
void ColoursBoxOpen(ColoursBoxValues* values);
// One press on a spin control (delta +1 up, -1 down): rewrites that edit.
// A break moved onto or past its neighbour stops one short of it.
void ColoursBoxSpin(ColoursBoxValues* values, int control, int delta);
// OK: 0 with the message shown when the breaks do not fall or the dot size
// is outside 1..50; else stores and writes them, repaints the plot area, 1.
int ColoursBoxStore(const ColoursBoxValues* values);

// ---- RecSettingsBox -----------------------------------------------------------------
struct RecSettingsValues {
    int32_t distance;  // radio index: 0 "Time", 1 "Distance"
    char seconds[GeneralEditSize];
    char meters[GeneralEditSize];
    int32_t autosave;
    char minutes[GeneralEditSize];
    int32_t averaging;
    char labels[4][ChannelLabelSize];
};
void RecSettingsOpen(RecSettingsValues* values);
// OK: 0 with the message shown, nothing changed, for a distance interval in
// TZR4100 mode; else stores everything (numbers below 1 as 1), writes the
// keys, repaints the Listing, 1.
int RecSettingsStore(const RecSettingsValues* values);

// ---- PrefBox ------------------------------------------------------------------------
constexpr int FontNameSize = 64;
constexpr int PREF_LISTING = 0, PREF_PLOT = 1, PREF_CHART = 2;
struct PrefBoxValues {
    char fontName[3][FontNameSize];  // Listing, Plot, Chart
    char fontSize[3][GeneralEditSize];
    int32_t fullPath, loadStored, checkStored, plotPosition;
};
void PrefBoxOpen(PrefBoxValues* values);
// A size spin's press on the edit's text: the number moved by delta, when it
// stays within 1..100; otherwise the text is left as it is.
void PrefBoxSizeSpin(char* text, int delta);
// OK: writes the fonts as they stand, sets the four flags and writes their
// keys, and sets the frame's caption anew when a data file is named. The
// caller then asks the frame to rebuild the views' fonts.
void PrefBoxStore(const PrefBoxValues* values);

#endif
