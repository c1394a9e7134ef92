// veldor_probe -d DESKTOP: reads veldor.exe's windows from outside, on its Wine desktop.
//   wait [-t SECONDS] CONDITION...  polls until every condition holds, then
//       prints the program as "key=value" lines (texts escaped): topmost=,
//       frames=, caption=, enabled=, iconic=, pane0..2=, child=class|title,
//       client=class|x,y,width,height, window=class|title|enabled|handle and
//       control=class|id|text. CONDITION: pane0..2, caption, topmost =TEXT or
//       ~TEXT (contains); window= and nowindow=TITLE; frames=, enabled=, iconic=.
//   ok HANDLE     presses OK on a box of "window=" (WM_COMMAND IDOK).
//   watch SECONDS DLL LOG  hooks status_hook.dll into the desktop's programs,
//       logging to LOG, prints "0 hooked", then for SECONDS "<ms> HUNG"
//       whenever the frame stops answering.
// Exit codes: 0 done, 1 time out, 2 no desktop, 3 the frame does not answer, 4 bad arguments.
#include <windows.h>
#include <commctrl.h>
#include <fcntl.h>
#include <io.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

const UINT AnswerTimeoutMs = 5000;
const int TextSize = 512;
const int MaxWindows = 16;
const int MaxConditions = 16;
const int ListingSize = 64 * 1024;

struct Snapshot {
    char topmost[TextSize];  // class|title of the visible top-level window in front
    int frames;
    int found;
    int hung;
    char caption[TextSize];
    int enabled;
    int iconic;
    char panes[3][TextSize];
    int windowCount;
    char windowTitles[MaxWindows][TextSize];
    // The child=, client=, window= and control= lines, in the order found.
    int length;
    char listing[ListingSize];
};

// Copies text, turning line breaks and tabs into visible escapes so that a
// value stays on one line.
void Escape(const char* in, char* out, int size) {
    int n = 0;
    for (const char* p = in; *p != '\0' && n < size - 3; p++) {
        const char* escaped = *p == '\n' ? "\\n" : *p == '\r' ? "\\r" : *p == '\t' ? "\\t" : nullptr;
        if (escaped != nullptr) {
            memcpy(out + n, escaped, 2);
            n += 2;
        } else {
            out[n++] = *p;
        }
    }
    out[n] = '\0';
}

void Text(HWND hwnd, char* out, int size) {
    char raw[TextSize] = "";
    GetWindowTextA(hwnd, raw, sizeof raw);
    Escape(raw, out, size);
}

void List(Snapshot* s, const char* format, ...) {
    va_list args;
    va_start(args, format);
    int wrote = vsnprintf(s->listing + s->length, (size_t)(ListingSize - s->length), format, args);
    va_end(args);
    if (wrote > 0 && s->length + wrote < ListingSize) s->length += wrote;
}

struct FrameSearch {
    HWND first;
    int count;
};

BOOL CALLBACK CountFrames(HWND hwnd, LPARAM param) {
    FrameSearch* search = (FrameSearch*)param;
    char name[64];
    if (GetClassNameA(hwnd, name, sizeof name) > 0 && strcmp(name, "Veldor_Frame") == 0) {
        if (search->first == nullptr) search->first = hwnd;
        search->count++;
    }
    return TRUE;
}

struct WindowSearch {
    DWORD processId;
    HWND frame;
    Snapshot* snapshot;
};

BOOL CALLBACK AddControl(HWND hwnd, LPARAM param) {
    if (!IsWindowVisible(hwnd)) return TRUE;
    char cls[64] = "";
    char raw[TextSize] = "";
    char text[TextSize];
    GetClassNameA(hwnd, cls, sizeof cls);
    // An edit of another process keeps its text to itself: ask for it.
    DWORD_PTR ignored = 0;
    if (strcmp(cls, "Edit") != 0 ||
        !SendMessageTimeoutA(hwnd, WM_GETTEXT, sizeof raw, (LPARAM)raw, SMTO_ABORTIFHUNG,
                             AnswerTimeoutMs, &ignored))
        GetWindowTextA(hwnd, raw, sizeof raw);
    Escape(raw, text, sizeof text);
    List((Snapshot*)param, "control=%s|%d|%s\n", cls, GetDlgCtrlID(hwnd), text);
    return TRUE;
}

