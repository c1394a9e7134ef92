#include "storage/ini_file.h"

#include <errno.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

namespace {

// White space around names and values; ^Z is the old end-of-file mark.
bool IsBlank(unsigned char c) {
    return (c >= 0x09 && c <= 0x0d) || c == 0x1a || c == 0x20;
}

bool SameName(const char* a, int aLength, const char* b, int bLength) {
    if (aLength != bLength) return false;
    for (int i = 0; i < aLength; i++) {
        unsigned char x = static_cast<unsigned char>(a[i]);
        unsigned char y = static_cast<unsigned char>(b[i]);
        if (x >= 'A' && x <= 'Z') x = static_cast<unsigned char>(x - 'A' + 'a');
        if (y >= 'A' && y <= 'Z') y = static_cast<unsigned char>(y - 'A' + 'a');
        if (x != y) return false;
    }
    return true;
}

// A piece of text, not terminated.
struct Span {
    const char* text;
    int length;
};

Span Trim(const char* text, int length) {
    int start = 0;
    while (start < length && IsBlank(static_cast<unsigned char>(text[start]))) start++;
    while (length > start && IsBlank(static_cast<unsigned char>(text[length - 1]))) length--;
    return Span{text + start, length - start};
}

Span TrimString(const char* text) {
    return Trim(text, static_cast<int>(strlen(text)));
}

// A name or a value ends at a NUL byte, as the text it is kept in would.
int CutAtNul(const char* text, int length) {
    const void* nul = memchr(text, '\0', static_cast<size_t>(length));
    return nul ? static_cast<int>(static_cast<const char*>(nul) - text) : length;
}

// One line of the file: its first IniLineMax bytes and where it lies.
struct Line {
    char text[IniLineMax];
    int length;       // bytes kept in text
    long long start;  // file offset of the first byte
    long long end;    // file offset after the line end
    int hasEnd;       // 1 when CR, LF or CR LF ends it (0 at the end of the file)
    int crlf;         // 1 when it ends with CR LF
};

struct LineReader {
    FILE* file;
    long long offset;
};

// Opens the reading at the start of the text, after a UTF-8 byte-order mark.
void StartReading(LineReader* reader, FILE* file) {
    reader->file = file;
    reader->offset = 0;
    unsigned char mark[3];
    size_t got = fread(mark, 1, sizeof mark, file);
    if (got == 3 && mark[0] == 0xEF && mark[1] == 0xBB && mark[2] == 0xBF) {
        reader->offset = 3;
    } else {
        rewind(file);
    }
}

// 0 at the end of the file.
int ReadLine(LineReader* reader, Line* line) {
    int c = getc(reader->file);
    if (c == EOF) return 0;
    line->start = reader->offset;
    line->length = 0;
    line->hasEnd = 0;
    line->crlf = 0;
    while (c != EOF && c != '\n' && c != '\r') {
        if (line->length < IniLineMax) line->text[line->length++] = static_cast<char>(c);
        reader->offset++;
        c = getc(reader->file);
    }
    if (c == '\r') {
        reader->offset++;
        line->hasEnd = 1;
        c = getc(reader->file);
        if (c == '\n') {
            reader->offset++;
            line->crlf = 1;
        } else if (c != EOF) {
            ungetc(c, reader->file);
        }
    } else if (c == '\n') {
        reader->offset++;
        line->hasEnd = 1;
    }
    line->end = reader->offset;
    return 1;
}

enum LineKind { LINE_BLANK, LINE_SECTION, LINE_KEY };

struct LineParts {
    int kind;
    Span name;     // section or key name, cut at a NUL
    int nameEnd;   // index in the line after the key name, before any cut
    int hasValue;  // the key line has an "="
    Span value;    // cut at a NUL
};

void SplitLine(const Line& line, LineParts* parts) {
    Span all = Trim(line.text, line.length);
    parts->kind = LINE_BLANK;
    parts->hasValue = 0;
    parts->value = Span{all.text, 0};
    if (all.length == 0) return;
    if (all.text[0] == '[') {
        int close = all.length - 1;
        while (close > 0 && all.text[close] != ']') close--;
        if (close > 0) {
            parts->kind = LINE_SECTION;
            parts->name = Trim(all.text + 1, close - 1);
            parts->name.length = CutAtNul(parts->name.text, parts->name.length);
            return;
        }
    }
    parts->kind = LINE_KEY;
    const void* equals = memchr(all.text, '=', static_cast<size_t>(all.length));
    if (equals) {
        int at = static_cast<int>(static_cast<const char*>(equals) - all.text);
        parts->name = Trim(all.text, at);
        parts->hasValue = 1;
        parts->value = Trim(all.text + at + 1, all.length - at - 1);
        parts->value.length = CutAtNul(parts->value.text, parts->value.length);
    } else {
        parts->name = all;
    }
    parts->nameEnd = static_cast<int>(parts->name.text + parts->name.length - line.text);
    parts->name.length = CutAtNul(parts->name.text, parts->name.length);
}

// What a scan of the file found for one section and key.
struct Search {
    Span section;
    Span key;
    int keyFound;
    int hasValue;
    char value[IniLineMax + 1];
    int valueLength;
    long long keyNameEnd;  // file offset after the key's name
    long long keyTextEnd;  // file offset after the key line's text (before its line end)
    int sectionFound;
    long long insertAt;  // after the last line of the section that is not blank
    int insertNeedsEnd;  // that line has no line end
    long long fileEnd;
    int fileNeedsEnd;  // the file ends without a line end
    int crlf;          // the file's first line end is CR LF (or the file has none)
};

void StartSearch(Search* search, Span section, Span key) {
    memset(search, 0, sizeof *search);
    search->section = section;
    search->key = key;
    search->sectionFound = section.length == 0;  // the keys before the first head
    search->crlf = 1;
}

// Scans the file for the key; 0 on a read error.
int SearchFile(FILE* file, Search* search) {
    LineReader reader;
    StartReading(&reader, file);
    search->insertAt = reader.offset;
    int inSection = search->sectionFound;
    int sawLineEnd = 0;
    Line line;
    LineParts parts;
    while (ReadLine(&reader, &line)) {
        if (line.hasEnd && !sawLineEnd) {
            sawLineEnd = 1;
            search->crlf = line.crlf;
        }
        search->fileNeedsEnd = !line.hasEnd;
        SplitLine(line, &parts);
        if (parts.kind == LINE_BLANK) continue;
        if (parts.kind == LINE_SECTION) {
            if (inSection) break;  // a later section of the same name is never read
            if (SameName(parts.name.text, parts.name.length, search->section.text,
                         search->section.length)) {
                inSection = 1;
                search->sectionFound = 1;
                search->insertAt = line.end;
                search->insertNeedsEnd = !line.hasEnd;
            }
            continue;
        }
        if (!inSection) continue;
        search->insertAt = line.end;
        search->insertNeedsEnd = !line.hasEnd;
        if (SameName(parts.name.text, parts.name.length, search->key.text, search->key.length)) {
            search->keyFound = 1;
            search->hasValue = parts.hasValue;
            memcpy(search->value, parts.value.text, static_cast<size_t>(parts.value.length));
            search->valueLength = parts.value.length;
            search->value[search->valueLength] = '\0';
            search->keyNameEnd = line.start + parts.nameEnd;
            search->keyTextEnd = line.start + line.length;
            if (line.length == IniLineMax) {
                // The rest of an over-long line goes with it.
                search->keyTextEnd = line.end - (line.crlf ? 2 : line.hasEnd);
            }
            break;
        }
    }
    search->fileEnd = reader.offset;
    return !ferror(file);
}

// Copies text (no NULs inside) to buffer, cut to size-1 characters. Matching
// quotes around the text are dropped. When the value does not fit, the opening
// quote still goes; with a buffer just one short, the last character that fits
// goes in place of the closing quote, as the Windows calls do it.
int CopyValue(const char* text, int length, char* buffer, int size) {
    int quoted = 0;
    if (length >= 2 && (text[0] == '"' || text[0] == '\'') && text[length - 1] == text[0]) {
        text++;
        length--;
        quoted = 1;
    }
    int copied = length < size - 1 ? length : size - 1;
    memcpy(buffer, text, static_cast<size_t>(copied));
    buffer[copied] = '\0';
    if (quoted && size >= length && copied > 0) buffer[--copied] = '\0';
    return copied;
}

int ParseInt(const char* text) {
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
    while (*p != '\0' && *p <= ' ') p++;
    int negative = 0;
    if (*p == '+') {
        p++;
    } else if (*p == '-') {
        negative = 1;
        p++;
    }
    uint32_t base = 10;
    if (p[0] == '0' && (p[1] == 'x' || p[1] == 'o' || p[1] == 'b')) {
        base = p[1] == 'x' ? 16 : p[1] == 'o' ? 8 : 2;
        p += 2;
    }
    uint32_t total = 0;
    for (;; p++) {
        uint32_t digit;
        if (*p >= '0' && *p <= '9') {
            digit = *p - '0';
        } else if (*p >= 'a' && *p <= 'z') {
            digit = *p - 'a' + 10;
        } else if (*p >= 'A' && *p <= 'Z') {
            digit = *p - 'A' + 10;
        } else {
            break;
        }
        if (digit >= base) break;
        total = total * base + digit;
    }
    if (negative) total = 0u - total;
    // Two's complement, without relying on the conversion of large values.
    if (total <= 0x7FFFFFFFu) return static_cast<int>(total);
    return -static_cast<int>(~total) - 1;
}

int CopyBytes(FILE* in, FILE* out, long long count) {
    char chunk[4096];
    while (count > 0) {
        size_t want = count < static_cast<long long>(sizeof chunk) ? static_cast<size_t>(count)
                                                                   : sizeof chunk;
        size_t got = fread(chunk, 1, want, in);
        if (got == 0) return 0;
        if (out && fwrite(chunk, 1, got, out) != got) return 0;
        count -= static_cast<long long>(got);
    }
    return 1;
}

int CopyRest(FILE* in, FILE* out) {
    char chunk[4096];
    size_t got;
    while ((got = fread(chunk, 1, sizeof chunk, in)) > 0) {
        if (fwrite(chunk, 1, got, out) != got) return 0;
    }
    return !ferror(in);
}

int PutSpan(FILE* out, Span span) {
    return fwrite(span.text, 1, static_cast<size_t>(span.length), out) ==
           static_cast<size_t>(span.length);
}

int PutText(FILE* out, const char* text) {
    return fputs(text, out) >= 0;
}

}  // namespace

