#pragma once

#include <string>

/// How far two pictures are apart, channel by channel in steps of 1/255.
struct PictureDifference {
    bool areComparable = false; ///< both could be loaded and have the same size
    int maximum = 0;
    double mean = 0;
};

/// Compares two picture files. When they are comparable, writes a picture of the differences, eight times as strong.
PictureDifference comparePictures(const std::string& actual, const std::string& expected,
                                  const std::string& differenceFile);
