// GPS commands and the report of the GPS self test.
#ifndef VELDOR_LINK_GPS_COMMANDS_H
#define VELDOR_LINK_GPS_COMMANDS_H

// Reports the result of a GPS self test from the text of an ET message
// ("%d %d": kind, code). Runs on the serial reader thread.
void ReportSelfTest(const char* text);

// ---- GpsBox ---------------------------------------------------------------------------
// The Set buttons read the edit texts, check them, and on success write the
// texts back normalised, send the command, log a status line and store what
// the settings keep. A failed check shows its message (stop icon), sends
// nothing and leaves the texts as typed. The result is 1 or 0 accordingly.
// The port is not checked: with it closed nothing goes out, but the status
// line is written all the same.

constexpr int GpsFieldSize = 32;  // one edit text, terminator included

struct GpsTimeFields {
    char hour[GpsFieldSize];       // "Hour"
    char minute[GpsFieldSize];     // "Min"
    char second[GpsFieldSize];     // "Sec"
    char utcOffset[GpsFieldSize];  // "Local UTC offset", hours
};

struct GpsDateFields {
    char day[GpsFieldSize];
    char month[GpsFieldSize];
    char year[GpsFieldSize];
};

// One coordinate of "Set Position". The radio pair is "North"/"South" for
// the latitude and "East"/"West" for the longitude.
struct GpsPositionFields {
    int northOrEast;  // 1 when "North" / "East" is checked
    int southOrWest;  // 1 when "South" / "West" is checked
    char degrees[GpsFieldSize];
    char minutes[GpsFieldSize];
    char seconds[GpsFieldSize];
};

struct GpsBoxFields {
    GpsTimeFields time;
    GpsDateFields date;
    GpsPositionFields latitude;
    GpsPositionFields longitude;
};

// What GpsBox shows on opening: the local time and date of the PC clock, the
// rest from section "GPS Set", clamped to the ranges the dialog shows.
void LoadGpsBoxFields(GpsBoxFields* fields);

// "Set" of "Set Time": "OT" with the UTC hour, minute and second.
int GpsSetTime(GpsTimeFields* fields);
// "Set" of "Set Date": "OD" with day, month and the full year.
int GpsSetDate(GpsDateFields* fields);
// "Set" of the latitude / longitude: "LT" / "LG" in milliseconds of arc.
int GpsSetLatitude(GpsPositionFields* fields);
int GpsSetLongitude(GpsPositionFields* fields);

// "Initalise": "OI 1", without a question.
void GpsInitialise();
// "Reset": asks first; 1 when the operator said Yes and "OI 2" went out.
int GpsReset();
// "Self test": asks first; 1 when the operator said Yes and "OS" went out.
// The result comes back later as ET (ReportSelfTest).
int GpsSelfTest();

#endif
