#include "storage/data_file.h"

#include <stdio.h>
#include <string.h>

#include "base/busy.h"
#include "base/platform.h"
#include "base/status_log.h"
#include "resources/resource_ids.h"
#include "storage/reconciliation.h"
#include "survey/survey_state.h"
#include "views/display_format.h"
#include "views/plot_geometry.h"

static const char* const DataFileMagic[DataFileVersions] = {
    "[VELDOR - data file v1.0]", "[VELDOR - data file v1.1]", "[VELDOR - data file v1.2]",
    "[VELDOR - data file v1.3]", "[VELDOR - data file v1.4]",
};
enum { V1_0 = 0, V1_1 = 1, V1_2 = 2, V1_3 = 3, V1_4 = 4 };
static const char DataFileTrailer[DataFileTrailerSize] = "[End]";

constexpr int MessageSize = 1024;
constexpr int TempSuffixSize = 5;  // ".tmp" and its NUL

static_assert(DataFileNameFieldSize == PathSize, "a name field holds one path");
static_assert(DataFileLabelFieldSize == ChannelLabelSize, "a label field holds one label");
static_assert(DataFileTagTextSize == TagTextSize, "a tag field holds one tag text");

// ---- Writing ------------------------------------------------------------------------

static void PutU8(FILE* file, uint8_t value) {
    fputc(value, file);
}

static void PutU16(FILE* file, uint16_t value) {
    fputc(value & 0xFF, file);
    fputc((value >> 8) & 0xFF, file);
}

static void PutU32(FILE* file, uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) fputc((value >> shift) & 0xFF, file);
}

static void PutI32(FILE* file, int32_t value) {
    PutU32(file, (uint32_t)value);
}

// A NUL-terminated text in a field of size bytes: the text (at most size - 1
// characters) and zeros up to the end of the field.
static void PutText(FILE* file, const char* text, int size) {
    static const char zeros[DataFileNameFieldSize] = {0};
    size_t length = strnlen(text, (size_t)size - 1);
    fwrite(text, 1, length, file);
    fwrite(zeros, 1, (size_t)size - length, file);
}

static void WriteSurvey(FILE* file) {
    fwrite(DataFileMagic[V1_4], 1, DataFileMagicSize, file);
    PutU32(file, recordingParams.startTime);
    PutI32(file, recordingParams.intervalSeconds);
    PutI32(file, recordingParams.intervalMeters);
    PutU8(file, recordingParams.distanceMode);
    PutU16(file, recordingParams.inputChannel);
    for (int c = 0; c < 4; c++) PutText(file, recordingParams.calFileName[c], PathSize);
    for (int c = 0; c < 4; c++) PutText(file, channelLabels[c], ChannelLabelSize);

    int32_t records = recordCount < 0 ? 0 : recordCount > MaxRecords ? MaxRecords : recordCount;
    PutI32(file, records);
    for (int32_t i = 0; i < records; i++) {
        const Record& row = recordStore.rows[i];
        unsigned char bytes[DataFileRecordSize];
        bytes[0] = row.flags;
        bytes[1] = row.accessoryChannel;
        for (int c = 0; c < 4; c++) bytes[2 + c] = row.ch[c];
        const uint32_t words[3] = {(uint32_t)row.latitude, (uint32_t)row.longitude, row.time};
        for (int w = 0; w < 3; w++)
            for (int b = 0; b < 4; b++) bytes[6 + 4 * w + b] = (unsigned char)(words[w] >> (8 * b));
        fwrite(bytes, 1, sizeof bytes, file);
    }

    int32_t tags = tagCount < 0 ? 0 : tagCount > MaxTextTags ? MaxTextTags : tagCount;
    PutI32(file, tags);  // the 16-bit count, sign extended
    for (int32_t i = 0; i < tags; i++) {
        PutI32(file, tagRecord[i]);
        PutText(file, tagText[i], TagTextSize);
    }
    fwrite(DataFileTrailer, 1, DataFileTrailerSize, file);
}

// Puts the finished temporary file in the place of the data file. A plain
// rename replaces the old file in one step where the C library allows it; the
// Windows runtime refuses to rename onto an existing file, so there the old
// file is removed directly before the second attempt. Returns 1 when done, 0
// when the data file still holds the old contents, -1 when the old file is
// gone and the new contents are only in the temporary file.
static int ReplaceDataFile(const char* tempName) {
    if (rename(tempName, dataFileName) == 0) return 1;
    if (remove(dataFileName) != 0) return 0;
    if (rename(tempName, dataFileName) == 0) return 1;
    return -1;
}

