// A portable private-profile file: "[Section]" heads and "Key=Value" lines,
// read and written key by key the way GetPrivateProfileIntA,
// GetPrivateProfileStringA and WritePrivateProfileStringA do it.
//
// Reading: section and key names are matched without regard to case (ASCII),
// with white space (tab, LF, VT, FF, CR, space, ^Z) trimmed around names and
// values. Only the first section of a name is searched, and the first key of
// a name in it counts; a line without "=" hides a later key of its name and
// reads as absent. Lines end at CR or LF. A value in matching single or
// double quotes loses them. A line longer than IniLineMax bytes is judged by
// its first IniLineMax bytes. Bad files never cause a message.
//
// Writing: the file is rewritten through a temporary file beside it and is in
// place when the call returns. A key that exists gets its new value on its
// own line; a new key goes after the last line of its section; a new section
// goes at the end of the file. Every other byte of the file stays as it was.
#ifndef VELDOR_STORAGE_INI_FILE_H
#define VELDOR_STORAGE_INI_FILE_H

// Bytes of one line that are looked at.
constexpr int IniLineMax = 1024;

// The value as a number: optional sign, then decimal digits, or "0x", "0o",
// "0b" for hexadecimal, octal and binary; parsing stops at the first other
// character and wraps around at 32 bits. Only the first 29 characters of the
// value are parsed. defaultValue when the key, its value or the file is
// missing.
int IniGetInt(const char* section, const char* key, int defaultValue, const char* path);

// Copies the value (or the default, without its trailing spaces) cut to
// size-1 characters and terminated; returns the number of characters copied.
// A key with an empty value reads as the empty text, not as the default.
int IniGetString(const char* section, const char* key, const char* defaultValue, char* buffer,
                 int size, const char* path);

// Sets one key, creating the file and the section as needed; 1 on success.
// Names and value are stored without surrounding white space.
int IniWriteString(const char* section, const char* key, const char* value, const char* path);

#endif
