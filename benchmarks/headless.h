#pragma once

#include <cstdlib>

#ifdef __GLIBC__
#    include <malloc.h>
#endif

/// Quiet surroundings for a measurement, to be called first: no display and no sound card, the software rasteriser on
/// the calling thread (so that its time is counted), and an allocator that keeps what it once took: otherwise most of a
/// frame is page faults.
inline void prepareMeasurement()
{
#ifndef _WIN32
    setenv("SDL_VIDEODRIVER", "offscreen", 0);
    setenv("SDL_AUDIODRIVER", "dummy", 0);
    setenv("LP_NUM_THREADS", "0", 0);
#endif
#ifdef __GLIBC__
    mallopt(M_TRIM_THRESHOLD, 2000000000);
    mallopt(M_MMAP_THRESHOLD, 2000000000);
#endif
}
