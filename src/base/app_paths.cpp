#include "base/app_paths.h"

#include <stdio.h>

char appDirectory[260];
char dataDirectory[260];
char settingsPath[260];
char licenceDocPath[260];

// Joins folder and name into out; an over-long result is cut.
static void JoinPath(char* out, size_t size, const char* folder, const char* name) {
    int n = snprintf(out, size, "%s%s", folder, name);
    if (n < 0) out[0] = '\0';
}

void BuildAppPaths(const char* commonAppData) {
    JoinPath(dataDirectory, sizeof dataDirectory, commonAppData ? commonAppData : "",
             "\\TREVAN\\VELDOR");
    JoinPath(settingsPath, sizeof settingsPath, dataDirectory, "\\VELDOR.ini");
    JoinPath(licenceDocPath, sizeof licenceDocPath, appDirectory, "\\EULA.rtf");
}
