#pragma once

#include <memory>
#include <string>

class Image;

/// How far two pictures are apart, channel by channel in steps of 1/255.
struct PictureDifference {
    bool areComparable = false; ///< both are there and have the same size
    int maximum = 0;
    double mean = 0;

    /// Shows where they differ, eight times as strong and opaque; a difference in alpha is grey. Null when they cannot
    /// be compared.
    std::shared_ptr<Image> picture;
};

PictureDifference comparePictures(const Image& a, const Image& b);

/// Compares two picture files. When they are comparable, writes the picture of the differences.
PictureDifference comparePictures(const std::string& actual, const std::string& expected,
                                  const std::string& differenceFile);
