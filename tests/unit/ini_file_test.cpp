#include "storage/ini_file.h"

#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <string>
#include <vector>

#include "fake_platform.h"
#include "base/app_paths.h"
#include "storage/settings_file.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace {

// Hands out fresh paths in the temporary folder and removes the files at the end.
struct ScratchFiles {
    std::vector<std::string> paths;

    std::string Path(const char* name) {
        static int serial = 0;
        paths.push_back(TempTestPath("ini-" + std::to_string(serial++) + "-" + name));
        remove(paths.back().c_str());
        return paths.back();
    }
    ~ScratchFiles() {
        for (const std::string& p : paths) remove(p.c_str());
    }
};

// A literal with NUL bytes in it.
template <size_t N>
std::string Bytes(const char (&text)[N]) {
    return std::string(text, N - 1);
}

void Put(const std::string& path, const std::string& bytes) {
    ASSERT_EQ(1, WriteFileBytes(path, bytes));
}

// The text read; the count returned must be its length.
std::string Text(const char* section, const char* key, const char* def, int size,
                 const std::string& path) {
    char buffer[256];
    memset(buffer, '*', sizeof buffer);
    int n = IniGetString(section, key, def, buffer, size, path.c_str());
    EXPECT_EQ(n, static_cast<int>(strlen(buffer)));
    return buffer;
}

TEST(IniFile, NumbersReadAsTheProfileCallsGiveThem) {
    ScratchFiles files;
    std::string path = files.Path("numbers.ini");
    Put(path,
        "[N]\r\na=-1\r\nb=12abc\r\nc=abc\r\nd=0x10\r\ne=0X10\r\nf=+5\r\ng=-0x10\r\n"
        "h=4294967295\r\ni=2147483648\r\nj=99999999999\r\nk=\"12\"\r\nl=\r\nm\r\n"
        "n=123456789012345678901234567890123\r\no=0b101\r\np=- 5\r\nq= 42 \r\n"
        "r=0xAf\r\ns=0xa1G\r\n");
    const struct {
        const char* key;
        int expected;
    } cases[] = {
        {"a", -1},         {"b", 12},       {"c", 0},
        {"d", 16},         {"e", 0},        {"f", 5},
        {"g", -16},        {"h", -1},       {"i", -2147483647 - 1},
        {"j", 1215752191}, {"k", 12},       {"l", -7},
        {"m", -7},         {"missing", -7}, {"n", 1849262357},
        {"o", 5},          {"p", 0},        {"q", 42},
        {"r", 175},        {"s", 161},  // hex digits of either case; G ends the number
    };
    for (const auto& c : cases) {
        EXPECT_EQ(IniGetInt("N", c.key, -7, path.c_str()), c.expected) << c.key;
    }
    EXPECT_EQ(IniGetInt("N", "a", 3, files.Path("absent.ini").c_str()), 3);
    Put(path, "\xEF\xBB\xBF[N]\r\na=4\r\n");  // a UTF-8 mark before the first section
    EXPECT_EQ(IniGetInt("N", "a", -7, path.c_str()), 4);
}

