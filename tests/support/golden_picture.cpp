#include "golden_picture.h"

#include "compare_pictures.h"
#include "file_contents.h"

#include <xum/render/image.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace {

namespace fs = std::filesystem;

const std::string goldenDirectory = XUM_GOLDEN_DIRECTORY "/";
const std::string resultDirectory = XUM_GOLDEN_RESULT_DIRECTORY "/";

bool isUpdate()
{
    const char* value = std::getenv("XUM_UPDATE_GOLDEN");
    return value != nullptr && std::string(value) == "1";
}

::testing::AssertionResult updateGoldenPicture(const std::string& golden, const Image& actual)
{
    if (!actual.writeToFile(golden)) return ::testing::AssertionFailure() << "cannot write " << golden;
    return ::testing::AssertionSuccess();
}

} // namespace

::testing::AssertionResult matchesGoldenPicture(const std::string& name, const Image& actual,
                                                const PictureTolerance& tolerance)
{
    const std::string test = ::testing::UnitTest::GetInstance()->current_test_info()->name();
    if (test.find("GoldenPicture") == std::string::npos)
        return ::testing::AssertionFailure() << "a test that compares with a golden picture says so in its name";
    const std::string golden = goldenDirectory + name + ".bmp";
    if (isUpdate()) return updateGoldenPicture(golden, actual);

    const std::string actualFile = resultDirectory + name + "-actual.bmp";
    const std::string differenceFile = resultDirectory + name + "-difference.bmp";
    fs::remove(actualFile); // of an earlier failure
    fs::remove(differenceFile);
    const std::unique_ptr<Image> expected(fs::exists(golden) ? loadImage(golden) : nullptr);
    const PictureDifference difference = expected ? comparePictures(actual, *expected) : PictureDifference();
    if (difference.areComparable && difference.maximum <= tolerance.maximum && difference.mean <= tolerance.mean)
        return ::testing::AssertionSuccess();

    fs::create_directories(resultDirectory);
    actual.writeToFile(actualFile);
    ::testing::AssertionResult failure = ::testing::AssertionFailure() << "look at " << actualFile;
    if (!expected) return failure << ": there is no golden picture " << golden << " (update-golden makes it)";
    if (!difference.areComparable)
        return failure << ": " << actual.getWidth() << 'x' << actual.getHeight() << " instead of "
                       << expected->getWidth() << 'x' << expected->getHeight() << " pixels";
    difference.picture->writeToFile(differenceFile);
    return failure << " and " << differenceFile << ": up to " << difference.maximum << " (" << tolerance.maximum
                   << " is allowed) and " << difference.mean << " on average (" << tolerance.mean << ") from "
                   << golden;
}

PictureTolerance toleranceForRenderer(const std::string& renderer)
{
    const std::string file = goldenDirectory + "renderer.txt";
    if (isUpdate()) writeFileContents(file, renderer + "\n");
    return fileContents(file) == renderer + "\n" ? PictureTolerance() : otherRenderer;
}
