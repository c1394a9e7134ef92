#include "storage/listing_file.h"

#include <stdio.h>
#include <string.h>

#include "base/busy.h"
#include "base/platform.h"
#include "base/status_log.h"
#include "storage/settings_file.h"
#include "survey/survey_state.h"

namespace {

// Appends text to line, keeping at most limit - 1 characters in it.
void Append(char* line, int limit, const char* text) {
    size_t used = strlen(line);
    if (used + 1 >= (size_t)limit) return;
    size_t room = (size_t)limit - 1 - used;
    size_t length = strlen(text);
    if (length > room) length = room;
    memcpy(line + used, text, length);
    line[used + length] = '\0';
}

// The first tag of the record in tag order, or null.
const char* FirstTagText(int32_t index) {
    for (int i = 0; i < tagCount; i++) {
        if (tagRecord[i] == index) return tagText[i];
    }
    return nullptr;
}

}  // namespace

ListingFileSettings ReadListingFileSettings() {
    ListingFileSettings settings;
    settings.format = ReadListingFileFormat();
    settings.separator = ReadSetting(KeyListingFileSeparator);
    return settings;
}

ListingFileSettings MakeFileBoxChoices() {
    ListingFileSettings stored = ReadListingFileSettings();
    ListingFileSettings choices;
    int32_t latLong = stored.format.latLongMode;
    choices.format.latLongMode = (latLong == LATLONG_MILLISECONDS ||
                                  latLong == LATLONG_DEG_MIN_SEC || latLong == LATLONG_DEG_MIN)
                                     ? latLong
                                     : LATLONG_DEG;
    choices.format.signMode =
        stored.format.signMode == SIGN_PLUS_MINUS ? SIGN_PLUS_MINUS : SIGN_NORTH_SOUTH;
    int32_t reading = stored.format.readingMode;
    choices.format.readingMode =
        (reading == READING_RAW || reading == READING_0_000 || reading == READING_0_0) ? reading
                                                                                       : READING_0;
    int32_t separator = stored.separator;
    choices.separator = (separator == LISTING_SEPARATOR_COMMA || separator == LISTING_SEPARATOR_TAB)
                            ? separator
                            : LISTING_SEPARATOR_SPACE;
    return choices;
}

void WriteListingFileSettings(const ListingFileSettings& settings) {
    WriteSettingInt(KeyListingFileLatLong, settings.format.latLongMode);
    WriteSettingInt(KeyListingFileSign, settings.format.signMode);
    WriteSettingInt(KeyListingFileDecimalPlaces, settings.format.readingMode);
    WriteSettingInt(KeyListingFileSeparator, settings.separator);
}

char ListingSeparatorChar(int32_t separator) {
    if (separator == LISTING_SEPARATOR_COMMA) return ',';
    if (separator == LISTING_SEPARATOR_TAB) return '\t';
    return ' ';
}

char* FormatListingLine(int32_t index, const DisplayFormat& format, char separator, char* line) {
    // The fields stop one byte short of the buffer so that "\n" always fits.
    const int limit = ListingLineSize - 1;
    const Record& row = recordStore.rows[index];
    line[0] = '\0';

    LocalTime local;
    if (row.time > 0 && PlatformLocalTime(row.time, &local)) {
        char stamp[96];
        snprintf(stamp, sizeof stamp, "%d/%d/%d%c%02d:%02d:%02d%c", local.day, local.month,
                 local.year, separator, local.hour, local.minute, local.second, separator);
        Append(line, limit, stamp);
    }
    const char fieldSeparator[2] = {separator, '\0'};
    AppendRecordFields(line, limit, row, format, fieldSeparator);
    const char* tag = FirstTagText(index);
    if (tag != nullptr) {
        char text[TagTextSize + 1];
        snprintf(text, sizeof text, "%c%.*s", separator, TagTextSize - 1, tag);
        Append(line, limit, text);
    }
    Append(line, ListingLineSize, "\n");
    return line;
}

int WriteListingFile(const char* path) {
    if (recordCount < 1) {
        PlatformMessageBox("No data to save", ICON_STOP);
        return 0;
    }
    if (path == nullptr) path = "";
    ListingFileSettings settings = ReadListingFileSettings();
    char separator = ListingSeparatorChar(settings.separator);

    FILE* existing = fopen(path, "r");
    if (existing != nullptr) {
        fclose(existing);
        char question[1024];
        snprintf(question, sizeof question, "File %s\nalready exists.\nOverwrite?",
                 DisplayFileName(path));
        if (!PlatformAskYesNo(question)) return 0;
    }
    FILE* file = fopen(path, "wt");
    if (file == nullptr) {
        PlatformMessageBox("Error opening file,\nData not saved", ICON_EXCLAMATION);
        return 0;
    }
    BeginBusy();
    LogStatus("Opening file '%s'", DisplayFileName(path));

    fputs("VELDOR -Listing text file\n\n", file);
    if (dataFileName[0] != '\0') fprintf(file, "Created from %s\n", DisplayFileName(dataFileName));
    char date[DateTextSize];
    fprintf(file, "Written %s\n", FormatDateText(PlatformTime(), date));

    char line[ListingLineSize];
    for (int32_t i = 0; i < recordCount; i++) {
        fputs(FormatListingLine(i, settings.format, separator, line), file);
    }
    fclose(file);
    LogStatus("Data written to file '%s'", DisplayFileName(path));
    EndBusy();
    return 1;
}

int MakeFileOk(const char* path, const ListingFileSettings& choices) {
    if (path == nullptr || path[0] == '\0') {
        PlatformMessageBox("No filename specified", ICON_STOP);
        return 0;
    }
    WriteListingFileSettings(choices);
    return WriteListingFile(path);
}
