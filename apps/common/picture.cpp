#include "picture.h"

#include "failure.h"

#include <xum/render/image.h>
#include <xum/render/render_target.h>
#include <xum/render/texture.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

std::unique_ptr<Image> takePicture(RenderDevice& device, const Vector2<int>& size,
                                   const std::function<void(RenderTarget*)>& draw)
{
    // Without alpha: blending would leave traces in it, as if the picture were to be seen through.
    const TextureFormat opaque(TextureFormat::UnsignedByte, 3);
    const OwnedTarget target(
        device.createRenderTarget(size.x, size.y, {opaque, TextureFormat(TextureFormat::Depth, 1)}), {&device});
    std::unique_ptr<Image> picture;
    if (target) {
        draw(target.get());
        picture.reset(target->getTexture(0)->toImage(true)); // what was drawn lies bottom row first
    }
    device.bindRenderTarget(nullptr, TargetBinding::Both);
    if (!picture) throw Failure(ExitStatus::PictureNotWritten, "not enough memory for the picture");
    return picture;
}

void writePicture(const Image& picture, const std::string& fileName)
{
    if (!picture.writeToFile(fileName))
        throw Failure(ExitStatus::PictureNotWritten, "cannot write the picture " + fileName);
}

std::string findFreePictureName()
{
    for (unsigned int number = 1;; ++number) {
        char name[32];
        std::snprintf(name, sizeof name, "screenshot-%03u.bmp", number);
        std::error_code failure;
        if (!std::filesystem::exists(name, failure)) return name;
    }
}