int SaveDataFile() {
    char message[MessageSize];
    char tempName[PathSize + TempSuffixSize];
    FILE* file = nullptr;
    if (dataFileName[0] != '\0') {
        snprintf(tempName, sizeof tempName, "%s.tmp", dataFileName);
        file = fopen(tempName, "wb");
    }
    if (file == nullptr) {
        PlatformMessageBox("Error opening file, data not saved", ICON_EXCLAMATION);
        return 0;
    }
    BeginBusy();
    LogStatus("Opening file '%s'", DisplayFileName(dataFileName));

    WriteSurvey(file);
    int written = ferror(file) == 0;
    if (fclose(file) != 0) written = 0;
    int replaced = written ? ReplaceDataFile(tempName) : 0;
    if (replaced == 1) {
        LogStatus("Data written to file '%s'", DisplayFileName(dataFileName));
        EndBusy();
        return 1;
    }
    if (replaced == 0) {
        remove(tempName);
        PlatformMessageBox("Error writing file, data not saved", ICON_EXCLAMATION);
    } else {
        snprintf(message, sizeof message,
                 "Error writing file\n'%s'\nThe data have been saved as\n'%s'", dataFileName,
                 tempName);
        PlatformMessageBox(message, ICON_EXCLAMATION);
    }
    EndBusy();
    return 0;
}

// ---- Reading ------------------------------------------------------------------------

// Reads whole fields only: a field that the file doesn't hold in full leaves
// its destination as it was and marks the reader short. A text field without
// a NUL marks the reader damaged; the text is cut at the end of its field.
struct FieldReader {
    FILE* file;
    int shortRead;
    int damaged;
};

static int GetBytes(FieldReader* reader, void* out, size_t size) {
    if (fread(out, 1, size, reader->file) == size) return 1;
    reader->shortRead = 1;
    return 0;
}

static uint32_t Little32(const unsigned char* b) {
    return (uint32_t)b[0] | ((uint32_t)b[1] << 8) | ((uint32_t)b[2] << 16) | ((uint32_t)b[3] << 24);
}

static int GetU32(FieldReader* reader, uint32_t* out) {
    unsigned char b[4];
    if (!GetBytes(reader, b, sizeof b)) return 0;
    *out = Little32(b);
    return 1;
}

static int GetI32(FieldReader* reader, int32_t* out) {
    uint32_t value;
    if (!GetU32(reader, &value)) return 0;
    *out = (int32_t)value;
    return 1;
}

static int GetU16(FieldReader* reader, uint16_t* out) {
    unsigned char b[2];
    if (!GetBytes(reader, b, sizeof b)) return 0;
    *out = (uint16_t)(b[0] | (b[1] << 8));
    return 1;
}

static int GetU8(FieldReader* reader, uint8_t* out) {
    return GetBytes(reader, out, 1);
}

// Copies a text field of size bytes into out (size bytes), NUL-terminated and
// zero-filled behind the text.
static void TakeText(FieldReader* reader, const unsigned char* field, char* out, int size) {
    size_t length = strnlen((const char*)field, (size_t)size);
    if (length == (size_t)size) {
        reader->damaged = 1;
        length = (size_t)size - 1;
    }
    memcpy(out, field, length);
    memset(out + length, 0, (size_t)size - length);
}

static void GetText(FieldReader* reader, char* out, int size) {
    unsigned char field[DataFileNameFieldSize];
    if (GetBytes(reader, field, (size_t)size)) TakeText(reader, field, out, size);
}

// The version of the magic, or -1 for none (also for a file shorter than it).
static int ReadMagic(FieldReader* reader) {
    char magic[DataFileMagicSize + 1];
    memset(magic, 0, sizeof magic);
    if (!GetBytes(reader, magic, DataFileMagicSize)) return -1;
    for (int v = 0; v < DataFileVersions; v++)
        if (strcmp(magic, DataFileMagic[v]) == 0) return v;
    return -1;
}

