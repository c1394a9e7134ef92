// status_hook.dll: veldor_probe's window hook places it in veldor.exe, where
// it appends every status pane text and frame caption set, even those that
// the next replaces at once, to the log named in the shared memory
// "VeldorProbeStatusLog": "<tick ms> pane<N>=<text>" or "<tick ms> caption=<text>".
#include <windows.h>
#include <commctrl.h>
#include <stdio.h>
#include <string.h>

namespace {

const int LineSize = 1200;

int IsClass(HWND hwnd, const char* name) {
    char cls[64];
    return GetClassNameA(hwnd, cls, sizeof cls) > 0 && strcmp(cls, name) == 0;
}

void Append(const char* key, const char* text) {
    static char logPath[MAX_PATH];
    static int logPathRead;
    if (!logPathRead) {
        logPathRead = 1;
        HANDLE mapping = OpenFileMappingA(FILE_MAP_READ, FALSE, "VeldorProbeStatusLog");
        const char* view = mapping != nullptr
                               ? (const char*)MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, MAX_PATH)
                               : nullptr;
        if (view != nullptr) {
            memcpy(logPath, view, MAX_PATH - 1);
            UnmapViewOfFile(view);
        }
        if (mapping != nullptr) CloseHandle(mapping);
    }
    if (logPath[0] == '\0' || text == nullptr) return;
    char line[LineSize];
    int n = snprintf(line, sizeof line, "%lu %s=", (unsigned long)GetTickCount(), key);
    for (const char* p = text; *p != '\0' && n < LineSize - 3; p++) {
        if (*p == '\n') line[n++] = '\\';
        if (*p != '\r') line[n++] = *p == '\n' ? 'n' : *p;
    }
    line[n++] = '\n';
    HANDLE file = CreateFileA(logPath, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    DWORD written = 0;
    WriteFile(file, line, (DWORD)n, &written, nullptr);
    CloseHandle(file);
}

}  // namespace

extern "C" __declspec(dllexport) LRESULT CALLBACK
    StatusHookProc(int code, WPARAM wParam, LPARAM lParam) {
    const CWPSTRUCT* sent = (const CWPSTRUCT*)lParam;
    if (code == HC_ACTION && sent != nullptr) {
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
