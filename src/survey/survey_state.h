// Process-wide survey state: the record store, status flags, live values from
// the controller, the averaging history, the recording parameters, channel
// labels, the data file name and the text tag table.
#ifndef VELDOR_SURVEY_SURVEY_STATE_H
#define VELDOR_SURVEY_SURVEY_STATE_H

#include <stdint.h>

constexpr int MaxRecords = 16000;
constexpr int MaxTextTags = 1000;
constexpr int PathSize = 260;
constexpr int ChannelLabelSize = 32;
constexpr int TagTextSize = 51;

// ---- Record flags -------------------------------------------------------------
constexpr uint8_t RECORD_GPS_FIX = 0x04;
constexpr uint8_t RECORD_HAS_CHANNEL = 0x08;
constexpr uint8_t RECORD_LIVE = 0x10;
constexpr uint8_t RECORD_GPS_DIFF = 0x20;
// A row counts as tracked when both of these are set.
constexpr uint8_t RECORD_TRACKED_MASK = RECORD_GPS_FIX | RECORD_LIVE;

// ---- Status flags ---------------------------------------------------------------
constexpr uint32_t STATUS_CHANGED = 0x0001;
constexpr uint32_t STATUS_FULL_PATH = 0x0002;
constexpr uint32_t STATUS_RECORDING = 0x0004;
constexpr uint32_t STATUS_AUTOSAVE = 0x0008;
constexpr uint32_t STATUS_LOAD_STORED = 0x0020;
constexpr uint32_t STATUS_CHECK_STORED = 0x0040;
constexpr uint32_t STATUS_PLOT_POSITION = 0x0080;
constexpr uint32_t STATUS_TZR_MODE = 0x0100;
constexpr uint32_t STATUS_INCREMENT_CHANNEL = 0x0200;
constexpr uint32_t STATUS_AR3000A_MODE = 0x0400;
constexpr uint32_t STATUS_GPS_DIFF_MODE = 0x0800;
constexpr uint32_t STATUS_AVERAGING = 0x1000;
constexpr uint32_t STATUS_DISTANCE_INTERVAL = 0x2000;
constexpr uint32_t STATUS_PLOT_SUSPENDED = 0x4000;

// ---- Kinds of record ------------------------------------------------------------
constexpr int RECORD_KIND_LIVE = 1;
constexpr int RECORD_KIND_MANUAL = 2;

// One sample. Field order is the order of a record in the data file.
struct Record {
    uint8_t flags;
    uint8_t accessoryChannel;  // meaningful only with RECORD_HAS_CHANNEL
    uint8_t ch[4];             // raw power of channels 1 to 4
    int32_t latitude;          // milliseconds of arc, north positive
    int32_t longitude;         // milliseconds of arc, east positive
    uint32_t time;             // PC clock, seconds since 1970
};

struct RecordStore {
    Record rows[MaxRecords];
};

// The latest values from the controller. Written by the serial reader thread
// only; each field is a naturally aligned word or byte.
struct LiveState {
    int32_t liveLatitude;
    int32_t liveLongitude;
    uint8_t liveReadings[4];
    uint8_t liveAccessoryChannel;  // 0 means none
    uint8_t gpsStatus;
    int32_t dataValidTicks;  // 10 after each RA or RP, lowered by the tick
};

// What has arrived since the last stored record, newest first.
struct AverageHistory {
    int32_t latitudeHistory[3];
    int32_t longitudeHistory[3];
    int32_t positionHistoryCount;
    uint8_t readingHistory[4][3];
    int32_t readingHistoryCount;
};

// Survey parameters stored with the data (the data file header).
struct RecordingParams {
    uint32_t startTime;
    int32_t intervalSeconds;
    int32_t intervalMeters;
    uint8_t distanceMode;
    uint16_t inputChannel;  // zero-based TZR4100 input channel
    char calFileName[4][PathSize];
};

struct ManualReading {
    int32_t latitude;
    int32_t longitude;
    uint8_t readings[4];
};

extern RecordStore recordStore;
extern int32_t recordCount;
extern uint32_t statusFlags;
extern LiveState liveState;
extern AverageHistory averageHistory;
extern RecordingParams recordingParams;
extern ManualReading manualReading;
extern char channelLabels[4][ChannelLabelSize];
extern char dataFileName[PathSize];

// Text tags, parallel arrays in the order of adding.
extern int16_t tagCount;
extern int32_t tagRecord[MaxTextTags];
extern char tagText[MaxTextTags][TagTextSize];

// Listing window state that AddRecord keeps in step.
extern int32_t listingTopIndex;
extern int32_t listingRowCount;

// The zero-based TZR4100 input channel currently in force.
extern int32_t currentInputChannel;

// Puts every item above back to its state at process start.
void ResetSurveyState();

// Stores the next sample; kind is RECORD_KIND_LIVE or RECORD_KIND_MANUAL (any
// other kind behaves as live). Returns 1 when the row was stored and the store
// still has room, 0 otherwise.
int AddRecord(int kind);

// The reading to store for a channel with averaging on; when reset is not 0
// the reading history is emptied after the value is taken.
uint8_t AverageReading(int channel, int reset);

// Pushes the live readings / the live position onto the averaging history;
// nothing happens unless recording with averaging on. Called by the link.
void UpdateReadingHistory();
void UpdatePositionHistory();

// When the data have changed, asks "Current data has changed\nSave data ?"
// (Yes and No); 1 for Yes, 0 for No or unchanged data. Saves nothing.
int AskSaveQuestion();
// Asks to save: on Yes performs File > Save through the frame. The answer
// never cancels anything. File > Open and File > Close, which already run as
// frame commands, ask with AskSaveQuestion and call the save themselves.
void AskToSave();

// Record > Clear.
void ClearRecords();

// Create Listing File and both Print commands run only with at least one
// record and while not recording; their handlers test this themselves,
// since an accelerator or a popup menu may reach them without the menu.
int RecordsReadyForOutput();

// After the data changed as a whole: the Listing, Plot and Chart repaint
// whole with erase and the Tags window refreshes its list.
void RepaintDataViews();

// Keeps the tag table in step when record index leaves the store.
void RemoveRecordTags(int32_t index);

#endif
