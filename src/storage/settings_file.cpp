#include "storage/settings_file.h"

#include <stdio.h>
#include <stdlib.h>

#include "base/app_paths.h"
#include "base/platform.h"

int ReadSetting(const IntSetting& setting) {
    return ProfileGetInt(setting.section, setting.key, setting.defaultValue, settingsPath);
}

int ReadSettingWithDefault(const IntSetting& setting, int defaultValue) {
    return ProfileGetInt(setting.section, setting.key, defaultValue, settingsPath);
}

void ReadSettingWithDefault(const TextSetting& setting, const char* defaultValue,
                            char* buffer, int size) {
    if (buffer == nullptr || size < 1) return;
    int limit = setting.maxLength + 1;
    if (limit > size) limit = size;
    ProfileGetString(setting.section, setting.key, defaultValue, buffer, limit,
                     settingsPath);
}

void ReadSetting(const TextSetting& setting, char* buffer, int size) {
    ReadSettingWithDefault(setting, setting.defaultValue, buffer, size);
}

double ReadSettingNumber(const TextSetting& setting) {
    char text[64];
    ReadSetting(setting, text, sizeof text);
    return atof(text);
}

int WriteSetting(const IntSetting& setting, const char* value) {
    return ProfileWriteString(setting.section, setting.key, value, settingsPath);
}

int WriteSetting(const TextSetting& setting, const char* value) {
    return ProfileWriteString(setting.section, setting.key, value, settingsPath);
}

int WriteSettingInt(const IntSetting& setting, int value) {
    char text[16];
    snprintf(text, sizeof text, "%d", value);
    return WriteSetting(setting, text);
}

int ReadWindowPlace(const char* section, const char* key) {
    return ProfileGetInt(section, key, SettingNotStored, settingsPath);
}

// ---- The display formats ----------------------------------------------------

static DisplayFormat ReadFormat(const IntSetting& latLong, const IntSetting& sign, const IntSetting& reading) {
    DisplayFormat format;
    format.latLongMode = ReadSetting(latLong);
    format.signMode = ReadSetting(sign);
    format.readingMode = ReadSetting(reading);
    return format;
}

void LoadScreenFormat() {
    ScreenFormat = ReadFormat(KeyListingLatLong, KeyListingSign, KeyListingDecimalPlaces);
}

DisplayFormat ReadPrintListingFormat() {
    return ReadFormat(KeyPrintListingLatLong, KeyPrintListingSign, KeyPrintListingDecimalPlaces);
}

DisplayFormat ReadListingFileFormat() {
    return ReadFormat(KeyListingFileLatLong, KeyListingFileSign, KeyListingFileDecimalPlaces);
}
