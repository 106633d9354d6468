#pragma once

#include <gtest/gtest.h>

#include <string>

class Image;

/// How far a picture may be from its golden one, channel by channel in steps of 1/255.
struct PictureTolerance {
    int maximum = 0;
    double mean = 0;
};

/// What rounding in another renderer's arithmetic, or another rule for the pixels on an edge, makes of a picture.
constexpr PictureTolerance otherRenderer{64, 0.5};

/// Compares with tests/golden/NAME.bmp. On failure NAME-actual.bmp and NAME-difference.bmp lie in the directory golden
/// of the build folder, and the message says so. With XUM_UPDATE_GOLDEN=1 in the environment, as in the target
/// update-golden, it replaces the golden picture instead. That target runs the tests whose names contain
/// "drawsTheGoldenPicture"; a name without "GoldenPicture" is a failure, so that none is forgotten.
::testing::AssertionResult matchesGoldenPicture(const std::string& name, const Image& actual,
                                                const PictureTolerance& tolerance = {});

/// Exact with the renderer that drew the golden pictures, as tests/golden/renderer.txt names it, else otherRenderer.
/// `renderer` is what OpenGL says of itself. An update replaces the file.
PictureTolerance toleranceForRenderer(const std::string& renderer);
