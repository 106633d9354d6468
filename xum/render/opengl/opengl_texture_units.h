#pragma once

#include <array>

class Texture;

namespace OpenGL {

/// Which texture each unit of a device's context holds, to skip redundant binds. The device and its textures share it:
/// a texture that binds itself is known here too.
class TextureUnits {
public:
    static constexpr int count = 8;

    /// Makes the unit (0 to 7) active and binds the texture to it; skips what is so already.
    void bind(int unit, ::Texture* texture);

    /// Binds the texture to the unit that is active.
    void bindToActiveUnit(::Texture* texture) { bind(activeUnit, texture); }

    /// The next bind of any texture to any unit is then issued.
    void forgetAll() { bound.fill(nullptr); }

private:
    std::array<::Texture*, count> bound{};
    int activeUnit = 0;
};

} // namespace OpenGL