int IniGetString(const char* section, const char* key, const char* defaultValue, char* buffer,
                 int size, const char* path) {
    if (buffer == nullptr || size <= 0) return 0;
    if (defaultValue == nullptr) defaultValue = "";
    int defaultLength = static_cast<int>(strlen(defaultValue));
    while (defaultLength > 0 && defaultValue[defaultLength - 1] == ' ') defaultLength--;
    if (section != nullptr && key != nullptr && path != nullptr) {
        FILE* file = fopen(path, "rb");
        if (file != nullptr) {
            Search search;
            StartSearch(&search, TrimString(section), TrimString(key));
            int read = SearchFile(file, &search);
            fclose(file);
            if (read && search.keyFound && search.hasValue) {
                return CopyValue(search.value, search.valueLength, buffer, size);
            }
        }
    }
    return CopyValue(defaultValue, defaultLength, buffer, size);
}

int IniGetInt(const char* section, const char* key, int defaultValue, const char* path) {
    char text[30];
    if (IniGetString(section, key, "", text, sizeof text, path) == 0) return defaultValue;
    return ParseInt(text);
}

int IniWriteString(const char* section, const char* key, const char* value, const char* path) {
    if (section == nullptr || key == nullptr || value == nullptr || path == nullptr) return 0;
    char tempPath[300];
    int n = snprintf(tempPath, sizeof tempPath, "%s.new", path);
    if (n < 0 || n >= static_cast<int>(sizeof tempPath)) return 0;

    Span sectionName = TrimString(section);
    Span keyName = TrimString(key);
    Span text = TrimString(value);
    Search search;
    StartSearch(&search, sectionName, keyName);

    FILE* in = fopen(path, "rb");
    if (in == nullptr && errno != ENOENT) return 0;  // there but unreadable: keep it
    if (in != nullptr && !SearchFile(in, &search)) {
        fclose(in);
        return 0;
    }
    FILE* out = fopen(tempPath, "wb");
    if (out == nullptr) {
        if (in != nullptr) fclose(in);
        return 0;
    }
    const char* lineEnd = search.crlf ? "\r\n" : "\n";

    // The new text replaces the file's bytes from cutStart to cutEnd.
    long long cutStart;
    long long cutEnd;
    if (search.keyFound) {
        cutStart = search.keyNameEnd;
        cutEnd = search.keyTextEnd;
    } else if (search.sectionFound) {
        cutStart = cutEnd = search.insertAt;
    } else {
        cutStart = cutEnd = search.fileEnd;
    }

    int ok = 1;
    if (in != nullptr) {
        rewind(in);
        ok = CopyBytes(in, out, cutStart) && CopyBytes(in, nullptr, cutEnd - cutStart);
    }
    if (search.keyFound) {
        ok = ok && PutText(out, "=") && PutSpan(out, text);
    } else {
        if (search.sectionFound ? search.insertNeedsEnd : search.fileNeedsEnd) {
            ok = ok && PutText(out, lineEnd);
        }
        if (!search.sectionFound) {
            ok = ok && PutText(out, "[") && PutSpan(out, sectionName) && PutText(out, "]") &&
                 PutText(out, lineEnd);
        }
        ok = ok && PutSpan(out, keyName) && PutText(out, "=") && PutSpan(out, text) &&
             PutText(out, lineEnd);
    }
    if (in != nullptr) {
        ok = ok && CopyRest(in, out);
        fclose(in);
    }
    if (fclose(out) != 0) ok = 0;
    if (!ok) {
        remove(tempPath);
        return 0;
    }
    if (rename(tempPath, path) != 0) {
        // Some systems will not rename onto an existing file.
        remove(path);
        if (rename(tempPath, path) != 0) return 0;
    }
    return 1;
}
