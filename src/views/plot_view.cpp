#include "views/plot_view.h"

int32_t plotChannel;
float powerBreak[3] = {80.0f, 60.0f, 40.0f};
int32_t dotSize = 5;
int32_t plotLocationRecord = -1;
char plotReadout[PlotReadoutSize];
