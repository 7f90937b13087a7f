// Whole-file helpers on C standard streams: read a file into memory, read a text file into a
// UxString, replace a file with a text.
#pragma once

#include <cstdio>

#include "foundation/ux_string.h"

namespace typeprint::UxStreams {

// The C library's fopen on the two texts.
FILE* fopen(const UxString& path, const UxString& mode);

// Reads the whole file into a new malloc'ed block of length + 1 zeroed bytes, so the content is
// always followed by a NUL. 0 when every byte was read, -1 otherwise. `*data` is set whenever
// the block was allocated, even after a short read; the caller frees it.
int ReadWholeFile(const UxString& path, void** data, unsigned long* length);

// ReadWholeFile, then `*text` becomes the bytes before the first NUL, unchecked. On failure
// `*text` is left alone.
int ReadWholeUTF8File(const UxString& path, UxString* text);

// Removes any file at `path`, then writes every byte of `text` to a new one: 0, or -1.
int WriteWholeUTF8File(const UxString& path, const UxString& text);

// `*length` becomes the stream's length and the stream is rewound. -1 for a null stream;
// otherwise the errno of a failed rewind, else that of a failed seek to the end, else 0.
int GetFileLengthAndRewind(FILE* f, unsigned long* length);

}  // namespace typeprint::UxStreams
