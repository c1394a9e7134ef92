// GpsBox, Configure > GPS: what each of its buttons does with the texts of
// its fields. The checks, the commands and the settings they write are
// those of link/gps_commands.h; the dialog only passes them the fields.
#ifndef VELDOR_DIALOGS_GPS_BOX_H
#define VELDOR_DIALOGS_GPS_BOX_H

#include "link/gps_commands.h"

enum GpsBoxOutcome {
    GPS_BOX_STAYS = 0,        // nothing to show: not a button, a refused Set, an answer No
    GPS_BOX_SHOW_FIELDS = 1,  // a Set went out; the fields hold the texts written back
    GPS_BOX_HELP = 2,         // "Help": the help document
    GPS_BOX_DONE = 3          // "Done": the dialog ends
};

// One press of a button of GpsBox (an id of dialogs/gps_ids.h) on the texts
// read from the fields; returns what the dialog does next.
int GpsBoxPress(int controlId, GpsBoxFields* fields);

#endif
