// link-harness PORT [SECONDS] [SETTINGS_FILE]
//
// Opens PORT (a serial device or pseudo-terminal) at 9600 8N1, runs the
// accessory set-up and "OP 1" as the program does at port open, records one
// sample a second for SECONDS (default 10), and prints the live values on
// every tick and every stored record at the end.
#include <fcntl.h>
#include <poll.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include "console_platform.h"
#include "link/accessory_modes.h"
#include "link/controller_messages.h"
#include "link/frame_codec.h"
#include "base/app_paths.h"
#include "base/status_log.h"
#include "shell/tick.h"
#include "shell/recording_commands.h"
#include "survey/recording_engine.h"
#include "survey/survey_state.h"

static long long NowMs() {
    struct timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return (long long)ts.tv_sec * 1000 + ts.tv_nsec / 1000000;
}

static int OpenSerial(const char* path) {
    int fd = open(path, O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (fd < 0) return -1;
    struct termios tio;
    if (tcgetattr(fd, &tio) == 0) {
        cfmakeraw(&tio);
        cfsetispeed(&tio, B9600);
        cfsetospeed(&tio, B9600);
        tio.c_cflag |= CLOCAL | CREAD;
        tcsetattr(fd, TCSANOW, &tio);
    }
    return fd;
}

int main(int argc, char** argv) {
    if (argc < 2) {
        fprintf(stderr, "usage: link-harness PORT [SECONDS] [SETTINGS_FILE]\n");
        return 2;
    }
    int seconds = argc > 2 ? atoi(argv[2]) : 10;
    if (seconds < 1 || seconds > 86400) {
        fprintf(stderr, "link-harness: SECONDS must be 1 to 86400\n");
        return 2;
    }
    snprintf(settingsPath, sizeof settingsPath, "%s",
             argc > 3 ? argv[3] : "/tmp/veldor-link-harness.ini");

    ResetSurveyState();
    ResetRecordingEngine();
    ResetLinkTimers();
    recordIntervalSeconds = 1;

    consolePortFd = OpenSerial(argv[1]);
    if (consolePortFd < 0) {
        LogStatus("<< PC port error >>");
        return 1;
    }
    LogStatus("%s opened", argv[1]);
    ResetFrameCodec();
    commsWatchdogTicks = 12;
    if (!ApplyTzrMode()) LogStatus("<< Error setting TZR4100 configuration >>");
    SendFrameText("OP 1");
    StartRecording();

    char piece[1024 + 1];
    long long nextTick = NowMs() + 1000;
    for (int tick = 0; tick < seconds;) {
        long long left = nextTick - NowMs();
        if (left <= 0) {
            Tick(1);
            tick++;
            nextTick += 1000;
            printf("live: lat %d lon %d readings %u %u %u %u channel %u gps 0x%02X valid %d, "
                   "records %d\n",
                   liveState.liveLatitude, liveState.liveLongitude, liveState.liveReadings[0],
                   liveState.liveReadings[1], liveState.liveReadings[2], liveState.liveReadings[3],
                   liveState.liveAccessoryChannel, liveState.gpsStatus, liveState.dataValidTicks,
                   recordCount);
            fflush(stdout);
            continue;
        }
        struct pollfd p = {consolePortFd, POLLIN, 0};
        if (poll(&p, 1, (int)left) > 0) {
            ssize_t n = read(consolePortFd, piece, 1024);
            if (n > 0) ReceiveBytes(piece, (int)n);
            else usleep(10000);
        }
    }
    StopRecording();
    SendFrameText("OP 0");
    usleep(50000);
    close(consolePortFd);
    consolePortFd = -1;

    printf("stored records: %d\n", recordCount);
    for (int i = 0; i < recordCount; i++) {
        const Record& r = recordStore.rows[i];
        printf("%5d  flags 0x%02X  lat %11d  lon %11d  ch %3u %3u %3u %3u  time %u\n", i + 1,
               r.flags, r.latitude, r.longitude, r.ch[0], r.ch[1], r.ch[2], r.ch[3], r.time);
    }
    return 0;
}
