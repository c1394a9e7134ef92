// veldor_probe: reads the running program's windows from outside, for the
// end-to-end scenarios. A Win32 console program, run with Wine beside
// veldor.exe on the same desktop.
//
//   veldor_probe [-d DESKTOP] state
//       Prints what an operator sees: the window in front, the number of
//       frames, the frame's caption and state, the three status panes, the
//       MDI children and the program's other top-level windows (dialogs,
//       message boxes, open menus: class|title|enabled|handle) with their
//       controls (class|id|text), and each child's client area on the screen
//       (client=class|x,y,width,height). Lines are "key=value"; newlines in texts
//       print as \n.
//   veldor_probe [-d DESKTOP] wait [-t SECONDS] CONDITION...
//       Polls until every condition holds, then prints the state and ends
//       with 0; 1 when the time runs out. CONDITION is one of
//         pane0=TEXT pane1=TEXT pane2=TEXT caption=TEXT   exact text
//         pane0~TEXT pane1~TEXT pane2~TEXT caption~TEXT   text contains
//         window=TITLE nowindow=TITLE   a top-level window of the program
//         topmost=CLASS|TITLE topmost~TEXT   the visible top-level window
//                                            in front, of any program
//         frames=N enabled=0|1 iconic=0|1
//   veldor_probe [-d DESKTOP] watch [-i MILLISECONDS] [-t SECONDS] [-k DLL LOG]
//       Prints "<ms> key=value" whenever a pane, the caption or the list of
//       the program's windows changes, and "<ms> frames=0" when the frame
//       goes, until the time runs out or the probe is ended. A frame that
//       does not answer within 5 seconds prints "<ms> HUNG". With -k, first
//       hooks status_hook.dll into the programs of the desktop, which then
//       append every status text they set to LOG (a Windows path), also
//       those replaced before a look could see them; "0 hooked" says the
//       hook is in place.
//
// Exit codes: 0 done, 1 condition not met in time, 2 no frame, 3 the frame
// did not answer within 5 seconds (the program hangs), 4 bad arguments.
#include <windows.h>
#include <commctrl.h>
#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

const UINT AnswerTimeoutMs = 5000;
const int TextSize = 512;
const int MaxChildren = 16;
const int MaxWindows = 16;
const int MaxControls = 48;
const int MaxConditions = 16;

struct Control {
    char className[64];
    int id;
    char text[TextSize];
};

struct TopWindow {
    HWND hwnd;
    char className[64];
    char title[TextSize];
    int enabled;
    int controlCount;
    Control controls[MaxControls];
};

struct Child {
    char className[64];
    char title[TextSize];
    POINT origin;  // the client area's top left corner on the screen
    RECT client;
};

struct Snapshot {
    char topmost[TextSize];  // class|title of the visible top-level window in front
    int frames;
    int found;
    int hung;
    char caption[TextSize];
    int enabled;
    int iconic;
    int visible;
    char panes[3][TextSize];
    int childCount;
    Child children[MaxChildren];
    int windowCount;
    TopWindow windows[MaxWindows];
};

