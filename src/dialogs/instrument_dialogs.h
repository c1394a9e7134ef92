// The rules of the four link dialogs of the Configure menu: PortsBox (the
// serial port), and GpsDiffBox, AR3000aBox and TzrBox, which edit the
// settings of the accessory modes and then call their switch. Each works on
// a plain struct of the dialog's values; the dialog procedures only move
// them in and out of the controls.
#ifndef VELDOR_DIALOGS_INSTRUMENT_DIALOGS_H
#define VELDOR_DIALOGS_INSTRUMENT_DIALOGS_H

#include <stdint.h>

// ---- PortsBox -------------------------------------------------------------------------------
constexpr int PortCandidates = 30;
constexpr int PortNameSize = 16;

// The name to open for port n (1..30): "COM%d" below 10, "\\.\COM%d" from 10 on.
void PortDeviceName(int n, char* out, int size);
// Whether a port belongs in the list: it opened, or the open failed with an
// error that means the port is there but busy (5, 31, 32, 121).
int PortListed(int opened, unsigned long error);

struct PortsValues {
    char port[256];  // "PC Port"
};
void PortsBoxOpen(PortsValues* values);
// "OK": writes "PC Port"; the caller then has the port reopened.
void PortsBoxStore(const PortsValues* values);

// ---- GpsDiffBox -----------------------------------------------------------------------------
extern const char* const GpsDiffBaudRates[4];

struct GpsDiffValues {
    int32_t enable;
    char baudRate[16];
};
void GpsDiffBoxOpen(GpsDiffValues* values);
// "OK": writes "Baud Rate" and "Enable GPS Diff mode", then switches.
void GpsDiffBoxStore(const GpsDiffValues* values);

// ---- AR3000aBox -----------------------------------------------------------------------------
extern const char* const Ar3000aModes[6];
extern const char* const Ar3000aBaudRates[2];

struct Ar3000aValues {
    int32_t enable;
    char freq[4][32];  // as typed: the receiver gets the text
    char mode[4][16];
    int32_t attOn[4];
    char baudRate[16];
};
void Ar3000aBoxOpen(Ar3000aValues* values);
// "OK": writes every key, then switches; logs the failure of the switch.
void Ar3000aBoxStore(const Ar3000aValues* values);

// ---- TzrBox ---------------------------------------------------------------------------------
struct TzrValues {
    int32_t enable;
    char initialChannel[16];  // "%02d"
    char channelCount[16];    // "%02d"
    int32_t increment;
    char inputChannel[16];    // "%d", one-based
};
enum TzrField { TZR_INITIAL = 0, TZR_COUNT = 1, TZR_INPUT = 2 };

void TzrBoxOpen(TzrValues* values);
// A click on the enable box or on "Increment channel": the setting and the
// controller follow at once.
void TzrEnableClicked(int on);
void TzrIncrementClicked(int on);
// "Set inital channel now": only with the enable box set.
void TzrSetChannelNow(const TzrValues* values);
// A spin control's press (delta +1 up, -1 down) on one of the three fields.
void TzrSpin(TzrValues* values, int field, int delta);
// "OK": 0 when refused (a distance interval is set; the warning is shown and
// nothing is stored), 1 when done.
int TzrBoxStore(const TzrValues* values);
// "Cancel": the enable setting and the controller back as at opening.
void TzrBoxCancel(int enableAtOpening);

#endif