// The header of the version into recordingParams (and the labels of v1.4),
// with the values that older versions lack supplied.
static void ReadHeader(FieldReader* reader, int version) {
    RecordingParams& p = recordingParams;
    GetU32(reader, &p.startTime);
    if (version == V1_0) {
        p.intervalSeconds = 5;
        p.intervalMeters = 500;
        p.distanceMode = 0;
        p.inputChannel = (uint16_t)(currentInputChannel & 0xFFFF);
    } else if (version == V1_1) {
        GetI32(reader, &p.intervalSeconds);
        p.intervalMeters = 500;
        p.distanceMode = 0;
        if (GetU16(reader, &p.inputChannel)) currentInputChannel = p.inputChannel;
    } else {
        GetI32(reader, &p.intervalSeconds);
        GetI32(reader, &p.intervalMeters);
        GetU8(reader, &p.distanceMode);
        if (GetU16(reader, &p.inputChannel)) currentInputChannel = p.inputChannel;
    }
    for (int c = 0; c < 4; c++) GetText(reader, p.calFileName[c], PathSize);
    if (version == V1_4)
        for (int c = 0; c < 4; c++) GetText(reader, channelLabels[c], ChannelLabelSize);
}

// The records, appended from row 0. A record that the file doesn't hold in
// full ends the reading, so a cut file gives its whole records.
static void ReadRecords(FieldReader* reader, int version) {
    int32_t count = 0;
    GetI32(reader, &count);
    recordCount = 0;
    if (count > MaxRecords) count = MaxRecords;
    const size_t size = version >= V1_3 ? DataFileRecordSize : DataFileRecordSize - 4;
    while (recordCount < count) {
        unsigned char b[DataFileRecordSize];
        if (!GetBytes(reader, b, size)) break;
        Record& row = recordStore.rows[recordCount];
        row.flags = b[0];
        row.accessoryChannel = b[1];
        for (int c = 0; c < 4; c++) row.ch[c] = b[2 + c];
        row.latitude = (int32_t)Little32(b + 6);
        row.longitude = (int32_t)Little32(b + 10);
        row.time = version >= V1_3 ? Little32(b + 14) : 0;
        recordCount++;
    }
}

// The tags and the trailer; 1 when the trailer stands where it belongs. The
// count is a 16-bit number in a 32-bit field. More tags than the table holds
// can only come from a damaged file.
static int ReadTagsAndTrailer(FieldReader* reader) {
    int32_t field = 0;
    GetI32(reader, &field);
    const int16_t count = (int16_t)(uint16_t)((uint32_t)field & 0xFFFF);
    tagCount = 0;
    if (count > MaxTextTags) return 0;
    while (tagCount < count) {
        unsigned char b[DataFileTagSize];
        if (!GetBytes(reader, b, sizeof b)) break;
        tagRecord[tagCount] = (int32_t)Little32(b);
        TakeText(reader, b + 4, tagText[tagCount], TagTextSize);
        tagCount++;
    }
    char trailer[DataFileTrailerSize + 1];
    memset(trailer, 0, sizeof trailer);
    if (!GetBytes(reader, trailer, DataFileTrailerSize)) return 0;
    return strcmp(trailer, DataFileTrailer) == 0;
}

static void ShowFileMessage(const char* format) {
    char message[MessageSize];
    snprintf(message, sizeof message, format, dataFileName);
    PlatformMessageBox(message, ICON_EXCLAMATION);
}

int LoadDataFile() {
    FieldReader reader = {fopen(dataFileName, "rb"), 0, 0};
    if (reader.file == nullptr) {
        ShowFileMessage("Error opening file\n'%s'");
        return 0;
    }
    BeginBusy();
    LogStatus("Opening file '%s'", DisplayFileName(dataFileName));

    const int version = ReadMagic(&reader);
    if (version < 0) {
        fclose(reader.file);
        ShowFileMessage("File '%s'\nIncorrect format");
        EndBusy();
        return 0;
    }
    ReadHeader(&reader, version);
    ReadRecords(&reader, version);
    int sound = version >= V1_2 ? ReadTagsAndTrailer(&reader) : 1;
    if (reader.damaged) sound = 0;
    fclose(reader.file);
    if (!sound) {
        for (int c = 0; c < 4; c++) recordingParams.calFileName[c][0] = '\0';
        recordCount = 0;
        tagCount = 0;
        ShowFileMessage("File '%s'\nFile corrupted");
        EndBusy();
        return 0;
    }

    ReconcileOnLoad();

    listingTopIndex = 0;
    PlatformSetVerticalScroll(WINDOW_LISTING, 0);
    ResetPlotView();
    RepaintDataViews();
    LogStatus("Data read from file '%s'", DisplayFileName(dataFileName));
    // The Plot's "Zoom Auto" button, so that the plot fits the new records.
    PlatformNotifyWindow(WINDOW_PLOT, IDM_PLOT_ZOOM_AUTO);
    EndBusy();
    return 1;
}
