// Stdio behind the names by which presets and banks are read and written.
//
// A transfer that falls short goes unreported. The editors' thread only.
#pragma once

#include <cstdint>
#include <cstdio>

// An open file; null means no file, which every function accepts.
using XPlatFile = std::FILE*;

// What a joined path may hold, terminator included.
inline constexpr std::size_t kXPlatPathSize = 512;

// Opens the file `dir` + `name` (`dir` ends with a slash): creates or truncates
// it when `write` is true, else opens an existing file that may also be written
// to. Stores the handle in *file and returns it; null when it cannot be opened
// or the joined path is longer than 511 characters.
XPlatFile XPlatFileOpen(const char* name, const char* dir, XPlatFile* file, bool write);
void XPlatFileRead(XPlatFile file, void* buffer, std::int32_t length);
void XPlatFileWrite(XPlatFile file, const void* buffer, std::int32_t length);
void XPlatFileClose(XPlatFile file);

// Copies what follows the last slash of `path` into `name` and the rest, slash
// included, into `dir`. Without a slash both stay as they are. The buffers must
// be large enough.
void XPlatGetFileNameAndDir(const char* path, char* name, char* dir);

// A float store that keeps nothing: reading answers the default.
void setPrefValue(const char* key, float value);
float getPrefValue(const char* key, float defaultValue);