// Copies text, turning line breaks and tabs into visible escapes so that a
// value stays on one line.
void Escape(const char* in, char* out, int size) {
    int n = 0;
    for (const char* p = in; *p != '\0' && n < size - 3; p++) {
        if (*p == '\n') {
            out[n++] = '\\';
            out[n++] = 'n';
        } else if (*p == '\r') {
            out[n++] = '\\';
            out[n++] = 'r';
        } else if (*p == '\t') {
            out[n++] = '\\';
            out[n++] = 't';
        } else {
            out[n++] = *p;
        }
    }
    out[n] = '\0';
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
    TopWindow* window = (TopWindow*)param;
    if (window->controlCount >= MaxControls) return FALSE;
    if (!IsWindowVisible(hwnd)) return TRUE;
    Control& control = window->controls[window->controlCount++];
    GetClassNameA(hwnd, control.className, sizeof control.className);
    control.id = GetDlgCtrlID(hwnd);
    char raw[TextSize] = "";
    // An edit of another process keeps its text to itself: ask for it.
    DWORD_PTR ignored = 0;
    if (strcmp(control.className, "Edit") != 0 ||
        !SendMessageTimeoutA(hwnd, WM_GETTEXT, sizeof raw, (LPARAM)raw, SMTO_ABORTIFHUNG,
                             AnswerTimeoutMs, &ignored))
        GetWindowTextA(hwnd, raw, sizeof raw);
    Escape(raw, control.text, sizeof control.text);
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
    TopWindow& window = s->windows[s->windowCount++];
    memset(&window, 0, sizeof window);
    window.hwnd = hwnd;
    GetClassNameA(hwnd, window.className, sizeof window.className);
    char raw[TextSize] = "";
    GetWindowTextA(hwnd, raw, sizeof raw);
    Escape(raw, window.title, sizeof window.title);
    window.enabled = IsWindowEnabled(hwnd) ? 1 : 0;
    EnumChildWindows(hwnd, AddControl, (LPARAM)&window);
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

// Reads one pane of the status bar: the text is copied into memory of the
// program's own process and read back from there. As Ask.
int ReadPane(HWND bar, HANDLE process, void* remote, int pane, char* out, int size) {
    DWORD_PTR length = 0;
    int answered = Ask(bar, SB_GETTEXTLENGTHA, (WPARAM)pane, 0, &length);
    if (answered != 1) return answered;
    if (LOWORD(length) >= TextSize) return 1;
    DWORD_PTR ignored = 0;
    answered = Ask(bar, SB_GETTEXTA, (WPARAM)pane, (LPARAM)remote, &ignored);
    if (answered != 1) return answered;
    char raw[TextSize];
    SIZE_T got = 0;
    memset(raw, 0, sizeof raw);
    if (!ReadProcessMemory(process, remote, raw, sizeof raw - 1, &got)) raw[0] = '\0';
    raw[sizeof raw - 1] = '\0';
    Escape(raw, out, size);
    return 1;
}

// Remote buffer for the status bar texts, kept for the life of the probe.
struct Remote {
    DWORD processId;
    HANDLE process;
    void* buffer;
};
Remote remote;

void* RemoteBuffer(DWORD processId, HANDLE* process) {
    if (remote.process != nullptr && remote.processId != processId) {
        CloseHandle(remote.process);
        remote.process = nullptr;
        remote.buffer = nullptr;
    }
    if (remote.process == nullptr) {
        remote.process = OpenProcess(
            PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE | PROCESS_QUERY_INFORMATION,
            FALSE, processId);
        if (remote.process == nullptr) return nullptr;
        remote.processId = processId;
        remote.buffer =
            VirtualAllocEx(remote.process, nullptr, TextSize, MEM_COMMIT, PAGE_READWRITE);
    }
    *process = remote.process;
    return remote.buffer;
}

void TakeSnapshot(Snapshot* s) {
    memset(s, 0, sizeof *s);
    FrameSearch search = {nullptr, 0};
    EnumWindows(CountFrames, (LPARAM)&search);
    s->frames = search.count;
    for (HWND top = GetTopWindow(nullptr); top != nullptr; top = GetWindow(top, GW_HWNDNEXT)) {
        if (!IsWindowVisible(top)) continue;
        char cls[64] = "";
        char title[TextSize] = "";
        GetClassNameA(top, cls, sizeof cls);
        GetWindowTextA(top, title, sizeof title);
        char raw[TextSize];
        snprintf(raw, sizeof raw, "%s|%s", cls, title);
        Escape(raw, s->topmost, sizeof s->topmost);
        break;
    }
    HWND frame = search.first;
    if (frame == nullptr) return;
    s->found = 1;

    DWORD_PTR ignored = 0;
    int answered = Ask(frame, WM_NULL, 0, 0, &ignored);
    if (answered != 1) {
        s->hung = answered < 0 ? 1 : 0;
        if (!s->hung) s->found = 0;
        return;
    }
    char raw[TextSize] = "";
    GetWindowTextA(frame, raw, sizeof raw);
    Escape(raw, s->caption, sizeof s->caption);
    s->enabled = IsWindowEnabled(frame) ? 1 : 0;
    s->iconic = IsIconic(frame) ? 1 : 0;
    s->visible = IsWindowVisible(frame) ? 1 : 0;

    DWORD processId = 0;
    GetWindowThreadProcessId(frame, &processId);
    HWND bar = FindWindowExA(frame, nullptr, STATUSCLASSNAMEA, nullptr);
    HANDLE process = nullptr;
    void* buffer = RemoteBuffer(processId, &process);
    if (bar != nullptr && buffer != nullptr) {
        for (int pane = 0; pane < 3; pane++) {
            answered = ReadPane(bar, process, buffer, pane, s->panes[pane], TextSize);
            if (answered != 1) {
                s->hung = answered < 0 ? 1 : 0;
                if (!s->hung) s->found = 0;
                return;
            }
        }
    }

    HWND client = FindWindowExA(frame, nullptr, "MDIClient", nullptr);
    for (HWND child = client != nullptr ? GetWindow(client, GW_CHILD) : nullptr;
         child != nullptr && s->childCount < MaxChildren; child = GetWindow(child, GW_HWNDNEXT)) {
        Child& c = s->children[s->childCount++];
        GetClassNameA(child, c.className, sizeof c.className);
        char title[TextSize] = "";
        GetWindowTextA(child, title, sizeof title);
        Escape(title, c.title, sizeof c.title);
        c.origin = POINT{0, 0};
        ClientToScreen(child, &c.origin);
        GetClientRect(child, &c.client);
    }

    WindowSearch windows = {processId, frame, s};
    EnumWindows(AddTopWindow, (LPARAM)&windows);
}

void PrintSnapshot(const Snapshot& s) {
    printf("frames=%d\n", s.frames);
    printf("topmost=%s\n", s.topmost);
    if (!s.found) return;
    if (s.hung) {
        printf("hung=1\n");
        return;
    }
    printf("caption=%s\n", s.caption);
    printf("enabled=%d\n", s.enabled);
    printf("iconic=%d\n", s.iconic);
    printf("visible=%d\n", s.visible);
    for (int pane = 0; pane < 3; pane++) printf("pane%d=%s\n", pane, s.panes[pane]);
    for (int i = 0; i < s.childCount; i++)
        printf("child=%s|%s\n", s.children[i].className, s.children[i].title);
    for (int i = 0; i < s.childCount; i++)
        printf("client=%s|%ld,%ld,%ld,%ld\n", s.children[i].className, s.children[i].origin.x,
               s.children[i].origin.y, s.children[i].client.right, s.children[i].client.bottom);
    for (int i = 0; i < s.windowCount; i++) {
        const TopWindow& w = s.windows[i];
        printf("window=%s|%s|%d|%p\n", w.className, w.title, w.enabled, (void*)w.hwnd);
        for (int c = 0; c < w.controlCount; c++)
            printf("control=%s|%d|%s\n", w.controls[c].className, w.controls[c].id,
                   w.controls[c].text);
    }
    fflush(stdout);
}

int HasWindow(const Snapshot& s, const char* title) {
    for (int i = 0; i < s.windowCount; i++)
        if (strcmp(s.windows[i].title, title) == 0) return 1;
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
Snapshot previous;

int RunState() {
    TakeSnapshot(&current);
    PrintSnapshot(current);
    if (!current.found) return 2;
    return current.hung ? 3 : 0;
}

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
        if (current.hung) {
            PrintSnapshot(current);
            return 3;
        }
        int all = 1;
        for (int i = 0; i < count && all; i++) all = Holds(current, conditions[i]);
        if (all) {
            PrintSnapshot(current);
            return 0;
        }
        if (GetTickCount() - start > (DWORD)(seconds * 1000)) {
            PrintSnapshot(current);
            return 1;
        }
        Sleep(50);
    }
}

