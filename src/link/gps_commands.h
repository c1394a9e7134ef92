// GPS commands and the report of the GPS self test.
#ifndef VELDOR_LINK_GPS_COMMANDS_H
#define VELDOR_LINK_GPS_COMMANDS_H

// Reports the result of a GPS self test from the text of an ET message
// ("%d %d": kind, code). Runs on the serial reader thread.
void ReportSelfTest(const char* text);

#endif
