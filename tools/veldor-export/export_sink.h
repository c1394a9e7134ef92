// The buffered output that the writers share, and the texts and facts of a
// survey that more than one of them writes.
#ifndef VELDOR_EXPORT_EXPORT_SINK_H
#define VELDOR_EXPORT_EXPORT_SINK_H

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include "survey/recording_engine.h"
#include "survey/survey_state.h"

struct Sink {
    FILE* file;
    size_t used;
    int failed;
    char buffer[1 << 16];
};

void Flush(Sink* s);
void Put(Sink* s, const char* text, size_t n);
void Put(Sink* s, const char* text);
void PutInt(Sink* s, int64_t value);
// printf-style, up to 4095 characters.
void Putf(Sink* s, const char* format, ...) __attribute__((format(printf, 2, 3)));
// Milliseconds of arc as degrees with 7 places.
void PutDegrees(Sink* s, int32_t mas);

enum Escape { ESCAPE_CSV, ESCAPE_JSON, ESCAPE_XML };
// 8-bit text (taken as Latin-1) as UTF-8, escaped for the format.
void PutEscaped(Sink* s, const char* text, int escape);

// A clock value as ISO 8601 UTC, "1970-01-01T00:00:00Z" (20 characters).
void IsoTime(uint32_t seconds, char out[21]);

// Great-circle metres between the fixed records in order.
double DistanceDriven();
// The first and last record time; 0 when no record has one.
int RecordTimeSpan(uint32_t* first, uint32_t* last);

#endif