void WindowList(const Snapshot& s, char* out, int size) {
    out[0] = '\0';
    int n = 0;
    for (int i = 0; i < s.windowCount && n < size - 1; i++) {
        int wrote =
            snprintf(out + n, (size_t)(size - n), "%s%s", i > 0 ? "|" : "", s.windows[i].title);
        if (wrote < 0) break;
        n += wrote;
    }
}

// Hooks status_hook.dll into every program on this desktop, so that each
// status text the program sets is appended to the log at logPath. The hook
// lasts as long as this process.
int InstallStatusHook(const char* dllPath, const char* logPath) {
    HANDLE mapping = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, MAX_PATH,
                                        "VeldorProbeStatusLog");
    if (mapping == nullptr) return 0;
    char* view = (char*)MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, MAX_PATH);
    if (view == nullptr) return 0;
    snprintf(view, MAX_PATH, "%s", logPath);
    HMODULE dll = LoadLibraryA(dllPath);
    if (dll == nullptr) return 0;
    HOOKPROC proc = (HOOKPROC)(void*)GetProcAddress(dll, "StatusHookProc");
    if (proc == nullptr) return 0;
    return SetWindowsHookExA(WH_CALLWNDPROC, proc, dll, 0) != nullptr;
}

int RunWatch(int argc, char** argv) {
    int interval = 50;
    double seconds = 600;
    for (int i = 0; i < argc; i++) {
        if (strcmp(argv[i], "-i") == 0 && i + 1 < argc) {
            interval = atoi(argv[++i]);
        } else if (strcmp(argv[i], "-t") == 0 && i + 1 < argc) {
            seconds = atof(argv[++i]);
        } else if (strcmp(argv[i], "-k") == 0 && i + 2 < argc) {
            if (!InstallStatusHook(argv[i + 1], argv[i + 2])) {
                fprintf(stderr, "veldor_probe: cannot hook '%s'\n", argv[i + 1]);
                return 4;
            }
            printf("0 hooked\n");
            fflush(stdout);
            i += 2;
        } else {
            fprintf(stderr, "veldor_probe: bad watch argument '%s'\n", argv[i]);
            return 4;
        }
    }
    DWORD start = GetTickCount();
    int seen = 0;
    int wasHung = 0;
    char windows[TextSize * 2];
    char before[TextSize * 2] = "";
    memset(&previous, 0, sizeof previous);
    while (GetTickCount() - start < (DWORD)(seconds * 1000)) {
        TakeSnapshot(&current);
        DWORD ms = GetTickCount() - start;
        if (current.hung && !wasHung) printf("%lu HUNG\n", (unsigned long)ms);
        wasHung = current.hung;
        if (!current.found) {
            if (seen) printf("%lu frames=0\n", (unsigned long)ms);
            seen = 0;
            memset(&previous, 0, sizeof previous);
            before[0] = '\0';
        } else if (!current.hung) {
            if (!seen || current.frames != previous.frames)
                printf("%lu frames=%d\n", (unsigned long)ms, current.frames);
            seen = 1;
            for (int pane = 0; pane < 3; pane++)
                if (strcmp(current.panes[pane], previous.panes[pane]) != 0)
                    printf("%lu pane%d=%s\n", (unsigned long)ms, pane, current.panes[pane]);
            if (strcmp(current.caption, previous.caption) != 0)
                printf("%lu caption=%s\n", (unsigned long)ms, current.caption);
            WindowList(current, windows, sizeof windows);
            if (strcmp(windows, before) != 0) {
                printf("%lu windows=%s\n", (unsigned long)ms, windows);
                memcpy(before, windows, sizeof before);
            }
            previous = current;
        }
        fflush(stdout);
        Sleep((DWORD)interval);
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

int Usage() {
    fprintf(stderr,
            "usage: veldor_probe [-d DESKTOP] state\n"
            "       veldor_probe [-d DESKTOP] wait [-t SECONDS] CONDITION...\n"
            "       veldor_probe [-d DESKTOP] watch [-i MS] [-t SECONDS]\n");
    return 4;
}

}  // namespace

int main(int argc, char** argv) {
    _setmode(_fileno(stdout), _O_BINARY);  // lines end in \n alone, for the shell
    int i = 1;
    if (i + 1 < argc && strcmp(argv[i], "-d") == 0) {
        if (!UseDesktop(argv[i + 1])) {
            fprintf(stderr, "veldor_probe: no desktop '%s'\n", argv[i + 1]);
            return 2;
        }
        i += 2;
    }
    if (i >= argc) return Usage();
    const char* command = argv[i++];
    if (strcmp(command, "state") == 0) return RunState();
    if (strcmp(command, "wait") == 0) return RunWait(argc - i, argv + i);
    if (strcmp(command, "watch") == 0) return RunWatch(argc - i, argv + i);
    return Usage();
}
