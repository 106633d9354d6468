#pragma once

#include <xum/engine/export.h>

/// Where geometry objects write themselves. Values go over as they lie in memory, little-endian: 4 bytes for counts,
/// indices, integers and floats, 1 byte for flags and kinds, vectors component by component, a plane as its normal and
/// its distance, a sequence as its count and its elements. Slot order is ABI.
class XUM_API Serializer {
public:
    /// Asked once, behind a whole object: true when writing failed for good.
    virtual bool failed() = 0;

    /// Appends `size` bytes; none when that is negative.
    virtual void write(const char* data, int size) = 0;

protected:
    ~Serializer() = default;
};

/// Where geometry objects read themselves from, in the encoding of Serializer. Slot order is ABI.
class XUM_API Deserializer {
public:
    /// Asked once, behind a whole object: true when reading failed for good. The end of the data is no failure in this
    /// sense: who must notice truncated data checks what was read.
    virtual bool failed() = 0;

    /// Reads `size` bytes; none when that is negative. What the data have not is left as it was.
    virtual void read(char* data, int size) = 0;

protected:
    ~Deserializer() = default;
};