BOOL CALLBACK AddTopWindow(HWND hwnd, LPARAM param) {
    WindowSearch* search = (WindowSearch*)param;
    if (hwnd == search->frame || !IsWindowVisible(hwnd)) return TRUE;
    DWORD processId = 0;
    GetWindowThreadProcessId(hwnd, &processId);
    if (processId != search->processId) return TRUE;
    Snapshot* s = search->snapshot;
    if (s->windowCount >= MaxWindows) return FALSE;
    char cls[64] = "";
    char* title = s->windowTitles[s->windowCount++];
    GetClassNameA(hwnd, cls, sizeof cls);
    Text(hwnd, title, TextSize);
    List(s, "window=%s|%s|%d|%p\n", cls, title, IsWindowEnabled(hwnd) ? 1 : 0, (void*)hwnd);
    EnumChildWindows(hwnd, AddControl, (LPARAM)s);
    return TRUE;
}

// Sends a message and waits at most AnswerTimeoutMs for the answer. 1 when
// answered, 0 when the window went away meanwhile, -1 when the time ran out:
// the window's thread does not take messages.
int Ask(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, DWORD_PTR* result) {
    DWORD start = GetTickCount();
    if (SendMessageTimeoutA(hwnd, message, wParam, lParam, SMTO_BLOCK, AnswerTimeoutMs, result))
        return 1;
    return GetTickCount() - start >= AnswerTimeoutMs - 100 && IsWindow(hwnd) ? -1 : 0;
}

// Reads the three panes of the status bar: each text is copied into memory
// of the program's own process and read back from there. As Ask.
int ReadPanes(HWND bar, DWORD processId, Snapshot* s) {
    HANDLE process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE,
                                 FALSE, processId);
    void* remote = process != nullptr ? VirtualAllocEx(process, nullptr, TextSize, MEM_COMMIT,
                                                       PAGE_READWRITE)
                                      : nullptr;
    int answered = 1;
    for (int pane = 0; pane < 3 && remote != nullptr && answered == 1; pane++) {
        DWORD_PTR length = 0;
        answered = Ask(bar, SB_GETTEXTLENGTHA, (WPARAM)pane, 0, &length);
        if (answered != 1 || LOWORD(length) >= TextSize) continue;
        answered = Ask(bar, SB_GETTEXTA, (WPARAM)pane, (LPARAM)remote, &length);
        char raw[TextSize] = "";
        SIZE_T got = 0;
        if (answered == 1 && ReadProcessMemory(process, remote, raw, sizeof raw - 1, &got))
            Escape(raw, s->panes[pane], TextSize);
    }
    if (remote != nullptr) VirtualFreeEx(process, remote, 0, MEM_RELEASE);
    if (process != nullptr) CloseHandle(process);
    return answered;
}

// What an answer of the frame (as Ask) makes of the snapshot: 1 to go on.
int Answered(Snapshot* s, int answered) {
    s->hung = answered < 0 ? 1 : 0;
    if (answered == 0) s->found = 0;
    return answered == 1;
}

