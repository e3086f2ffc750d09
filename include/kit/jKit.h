#pragma once

#include <cstddef>
#include <cstdint>

#include "kit/jString.h"

// Small engine services that have no better home: file names, the engine's data folder, CRC.
class jKit {
public:
    // Returns the file name of a path with its extension: the text after the last '/' or '\\'
    // ("data/tracks/walk.anim" gives "walk.anim"); the whole text when there is no separator.
    static jString getFileName(const jString& path);

    // Sets the engine's data folder (absolute or relative to the working folder) that
    // convertToLocalPath makes paths relative to; an empty path means there is none.
    static void setDataPath(const jString& path);
    // Returns the data folder as given to setDataPath, normalised (empty when none was set).
    static const jString& getDataPath();

    // Returns a path chosen in a file dialog in the form the engine stores: '\\' becomes '/',
    // repeated separators, "." segments and resolvable ".." segments go, and a path inside the
    // data folder becomes relative to it ("<data>/tracks/walk.anim" gives "tracks/walk.anim").
    // A path outside the data folder is returned normalised but otherwise unchanged.
    static jString convertToLocalPath(const jString& path);
    // Returns a file reference in the form documents store it: an absolute path inside the data
    // folder (also through a symbolic link) becomes relative to it, as convertToLocalPath makes
    // it; any other path is returned exactly as given, so that a document read and saved again
    // keeps its bytes.
    static jString convertToStoredPath(const jString& path);
    // Returns the path with the separators and segments tidied as convertToLocalPath does.
    static jString normalizePath(const jString& path);

    // Returns the CRC-32 (the ISO-HDLC/zlib polynomial, "123456789" gives 0xCBF43926) of size
    // bytes. Passing the CRC of the bytes before as previous continues it over a stream.
    static uint32_t crc32(const void* data, size_t size, uint32_t previous = 0);
};
