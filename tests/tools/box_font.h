#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

/// A TrueType font made by a test: each character is one box, or empty. At size 16 a unit is a pixel, and no hint moves
/// an edge, so that a test knows all pixels. Positions count from the pen on the baseline, with y upwards.
struct BoxCharacter {
    char code;
    int left;
    int bottom;
    int right; // == left: the character is empty
    int top;
    int advance;
};

class BoxFont {
public:
    static constexpr int ascent = 12;
    static constexpr int descent = -4;

    explicit BoxFont(std::vector<BoxCharacter> characters) : characters(std::move(characters)) {}

    /// The bytes of the file.
    std::string make() const
    {
        const Tables tables = {
            {"cmap", makeCharacterMap()}, {"glyf", makeOutlines()}, {"head", makeHead()},
            {"hhea", makeLineMetrics()},  {"hmtx", makeMetrics()},  {"loca", makeLocations()},
            {"maxp", makeProfile()},      {"prep", makeProgram()},
        };
        std::string file = long32(0x00010000) + words({static_cast<int>(tables.size()), 0, 0, 0});
        std::size_t offset = file.size() + 16 * tables.size();
        for (const auto& [name, bytes] : tables) {
            file += name + long32(0) + long32(offset) + long32(bytes.size());
            offset += bytes.size();
        }
        for (const auto& [name, bytes] : tables) file += bytes;
        return file;
    }

private:
    using Tables = std::vector<std::pair<std::string, std::string>>;

    static constexpr int unitsPerEm = 16;
    static constexpr int outlineSize = 34;
    static constexpr int firstCode = 32;
    static constexpr int codeCount = 95;

    static std::string long32(std::size_t value)
    {
        std::string bytes;
        for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift & 0xFF);
        return bytes;
    }

    static std::string words(const std::vector<int>& values)
    {
        std::string bytes;
        for (const int value : values) {
            bytes += static_cast<char>(value >> 8 & 0xFF);
            bytes += static_cast<char>(value & 0xFF);
        }
        return bytes;
    }

    int countGlyphs() const { return static_cast<int>(characters.size()) + 1; } // glyph 0 stands for unknown ones

    std::string makeCharacterMap() const
    {
        std::vector<int> glyphs(codeCount, 0);
        for (std::size_t i = 0; i < characters.size(); ++i)
            glyphs.at(static_cast<std::size_t>(characters[i].code - firstCode)) = static_cast<int>(i) + 1;
        return words({0, 1, 3, 1}) + long32(12) + words({6, 10 + 2 * codeCount, 0, firstCode, codeCount}) +
               words(glyphs);
    }

    std::string makeOutlines() const
    {
        std::string bytes;
        for (const BoxCharacter& box : characters) {
            if (box.right == box.left) continue;
            const int width = box.right - box.left;
            const int height = box.top - box.bottom;
            bytes += words({1, box.left, box.bottom, box.right, box.top, 3, 0});
            bytes += std::string(4, '\1'); // points on the curve, each as far from the last as two words say
            bytes += words({box.left, 0, width, 0}) + words({box.bottom, height, 0, -height});
        }
        return bytes;
    }

    static std::string makeHead()
    {
        return long32(0x00010000) + long32(0x00010000) + long32(0) + long32(0x5F0F3CF5) + words({0, unitsPerEm}) +
               std::string(16, '\0') + words({-32, -32, 32, 32, 0, 4, 2, 0, 0});
    }

    std::string makeLineMetrics() const
    {
        return long32(0x00010000) + words({ascent, descent, 0, 32, 0, 0, 32, 1, 0, 0, 0, 0, 0, 0, 0, countGlyphs()});
    }

    std::string makeMetrics() const
    {
        std::string bytes = words({8, 0});
        for (const BoxCharacter& box : characters) bytes += words({box.advance, box.left});
        return bytes;
    }

    std::string makeLocations() const
    {
        std::vector<int> halves = {0, 0};
        for (const BoxCharacter& box : characters)
            halves.push_back(halves.back() + (box.right == box.left ? 0 : outlineSize / 2));
        return words(halves);
    }

    std::string makeProfile() const
    {
        return long32(0x00010000) + words({countGlyphs(), 4, 1, 0, 0, 2, 0, 0, 0, 0, 8, 0, 0, 0});
    }

    /// Does nothing, but a font without programs would be hinted by the font library's own rules.
    static std::string makeProgram()
    {
        std::string program;
        for (int i = 0; i < 4; ++i) program += std::string("\xB0\0\x21", 3); // push and pop a byte
        return program;
    }

    std::vector<BoxCharacter> characters;
};
