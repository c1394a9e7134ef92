#include "link/serial_port_win32.h"

#include <stdio.h>
#include <string.h>

#include "link/frame_codec.h"
#include "base/front_win32.h"
#include "base/status_log.h"
#include "storage/settings_file.h"
#include "survey/survey_state.h"

HANDLE portHandle = INVALID_HANDLE_VALUE;
volatile LONG readerState = 2;

static const DWORD PortEventMask = EV_RXCHAR | EV_BREAK | EV_ERR;  // 193
static const DWORD ReadPieceSize = 1024;

// Sent at each open, before any frame, so that a terminal on the line shows
// who is talking.
static const char Banner[] = "\n\rVELDOR (Software)\r\nTrevan Instruments\n\r";

int PortWrite(const char* data, int length) {
    HANDLE port = portHandle;
    if (port == INVALID_HANDLE_VALUE || data == nullptr || length < 0) return 0;
    OVERLAPPED ov;
    memset(&ov, 0, sizeof ov);
    ov.hEvent = CreateEventA(nullptr, TRUE, TRUE, nullptr);
    if (ov.hEvent == nullptr) return 0;
    DWORD written = 0;
    BOOL ok = WriteFile(port, data, (DWORD)length, &written, &ov);
    if (!ok && GetLastError() == ERROR_IO_PENDING)
        ok = GetOverlappedResult(port, &ov, &written, TRUE);
    CloseHandle(ov.hEvent);
    return ok && written == (DWORD)length ? 1 : 0;
}

static int ConfigureLine(HANDLE port) {
    COMMTIMEOUTS timeouts;
    memset(&timeouts, 0, sizeof timeouts);
    timeouts.ReadIntervalTimeout = MAXDWORD;
    timeouts.ReadTotalTimeoutMultiplier = MAXDWORD;
    timeouts.ReadTotalTimeoutConstant = 100;
    timeouts.WriteTotalTimeoutMultiplier = 1;
    timeouts.WriteTotalTimeoutConstant = 1000;
    int ok = SetupComm(port, 4096, 4096) && SetCommTimeouts(port, &timeouts);

    DCB dcb;
    memset(&dcb, 0, sizeof dcb);
    dcb.DCBlength = sizeof dcb;
    dcb.BaudRate = CBR_9600;
    dcb.ByteSize = 8;
    dcb.Parity = NOPARITY;
    dcb.StopBits = ONESTOPBIT;
    dcb.fBinary = 1;
    dcb.fDtrControl = DTR_CONTROL_ENABLE;
    dcb.fRtsControl = RTS_CONTROL_DISABLE;
    if (!SetCommState(port, &dcb)) ok = 0;
    return ok;
}

int OpenPort() {
    char name[PathSize];
    ReadSetting(KeyPcPort, name, sizeof name);
    if (portHandle != INVALID_HANDLE_VALUE) ClosePort();

    HANDLE port = CreateFileA(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                              FILE_FLAG_OVERLAPPED, nullptr);
    if (port == INVALID_HANDLE_VALUE) return 0;

    int ok = ConfigureLine(port);
    HANDLE thread = nullptr;
    if (ok) {
        InterlockedExchange(&readerState, 0);
        thread = CreateThread(nullptr, 0, ReaderThread, port, 0, nullptr);
    }
    if (!ok || thread == nullptr) {
        InterlockedExchange(&readerState, 2);
        CloseHandle(port);
        portHandle = INVALID_HANDLE_VALUE;
        return 0;
    }
    CloseHandle(thread);  // the thread is followed through readerState
    portHandle = port;

    LogStatus("%s opened", name);
    ResetFrameCodec();
    EscapeCommFunction(port, SETRTS);
    EscapeCommFunction(port, SETDTR);
    PortWrite(Banner, (int)sizeof Banner - 1);
    PostMessageA(FrameWindow(), WM_VELDOR, PRIVATE_ACCESSORY_SETUP, 0);
    return 1;
}