void TakeSnapshot(Snapshot* s) {
    memset(s, 0, sizeof *s);
    FrameSearch search = {nullptr, 0};
    EnumWindows(CountFrames, (LPARAM)&search);
    s->frames = search.count;
    HWND top = GetTopWindow(nullptr);
    while (top != nullptr && !IsWindowVisible(top)) top = GetWindow(top, GW_HWNDNEXT);
    if (top != nullptr) {
        GetClassNameA(top, s->topmost, 64);
        strcat(s->topmost, "|");
        Text(top, s->topmost + strlen(s->topmost), TextSize - 64);
    }
    HWND frame = search.first;
    if (frame == nullptr) return;
    s->found = 1;
    DWORD_PTR ignored = 0;
    if (!Answered(s, Ask(frame, WM_NULL, 0, 0, &ignored))) return;
    Text(frame, s->caption, TextSize);
    s->enabled = IsWindowEnabled(frame) ? 1 : 0;
    s->iconic = IsIconic(frame) ? 1 : 0;

    DWORD processId = 0;
    GetWindowThreadProcessId(frame, &processId);
    HWND bar = FindWindowExA(frame, nullptr, STATUSCLASSNAMEA, nullptr);
    if (bar != nullptr && !Answered(s, ReadPanes(bar, processId, s))) return;

    HWND client = FindWindowExA(frame, nullptr, "MDIClient", nullptr);
    for (HWND child = client != nullptr ? GetWindow(client, GW_CHILD) : nullptr;
         child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        char cls[64] = "";
        char title[TextSize];
        POINT origin = {0, 0};  // the client area's top left corner on the screen
        RECT area;
        GetClassNameA(child, cls, sizeof cls);
        Text(child, title, sizeof title);
        ClientToScreen(child, &origin);
        GetClientRect(child, &area);
        List(s, "child=%s|%s\nclient=%s|%ld,%ld,%ld,%ld\n", cls, title, cls, origin.x, origin.y,
             area.right, area.bottom);
    }

    WindowSearch windows = {processId, frame, s};
    EnumWindows(AddTopWindow, (LPARAM)&windows);
}

void PrintSnapshot(const Snapshot& s) {
    printf("frames=%d\ntopmost=%s\n", s.frames, s.topmost);
    if (!s.found) return;
    if (s.hung) {
        printf("hung=1\n");
        return;
    }
    printf("caption=%s\nenabled=%d\niconic=%d\n", s.caption, s.enabled, s.iconic);
    for (int pane = 0; pane < 3; pane++) printf("pane%d=%s\n", pane, s.panes[pane]);
    fputs(s.listing, stdout);
    fflush(stdout);
}

int HasWindow(const Snapshot& s, const char* title) {
    for (int i = 0; i < s.windowCount; i++)
        if (strcmp(s.windowTitles[i], title) == 0) return 1;
    return 0;
}

// One condition of "wait": a key, '=' for exact or '~' for contains, a value.
struct Condition {
    char key[16];
    char op;
    const char* value;
};

int ParseCondition(const char* text, Condition* c) {
    const char* sep = strpbrk(text, "=~");
    if (sep == nullptr || sep == text || sep - text >= (int)sizeof c->key) return 0;
    memcpy(c->key, text, (size_t)(sep - text));
    c->key[sep - text] = '\0';
    c->op = *sep;
    c->value = sep + 1;
    static const char* const keys[] = {"pane0",    "pane1",  "pane2",   "caption", "window",
                                       "nowindow", "frames", "enabled", "iconic",  "topmost"};
    for (const char* key : keys)
        if (strcmp(c->key, key) == 0) return 1;
    return 0;
}

int TextMatches(const char* text, const Condition& c) {
    return c.op == '=' ? strcmp(text, c.value) == 0 : strstr(text, c.value) != nullptr;
}

int Holds(const Snapshot& s, const Condition& c) {
    if (strcmp(c.key, "frames") == 0) return s.frames == atoi(c.value);
    if (strcmp(c.key, "topmost") == 0) return TextMatches(s.topmost, c);
    if (!s.found || s.hung) return 0;
    if (strcmp(c.key, "caption") == 0) return TextMatches(s.caption, c);
    if (strncmp(c.key, "pane", 4) == 0) return TextMatches(s.panes[c.key[4] - '0'], c);
    if (strcmp(c.key, "window") == 0) return HasWindow(s, c.value);
    if (strcmp(c.key, "nowindow") == 0) return !HasWindow(s, c.value);
    if (strcmp(c.key, "enabled") == 0) return s.enabled == atoi(c.value);
    if (strcmp(c.key, "iconic") == 0) return s.iconic == atoi(c.value);
    return 0;
}

Snapshot current;

