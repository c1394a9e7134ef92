// The Chart window's state and painter: the histogram of one channel over
// the 256 raw bins placed on the calibrated axis.
#ifndef VELDOR_VIEWS_CHART_VIEW_H
#define VELDOR_VIEWS_CHART_VIEW_H

#include <stdint.h>

#include "views/draw_list.h"

// The channel shown, 0..3 ("Channel" of section "Chart" less 1); written back
// at exit. User-interface thread.
extern int32_t chartChannel;
// The row whose reading is marked, -1 for none.
extern int32_t chartLocationRecord;

#endif
