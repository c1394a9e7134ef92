// The settings file of every stand-in of the platform seam: the private
// profile calls through the portable reader and writer (storage/ini_file.h).
#include "base/platform.h"
#include "storage/ini_file.h"

int ProfileGetInt(const char* section, const char* key, int defaultValue, const char* path) {
    return IniGetInt(section, key, defaultValue, path);
}

int ProfileGetString(const char* section, const char* key, const char* defaultValue,
                     char* buffer, int size, const char* path) {
    return IniGetString(section, key, defaultValue, buffer, size, path);
}

int ProfileWriteString(const char* section, const char* key, const char* value,
                       const char* path) {
    return IniWriteString(section, key, value, path);
}