int RunWait(int argc, char** argv) {
    double seconds = 30;
    Condition conditions[MaxConditions];
    int count = 0;
    for (int i = 0; i < argc; i++) {
        if (strcmp(argv[i], "-t") == 0 && i + 1 < argc) {
            seconds = atof(argv[++i]);
        } else if (count < MaxConditions && ParseCondition(argv[i], &conditions[count])) {
            count++;
        } else {
            fprintf(stderr, "veldor_probe: bad condition '%s'\n", argv[i]);
            return 4;
        }
    }
    DWORD start = GetTickCount();
    for (;;) {
        TakeSnapshot(&current);
        int all = 1;
        for (int i = 0; i < count && all; i++) all = Holds(current, conditions[i]);
        if (current.hung || all || GetTickCount() - start > (DWORD)(seconds * 1000)) {
            PrintSnapshot(current);
            return current.hung ? 3 : all ? 0 : 1;
        }
        Sleep(50);
    }
}

// Hooks status_hook.dll into every program on this desktop, so that each
// status text the program sets is appended to the log at logPath. The hook
// lasts as long as this process.
int InstallStatusHook(const char* dllPath, const char* logPath) {
    HANDLE mapping = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, MAX_PATH,
                                        "VeldorProbeStatusLog");
    char* view = mapping != nullptr ? (char*)MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, MAX_PATH)
                                    : nullptr;
    HMODULE dll = view != nullptr ? LoadLibraryA(dllPath) : nullptr;
    HOOKPROC proc = dll != nullptr ? (HOOKPROC)(void*)GetProcAddress(dll, "StatusHookProc") : nullptr;
    if (proc == nullptr) return 0;
    snprintf(view, MAX_PATH, "%s", logPath);
    return SetWindowsHookExA(WH_CALLWNDPROC, proc, dll, 0) != nullptr;
}

int RunWatch(int argc, char** argv) {
    if (argc != 3 || !InstallStatusHook(argv[1], argv[2])) {
        fputs("veldor_probe: watch SECONDS DLL LOG: cannot hook the DLL\n", stderr);
        return 4;
    }
    printf("0 hooked\n");
    double seconds = atof(argv[0]);
    DWORD start = GetTickCount();
    int wasHung = 0;
    while (GetTickCount() - start < (DWORD)(seconds * 1000)) {
        FrameSearch search = {nullptr, 0};
        EnumWindows(CountFrames, (LPARAM)&search);
        DWORD_PTR ignored = 0;
        int hung = search.first != nullptr && Ask(search.first, WM_NULL, 0, 0, &ignored) < 0;
        if (hung && !wasHung) printf("%lu HUNG\n", (unsigned long)(GetTickCount() - start));
        wasHung = hung;
        fflush(stdout);
        Sleep(50);
    }
    return 0;
}

// Moves this thread to the named desktop, so that the program's windows
// there can be found. The desktop comes into being with the program's start,
// so it is looked for during a few seconds.
int UseDesktop(const char* name) {
    DWORD start = GetTickCount();
    for (;;) {
        HDESK desktop = OpenDesktopA(name, 0, FALSE, GENERIC_ALL);
        if (desktop != nullptr) return SetThreadDesktop(desktop) ? 1 : 0;
        if (GetTickCount() - start > 20000) return 0;
        Sleep(100);
    }
}

}  // namespace

int main(int argc, char** argv) {
    _setmode(_fileno(stdout), _O_BINARY);  // lines end in \n alone, for the shell
    if (argc < 4 || strcmp(argv[1], "-d") != 0) {
        fputs("usage: veldor_probe -d DESKTOP wait|ok|watch ...\n", stderr);
        return 4;
    }
    if (!UseDesktop(argv[2])) {
        fprintf(stderr, "veldor_probe: no desktop '%s'\n", argv[2]);
        return 2;
    }
    if (strcmp(argv[3], "wait") == 0) return RunWait(argc - 4, argv + 4);
    if (strcmp(argv[3], "watch") == 0) return RunWatch(argc - 4, argv + 4);
    if (strcmp(argv[3], "ok") == 0 && argc == 5) {  // presses OK on a box
        HWND hwnd = (HWND)(uintptr_t)strtoul(argv[4], nullptr, 16);
        return IsWindow(hwnd) && PostMessageA(hwnd, WM_COMMAND, IDOK, 0) ? 0 : 1;
    }
    return 4;
}