TEST(IniFile, TextReadsWithNamesTrimmedQuotesDroppedAndCut) {
    ScratchFiles files;
    std::string path = files.Path("text.ini");
    Put(path, Bytes("; comment\r\n[Main Window]\r\n  Font Name  =  Courier New  \r\n"
                    "Key=first\r\nKEY=second\r\nQ=\"quoted\"\r\nOne='\r\nTwo=''\r\nEmpty=\r\nBare\r\n"
                    "Nul=a\0b\r\n[Broken\r\nInBroken=2\r\n[main window]\r\nOther=1\r\n"
                    "[Lf]\nA=lf\rB=cr"));
    EXPECT_EQ(Text(" main window ", "font name", "d", 64, path), "Courier New");
    EXPECT_EQ(Text("Main window", "key", "d", 64, path), "first");
    EXPECT_EQ(Text("Main window", "Q", "d", 64, path), "quoted");
    EXPECT_EQ(Text("Main window", "One", "d", 64, path), "'");
    EXPECT_EQ(Text("Main window", "Two", "d", 64, path), "");
    EXPECT_EQ(Text("Main window", "Empty", "d", 64, path), "");
    EXPECT_EQ(Text("Main window", "Bare", "d", 64, path), "d");
    EXPECT_EQ(Text("Main window", "Nul", "d", 64, path), "a");
    EXPECT_EQ(Text("Main window", "Other", "d", 64, path), "d");  // second section of the name
    EXPECT_EQ(Text("Main window", "InBroken", "d", 64, path), "2");
    EXPECT_EQ(Text("Lf", "A", "d", 64, path), "lf");
    EXPECT_EQ(Text("Lf", "B", "d", 64, path), "cr");
    // Cut to size-1; a cut quoted value keeps the opening quote only when
    // the closing one does not fit either.
    EXPECT_EQ(Text("Main window", "Font name", "d", 5, path), "Cour");
    EXPECT_EQ(Text("Main window", "Key", "d", 7, path), "first");
    EXPECT_EQ(Text("Main window", "Q", "d", 8, path), "quoted");
    EXPECT_EQ(Text("Main window", "Q", "d", 7, path), "quote");
    EXPECT_EQ(Text("Main window", "Q", "d", 1, path), "");
    // Defaults lose trailing spaces and quotes.
    EXPECT_EQ(Text("Main window", "Nope", "def  ", 64, path), "def");
    EXPECT_EQ(Text("Nope", "Key", "'COM1'", 64, path), "COM1");
    EXPECT_EQ(Text("Main window", "Key", "d", 64, files.Path("absent.ini")), "d");
    char untouched[2] = {'*', '*'};
    EXPECT_EQ(IniGetString("Main window", "Key", "d", untouched, 0, path.c_str()), 0);
    EXPECT_EQ(untouched[0], '*');
}

TEST(IniFile, WriteChangesOnlyItsKey) {
    ScratchFiles files;
    std::string path = files.Path("write.ini");
    EXPECT_EQ(IniWriteString("Main window", "Width", "640", path.c_str()), 1);
    EXPECT_EQ(ReadFileBytes(path), "[Main window]\r\nWidth=640\r\n");

    Put(path,
        "; VELDOR\r\n[Main window]\r\nOrigin X = 12 \r\nWidth=800\r\n\r\n"
        "[Listing]\r\nFontName=Arial\r\n\r\n");
    EXPECT_EQ(IniWriteString("main window", "WIDTH", "640", path.c_str()), 1);
    EXPECT_EQ(IniWriteString("Main window", "Height", "480", path.c_str()), 1);
    EXPECT_EQ(IniWriteString("Listing", "Decimal places", "-1", path.c_str()), 1);
    EXPECT_EQ(IniWriteString("General", "Averaging", "1", path.c_str()), 1);
    EXPECT_EQ(IniWriteString("Main window", "Origin X", " -5 ", path.c_str()), 1);
    EXPECT_EQ(ReadFileBytes(path),
              "; VELDOR\r\n[Main window]\r\nOrigin X=-5\r\nWidth=640\r\nHeight=480\r\n"
              "\r\n[Listing]\r\nFontName=Arial\r\nDecimal places=-1\r\n\r\n"
              "[General]\r\nAveraging=1\r\n");
    EXPECT_EQ(IniGetInt("Listing", "Decimal places", 1, path.c_str()), -1);

    // Line ends follow the file; a last line without one gets one first.
    Put(path, "[Plot]\nChannel=2");
    EXPECT_EQ(IniWriteString("Plot", "Dot size", "7", path.c_str()), 1);
    EXPECT_EQ(IniWriteString("Chart", "Channel", "3", path.c_str()), 1);
    EXPECT_EQ(ReadFileBytes(path), "[Plot]\nChannel=2\nDot size=7\n[Chart]\nChannel=3\n");

    std::string nowhere = files.Path("no-such-folder");
    EXPECT_EQ(IniWriteString("A", "B", "C", (nowhere + "/x.ini").c_str()), 0);
    EXPECT_EQ(ReadFileBytes(nowhere + "/x.ini"), "<missing>");
}

