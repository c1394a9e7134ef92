// The survey data file (.DAT): the recording parameters, the calibration file
// names, the channel labels, every record and every text tag.
//
// Five versions exist; all are read, v1.4 is written. Little-endian, no gaps.
//
//   offset  v1.0  v1.1  v1.2  v1.3  v1.4
//   magic      0     0     0     0     0   26 bytes, "[VELDOR - data file v1.x]" + NUL
//   start     26    26    26    26    26   u32 seconds since 1970
//   seconds    -    30    30    30    30   i32 interval in seconds
//   meters     -     -    34    34    34   i32 interval in metres
//   distance   -     -    38    38    38   u8, 1 when recording by distance
//   input      -    34    39    39    39   u16 zero-based TZR4100 input channel
//   names     30    36    41    41    41   4 x 260 bytes, NUL-terminated
//   labels     -     -     -     -  1081   4 x 32 bytes, NUL-terminated
//   count   1070  1076  1081  1081  1209   i32 number of records
//   records 1074  1080  1085  1085  1213   14 bytes each up to v1.2, 18 from v1.3
//
// A record: flags, accessoryChannel, ch[0..3] (u8 each), latitude, longitude
// (i32 each) and, from v1.3, time (u32). From v1.2 the records are followed by
// the tag count (i32), the tags (i32 record index and 51 bytes of text each)
// and the trailer "[End]" + NUL.
#ifndef VELDOR_STORAGE_DATA_FILE_H
#define VELDOR_STORAGE_DATA_FILE_H

#include <stdint.h>

constexpr int DataFileVersions = 5;  // v1.0 .. v1.4
constexpr int DataFileMagicSize = 26;
constexpr int DataFileNameFieldSize = 260;
constexpr int DataFileLabelFieldSize = 32;
constexpr int DataFileTagTextSize = 51;
constexpr int DataFileTrailerSize = 6;
// v1.4 sizes: the fixed part (magic to record count, tag count and trailer),
// one record and one tag.
constexpr int DataFileEmptySize = 1223;
constexpr int DataFileRecordSize = 18;
constexpr int DataFileTagSize = 55;

// Writes the whole survey to dataFileName as v1.4. The bytes go to
// "<dataFileName>.tmp" first, which then replaces the file, so a save that
// fails part-way leaves the previous file as it was. Returns 1, or 0 after a
// message box: "Error opening file, data not saved" when the file can't be
// created, "Error writing file, data not saved" when writing or replacing
// fails.
int SaveDataFile();

// Reads the file named by dataFileName, replacing the records, the recording
// parameters, the tags (from v1.2) and the labels (v1.4), then runs the
// reconciliation on load and resets the Listing and Plot views. Returns 1, or
// 0 after a message box: "Error opening file\n'<path>'", "File '<path>'\n
// Incorrect format" (store untouched), or "File '<path>'\nFile corrupted"
// (no records, no tags, no calibration names left). Never touches
// STATUS_CHANGED.
int LoadDataFile();

#endif
