#include "views/chart_view.h"

int32_t chartChannel;
int32_t chartLocationRecord = -1;