// clang-format off
const IntSetting* const kIntSettings[] = {
    &KeyMainOriginX, &KeyMainOriginY, &KeyMainWidth, &KeyMainHeight, &KeyMainMaximised,
    &KeyShowListing, &KeyShowPlot, &KeyShowChart, &KeyShowTags, &KeyListingLatLong, &KeyListingSign,
    &KeyListingDecimalPlaces, &KeyListingFontSize, &KeyListingFileLatLong, &KeyListingFileSign,
    &KeyListingFileDecimalPlaces, &KeyListingFileSeparator, &KeyPrintListingLatLong,
    &KeyPrintListingSign, &KeyPrintListingDecimalPlaces, &KeyPrintListingDate,
    &KeyPrintListingFiles, &KeyPrintListingStats, &KeyPlotChannel, &KeyPlotFontSize,
    &KeyPlotScaleConfirm, &KeyPlotScaleAspect, &KeyPlotScaleDotSize, &KeyChartChannel,
    &KeyChartFontSize, &KeyTagsOriginX, &KeyTagsOriginY, &KeyRecordIntervalSeconds,
    &KeyRecordIntervalMeters, &KeyRecordIntervalInMeters, &KeyAutosaveEnable, &KeyAutosaveInterval,
    &KeyAveraging, &KeyShowPath, &KeyLoadStoredData, &KeyCheckStoredData, &KeyPlotCurrentPosition,
    &KeyMaxPlotTime, &KeyEarthRadius, &KeyGpsUtcOffset, &KeyGpsLatDeg, &KeyGpsLatMin,
    &KeyGpsLongDeg, &KeyGpsLongMin, &KeyGpsDiffEnable, &KeyAr3000aEnable, &KeyAr3000aAttOn[0],
    &KeyAr3000aAttOn[1], &KeyAr3000aAttOn[2], &KeyAr3000aAttOn[3], &KeyTzrEnable,
    &KeyTzrInitialChannel, &KeyTzrNumberOfChannels, &KeyTzrIncrementChannel, &KeyTzrInputChannel,
    &KeySetupStatus,
};
// clang-format on
const TextSetting* const kTextSettings[] = {
    &KeyListingFontName,    &KeyPlotPowerBreak1,    &KeyPlotPowerBreak2,    &KeyPlotPowerBreak3,
    &KeyPlotDotSize,        &KeyPlotFontName,       &KeyPlotScaleTlLat,     &KeyPlotScaleTlLong,
    &KeyPlotScaleBrLat,     &KeyPlotScaleBrLong,    &KeyPlotScaleTlX,       &KeyPlotScaleTlY,
    &KeyPlotScaleBrX,       &KeyPlotScaleBrY,       &KeyChartFontName,      &KeyCalibrationFile[0],
    &KeyCalibrationFile[1], &KeyCalibrationFile[2], &KeyCalibrationFile[3], &KeyPcPort,
    &KeyGpsLatNS,           &KeyGpsLatSec,          &KeyGpsLongEW,          &KeyGpsLongSec,
    &KeyGpsDiffBaudRate,    &KeyAr3000aBaudRate,    &KeyAr3000aFreq[0],     &KeyAr3000aFreq[1],
    &KeyAr3000aFreq[2],     &KeyAr3000aFreq[3],     &KeyAr3000aMode[0],     &KeyAr3000aMode[1],
    &KeyAr3000aMode[2],     &KeyAr3000aMode[3],
};

