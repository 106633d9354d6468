#pragma once

#include "byte_text.h"

#include <string>

// Written by hand from the tables of the formats; the same bytes are in files/. Two leaves share the first brush.

/// files/two_leaves.bsp: a BSP mesh of 163 bytes.
inline const std::string twoLeavesBytes = bytesOf("0000803f 000000c0 0000003f"          // 0: origin 1, -2, 0.5
                                                  "02000000"                            // 12: two brushes
                                                  "00000000 01000000"                   // 16: number 0, one plane
                                                  "00000000 00000000 0000803f 00008040" // 24: z at 4
                                                  "c8"                                  // 40: kind 200
                                                  "01000000 00000000 07" // 41: number 1, no planes, kind 7
                                                  "00"                   // 50: inner node
                                                  "0000803f 00000000 00000000 00000041" // 51: x at 8
                                                  "01 01"                               // 67: leaf of kind true
                                                  "02000000 00000000 01000000"          // 69: both brushes
                                                  "01000000 03000000"                   // 81: a polygon of 3 vertices
                                                  "00001041 0000803f 00000000 00000000 00000000" // 89: 9,1,0; 0,0
                                                  "00001041 00000040 00000000 0000803f 00000000" // 109: 9,2,0; 1,0
                                                  "00001041 00000040 00004040 0000803f 0000803e" // 129: 9,2,3; 1,1/4
                                                  "01 00"             // 149: leaf of kind false
                                                  "01000000 00000000" // 151: the first brush
                                                  "00000000");        // 159: no polygons

/// An empty leaf alone, at 0, 0, 0: the smallest mesh.
inline const std::string emptyLeafBytes = bytesOf("00000000 00000000 00000000" // origin
                                                  "00000000"                   // no brushes
                                                  "01 00"                      // leaf of kind false
                                                  "00000000 00000000");        // no brushes, no polygons

/// files/level.map: a compiled map of 221 bytes with both meshes.
inline const std::string levelBytes = bytesOf("21 58 75 6d 4d 61 70"    // 0: !XumMap
                                              "00 00000000"             // 7: nothing
                                              "05000000 4c 65 76 65 6c" // 12: Level
                                              "03000000 73 6b 79"       // 21: sky
                                              "02000000") +             // 28: two meshes
                                      twoLeavesBytes +
                                      emptyLeafBytes;
