#include "dialogs/dialog_fields.h"

#include <stdio.h>
#include <stdlib.h>

int32_t SpinStep(const char* text, int32_t delta, int32_t low, int32_t high, char* out,
                 int outSize) {
    int64_t value = (int64_t)atol(text) + delta;
    if (value < low) value = low;
    if (value > high) value = high;
    snprintf(out, (size_t)outSize, "%d", (int)value);
    return (int32_t)value;
}
