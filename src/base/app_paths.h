// The program's folders and the path of the settings file.
#ifndef VELDOR_BASE_APP_PATHS_H
#define VELDOR_BASE_APP_PATHS_H

// The folder of the executable, without a trailing backslash.
extern char appDirectory[260];
// The program's data folder under the common application data folder.
extern char dataDirectory[260];
// The settings file, dataDirectory + "\VELDOR.ini".
extern char settingsPath[260];
// appDirectory + "\EULA.rtf".
extern char licenceDocPath[260];

// Fills dataDirectory, settingsPath and licenceDocPath from appDirectory and
// the common application data folder given (no folders are created here).
void BuildAppPaths(const char* commonAppData);

#endif