// Waits about the given time while letting messages that other threads send
// to this thread's windows through: the reader thread's status lines are
// sent synchronously, and it must not be held up while it is being stopped.
static void WaitLettingSentMessagesThrough(DWORD milliseconds) {
    DWORD start = GetTickCount();
    for (;;) {
        DWORD spent = GetTickCount() - start;
        if (spent >= milliseconds) return;
        DWORD result =
            MsgWaitForMultipleObjects(0, nullptr, FALSE, milliseconds - spent, QS_SENDMESSAGE);
        if (result == WAIT_OBJECT_0) {
            MSG msg;
            PeekMessageA(&msg, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
        }
    }
}

int ClosePort() {
    HANDLE port = portHandle;
    if (port == INVALID_HANDLE_VALUE) return 1;
    SendFrameText("OP 0");
    Sleep(50);
    EscapeCommFunction(port, CLRDTR);
    EscapeCommFunction(port, CLRRTS);
    InterlockedExchange(&readerState, 1);
    SetCommMask(port, 0);
    for (int i = 0; i < 30 && readerState != 2; i++) WaitLettingSentMessagesThrough(100);
    int ended = readerState == 2;
    portHandle = INVALID_HANDLE_VALUE;
    CloseHandle(port);
    if (!ended) return 0;
    LogStatus("Port closed");
    return 1;
}

// Waits for an overlapped operation that reported ERROR_IO_PENDING; 1 when
// it completed well.
static int FinishPending(HANDLE port, OVERLAPPED* ov, DWORD* transferred) {
    WaitForSingleObject(ov->hEvent, INFINITE);
    return GetOverlappedResult(port, ov, transferred, FALSE) ? 1 : 0;
}

// Reads what the driver holds, piece by piece, until nothing is left. The
// length of each read is what the driver reports as queued: some drivers let
// a read on an empty queue wait for the next byte despite the timeouts, which
// would keep the thread from seeing a stop request.
static void ReadAvailable(HANDLE port, OVERLAPPED* ov, DWORD queued) {
    char piece[ReadPieceSize + 1];  // room for the terminator behind the piece
    while (queued > 0) {
        DWORD want = queued < ReadPieceSize ? queued : ReadPieceSize;
        DWORD got = 0;
        BOOL ok = ReadFile(port, piece, want, &got, ov);
        if (!ok) {
            if (GetLastError() != ERROR_IO_PENDING) return;
            if (!FinishPending(port, ov, &got)) return;
        }
        if (got == 0) return;
        ReceiveBytes(piece, (int)got);
        DWORD errors = 0;
        COMSTAT status;
        if (!ClearCommError(port, &errors, &status)) return;
        queued = status.cbInQue;
    }
}

DWORD WINAPI ReaderThread(LPVOID parameter) {
    HANDLE port = (HANDLE)parameter;
    OVERLAPPED ov;
    memset(&ov, 0, sizeof ov);
    ov.hEvent = CreateEventA(nullptr, TRUE, TRUE, nullptr);

    COMMTIMEOUTS timeouts;
    if (GetCommTimeouts(port, &timeouts)) {
        timeouts.ReadIntervalTimeout = MAXDWORD;
        timeouts.ReadTotalTimeoutMultiplier = 0;
        timeouts.ReadTotalTimeoutConstant = 0;
        SetCommTimeouts(port, &timeouts);
    }
    SetCommMask(port, PortEventMask);

    while (ov.hEvent != nullptr && readerState == 0) {
        DWORD mask = 0;
        if (!WaitCommEvent(port, &mask, &ov)) {
            DWORD transferred = 0;
            if (GetLastError() == ERROR_IO_PENDING) {
                // A wake that comes back aborted (995) or with an empty mask
                // is the stop request or the driver looking at the modem
                // lines: look at readerState and wait again.
                if (!FinishPending(port, &ov, &transferred)) mask = 0;
            } else {
                mask = 0;
                Sleep(20);  // a failing port must not turn this into a busy loop
            }
        }
        DWORD errors = 0;
        COMSTAT status;
        memset(&status, 0, sizeof status);
        ClearCommError(port, &errors, &status);
        // Bytes may arrive between the last read and the next wait without
        // a wake of their own, so whatever is queued is read on any wake.
        if (((mask & EV_RXCHAR) || status.cbInQue > 0) && readerState == 0)
            ReadAvailable(port, &ov, status.cbInQue);
    }

    if (ov.hEvent != nullptr) CloseHandle(ov.hEvent);
    InterlockedExchange(&readerState, 2);
    return 0;
}
