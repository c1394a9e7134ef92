// status_hook.dll: loaded by Windows into veldor.exe through the window hook
// that veldor_probe installs on the desktop. It appends every text that the
// program gives its status bar panes, and every frame caption, to the log
// named in the shared memory "VeldorProbeStatusLog", one line each:
//   <milliseconds of the system tick> pane<N>=<text>
//   <milliseconds of the system tick> caption=<text>
// So the scenarios see each status line, also those that the next replaces
// at once. Newlines in texts are written as \n.
#include <windows.h>
#include <commctrl.h>
#include <stdio.h>
#include <string.h>

namespace {

const char MappingName[] = "VeldorProbeStatusLog";
const int LineSize = 1200;

// Where the lines go; read once from the shared memory.
char logPath[MAX_PATH];
int logPathRead;

int IsClass(HWND hwnd, const char* name) {
    char cls[64];
    return GetClassNameA(hwnd, cls, sizeof cls) > 0 && strcmp(cls, name) == 0;
}

const char* LogPath() {
    if (logPathRead) return logPath;
    logPathRead = 1;
    HANDLE mapping = OpenFileMappingA(FILE_MAP_READ, FALSE, MappingName);
    if (mapping == nullptr) return logPath;
    const char* view = (const char*)MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, MAX_PATH);
    if (view != nullptr) {
        memcpy(logPath, view, MAX_PATH - 1);
        logPath[MAX_PATH - 1] = '\0';
        UnmapViewOfFile(view);
    }
    CloseHandle(mapping);
    return logPath;
}

void Append(const char* key, const char* text) {
    const char* path = LogPath();
    if (path[0] == '\0' || text == nullptr) return;
    char line[LineSize];
    int n = snprintf(line, sizeof line, "%lu %s=", (unsigned long)GetTickCount(), key);
    for (const char* p = text; *p != '\0' && n < LineSize - 3; p++) {
        if (*p == '\n') {
            line[n++] = '\\';
            line[n++] = 'n';
        } else if (*p != '\r') {
            line[n++] = *p;
        }
    }
    line[n++] = '\n';
    HANDLE file = CreateFileA(path, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    DWORD written = 0;
    WriteFile(file, line, (DWORD)n, &written, nullptr);
    CloseHandle(file);
}

}  // namespace

extern "C" __declspec(dllexport) LRESULT CALLBACK
    StatusHookProc(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HC_ACTION && lParam != 0) {
        const CWPSTRUCT* sent = (const CWPSTRUCT*)lParam;
        if (sent->message == SB_SETTEXTA && IsClass(sent->hwnd, STATUSCLASSNAMEA)) {
            char key[8];
            snprintf(key, sizeof key, "pane%d", (int)(LOWORD(sent->wParam) & 0xFF));
            Append(key, (const char*)sent->lParam);
        } else if (sent->message == WM_SETTEXT && IsClass(sent->hwnd, "Veldor_Frame")) {
            Append("caption", (const char*)sent->lParam);
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) {
    return TRUE;
}