// A missing file gives every key of the tables its default. A settings file
// as operators and earlier runs have it: every key is found under its name,
// and a text is cut to its length.
TEST(SettingsFile, EveryKeyReadsItsDefaultAndIsFoundUnderItsName) {
    ResetFakeWorld();
    char text[300];
    for (const IntSetting* s : kIntSettings) EXPECT_EQ(ReadSetting(*s), s->defaultValue) << s->key;
    for (const TextSetting* s : kTextSettings) {
        ReadSetting(*s, text, sizeof text);
        EXPECT_STREQ(text, s->defaultValue) << s->key;
    }
    EXPECT_EQ(ReadSettingWithDefault(KeyTzrEnable, TzrEnableDefaultAtPortOpen), 1);
    EXPECT_EQ(ReadWindowPlace("Listing", "Origin X"), SettingNotStored);
    EXPECT_EQ(WriteSettingInt(KeyListingDecimalPlaces, -1), 1);
    EXPECT_EQ(ReadSetting(KeyListingDecimalPlaces), -1);

    Put(settingsPath,
        "[Main window]\nOrigin X=17\nOrigin Y=17\nWidth=17\nHeight=17\nMaximised=17\n"
        "Show listing=17\nShow plot=17\nShow chart=17\nShow tags=17\n"
        "[Listing]\nLat/Long=17\nSign=17\nDecimal places=17\nFontName=17\nFontSize=17\n"
        "[Listing File]\nLat/Long=17\nSign=17\nDecimal places=17\nSeparator=17\n"
        "[Print Listing]\nLat/Long=17\nSign=17\nDecimal places=17\nDate=17\nFiles=17\nStats=17\n"
        "[Plot]\nChannel=17\nPower break 1=17\nPower break 2=17\nPower break 3=17\n"
        "Dot size=17\nFontName=17\nFontSize=17\n"
        "[Plot scale]\nTL Lat=17\nTL Long=17\nBR Lat=17\nBR Long=17\nTL X=17\nTL Y=17\n"
        "BR X=17\nBR Y=17\nConfirm=17\nAspect 1:1=17\nDot size=17\n"
        "[Chart]\nChannel=17\nFontName=17\nFontSize=17\n"
        "[Text Tags]\nOrigin X=17\nOrigin Y=17\n"
        "[General]\nRecord Interval Seconds=17\nRecord Interval Meters=17\n"
        "Record Interval in Meters=17\nAutosave Enable=17\nAutosave Interval=17\nAveraging=17\n"
        "Show Path=17\nLoad stored data=17\nCheck stored data=17\nPlot Current Position=17\n"
        "Max plot time=17\nEarth Radius (km)=17\n"
        "[Calibration]\nCh1 filename=17\nCh2 filename=17\nCh3 filename=17\nCh4 filename=17\n"
        "[Port]\nPC Port=17\n"
        "[GPS Set]\nUTC Offset=17\nLat N/S=17\nLat Deg=17\nLat Min=17\nLat Sec=17\n"
        "Long E/W=17\nLong Deg=17\nLong Min=17\nLong Sec=17\n"
        "[GPS Diff]\nEnable GPS Diff mode=17\nBaud Rate=17\n"
        "[AR3000A]\nEnable AR3000A mode=17\nBaud Rate=17\nCh1 Freq=17\nCh2 Freq=17\n"
        "Ch3 Freq=17\nCh4 Freq=17\nCh1 Mode=17\nCh2 Mode=17\nCh3 Mode=17\nCh4 Mode=17\n"
        "Ch1 Att on=17\nCh2 Att on=17\nCh3 Att on=17\nCh4 Att on=17\n"
        "[TZR4100]\nEnable TZR4100 mode=17\nInital channel=17\nNumber of channels=17\n"
        "Incriment channel=17\nInput channel=17\n"
        "[Setup]\nStatus=17\n");
    for (const IntSetting* s : kIntSettings) {
        EXPECT_EQ(ReadSetting(*s), 17) << s->section << "/" << s->key;
    }
    for (const TextSetting* s : kTextSettings) {
        ReadSetting(*s, text, sizeof text);
        EXPECT_STREQ(text, s->maxLength == 1 ? "1" : "17") << s->section << "/" << s->key;
    }
    remove(settingsPath);
}

#ifdef _WIN32
// The stand-in against the real calls: the same odd files read the same, and
// the same writes leave files that read the same through either.

struct Query {
    const char* section;
    const char* key;
};
// clang-format off
const Query kQueries[] = {
    {"Main window", "Origin X"}, {"MAIN WINDOW", "width"}, {"Main window", "Height"},
    {"Main window", "Maximised"}, {"Main window", ";Height"}, {" listing ", "Decimal places"},
    {"Listing", "FontName"}, {"Listing", "FontSize"}, {"Listing", "Sign"}, {"Listing", "Lat/Long"},
    {"Listing", "New key"}, {"Plot", "Power break 1"}, {"Plot", "Dot size"}, {"Plot", "Channel"},
    {"Plot scale", "TL X"}, {"Plot scale", "TL Lat"}, {"Plot scale", "BR Lat"},
    {"Plot scale", "Confirm"}, {"General", "Record Interval Seconds"},
    {"General", "Autosave Interval"}, {"General", "PC Port"}, {"General", "[Port"},
    {"Port", "PC Port"}, {"GPS Set", "Lat N/S"}, {"GPS Set", "UTC Offset"}, {"GPS Set", "Long E/W"},
    {"", "junk before"}, {"", "; comment"}, {"", "Top"}, {"New Section", "K"}, {"Nope", "Width"},
    {"Main window", "Nope"},
};
// clang-format on

// Compares every query read by the stand-in from one file with the real calls
// on another.
void ExpectSameReads(const std::string& ours, const std::string& theirs) {
    const struct {
        const char* def;
        int size;
    } reads[] = {{"dflt", 64}, {"'q'  ", 5}, {"dflt", 1}};
    for (const Query& q : kQueries) {
        SCOPED_TRACE(std::string(q.section) + "/" + q.key);
        for (const auto& r : reads) {
            char a[80];
            char b[80];
            int na = IniGetString(q.section, q.key, r.def, a, r.size, ours.c_str());
            int nb = GetPrivateProfileStringA(q.section, q.key, r.def, b, r.size, theirs.c_str());
            EXPECT_EQ(na, nb);
            EXPECT_EQ(std::string(a), std::string(b));
        }
        const int defaults[] = {-7, SettingNotStored};
        for (int d : defaults) {
            EXPECT_EQ(IniGetInt(q.section, q.key, d, ours.c_str()),
                      static_cast<int>(GetPrivateProfileIntA(q.section, q.key, d, theirs.c_str())));
        }
    }
}

TEST(IniFile, MatchesTheWindowsProfileCalls) {
    std::string noise = "x";
    unsigned seed = 12345;
    int top = GetACP() == 1252 ? 256 : 128;  // bytes that a single-byte code page keeps
    for (int i = 0; i < 4000; i++) {
        seed = seed * 1103515245u + 12345u;
        noise += static_cast<char>((seed >> 16) % top);
    }
    const std::string contents[] = {
        std::string("; comment=0\r\n[Main Window]\r\n  origin x = 12 \r\nWIDTH=-1\r\nWidth=99\r\n"
                    "Height = 12abc\r\n;Height=5\r\nMaximised\r\n\r\n[ listing ]\r\n"
                    "Decimal places=-1\r\nFontName = \"Courier New\" \r\nFontSize='9\r\n"
                    "Sign=0x10\r\nLat/Long=\r\n[LISTING]\r\nLat/Long=4\r\n[Plot]\r\n"
                    "Power break 1 = 80.5\r\nDot size=\"\"\r\nChannel=+3\r\n[Plot scale]\r\n"
                    "TL X=99999999999\r\nTL Lat='12'x'\r\nBR Lat=\"\r\nConfirm= 2147483648"),
        Bytes("junk before=1\n[General]\rRecord Interval Seconds=10\0 x\n"
              "Autosave Interval=\x01\x02 7\n\xff\xfe\x80=\x90\n[Port\nPC Port=COM9\n"
              "[GPS Set]\nLat N/S= S \nUTC Offset=-12") +
            std::string(3000, 'x') + "\nLong E/W=W\x1a\n",
        "",
        noise,
    };
    struct Write {
        const char* section;
        const char* key;
        const char* value;
    };
    // clang-format off
    const Write writes[] = {
        {"Main window", "Width", "640"}, {"LISTING", "fontname", " Arial Black "},
        {"Listing", "New key", "1"}, {"New Section", "K", "v"}, {"main window", "Maximised", "1"},
        {"General", "Record Interval Seconds", "15"}, {"Plot scale", "TL Lat", "'3'"},
        {"Port", "PC Port", "COM2"}, {"", "Top", "1"},
    };
    // clang-format on
    ScratchFiles files;
    for (size_t c = 0; c <= sizeof contents / sizeof contents[0]; c++) {
        SCOPED_TRACE("file " + std::to_string(c));
        std::string ours = files.Path("ours.ini");
        std::string theirs = files.Path("theirs.ini");
        if (c < sizeof contents / sizeof contents[0]) {  // the last round has no file
            Put(ours, contents[c]);
            Put(theirs, contents[c]);
        }
        ExpectSameReads(ours, ours);
        for (const Write& w : writes) {
            EXPECT_EQ(
                IniWriteString(w.section, w.key, w.value, ours.c_str()),
                WritePrivateProfileStringA(w.section, w.key, w.value, theirs.c_str()) ? 1 : 0);
        }
        ExpectSameReads(ours, theirs);
    }
}
#endif

}  // namespace
