#include "mesh_model.h"
#include "mesh_polygon.h"
#include "printable_text.h"

#include <tiny_obj_loader.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <sstream>
#include <string_view>
#include <unordered_map>

namespace {

constexpr std::string_view blanks = " \t";
constexpr int mostCorners = 2048; // of a face: the time to split it grows with the square, at best

[[noreturn]] void refuse(int line, const std::string& reason)
{
    throw ModelProblem("line " + std::to_string(line) + ": " + reason);
}

template <class Number>
bool isNumber(std::string_view word, Number& out)
{
    if (!word.empty() && word.front() == '+') word.remove_prefix(1);
    const auto [end, failure] = std::from_chars(word.data(), word.data() + word.size(), out);
    return failure == std::errc() && end == word.data() + word.size();
}

std::string_view takeWord(std::string_view& text)
{
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(blanks));
    text.remove_prefix(word.size());
    return word;
}

/// The loader takes what is no number for 0, and knows no lines. So each line is looked at before it gets them.
class ObjText {
public:
    explicit ObjText(const std::string& text)
    {
        if (text.find('\0') != std::string::npos) throw ModelProblem("is no text in UTF-8 or ASCII");
        int number = 1;
        int first = 1;
        std::string line;
        for (std::size_t at = text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0; at < text.size();) {
            const std::size_t end = std::min(text.find_first_of("\r\n", at), text.size());
            line.append(text, at, std::min(text.find('#', at), end) - at);
            at = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
            ++number;
            if (!line.empty() && line.back() == '\\' && at < text.size()) { // goes on in the next one
                line.back() = ' ';
                continue;
            }
            check(line, first);
            normalized += line + '\n';
            line.clear();
            first = number;
        }
    }

    const std::string& getText() const { return normalized; }

    /// Of each face in turn.
    const std::vector<int>& getFaceLines() const { return faceLines; }

    bool hasLinesOrPoints() const { return areLinesOrPointsSeen; }
    bool hasCurves() const { return areCurvesSeen; }

private:
    void check(std::string_view line, int number)
    {
        const std::string_view keyword = takeWord(line);
        if (keyword == "v")
            checkNumbers(line, 3, 3, number);
        else if (keyword == "vt")
            checkNumbers(line, 1, 2, number);
        else if (keyword == "f")
            checkFace(line, number);
        else if (keyword == "l" || keyword == "p")
            areLinesOrPointsSeen = true;
        else if (keyword == "curv" || keyword == "surf")
            areCurvesSeen = true;
    }

    static void checkNumbers(std::string_view line, int least, int most, int number)
    {
        for (int i = 0; i < most; ++i) {
            const std::string_view word = takeWord(line);
            double value = 0;
            if (word.empty() && i < least) refuse(number, "has too few numbers");
            if (word.empty()) return;
            if (!isNumber(word, value) || !std::isfinite(static_cast<float>(value)))
                refuse(number, "\"" + printable(word) + "\" is no number");
        }
    }

    void checkFace(std::string_view line, int number)
    {
        int count = 0;
        for (std::string_view word = takeWord(line); !word.empty(); word = takeWord(line)) {
            checkCorner(word, number);
            ++count;
        }
        if (count > mostCorners) refuse(number, "a face has more than " + std::to_string(mostCorners) + " corners");
        if (count != 0) faceLines.push_back(number);
    }

    /// POSITION, POSITION/COORDINATE, POSITION//NORMAL or POSITION/COORDINATE/NORMAL.
    static void checkCorner(std::string_view corner, int number)
    {
        std::string_view rest = corner;
        for (int part = 0; part < 3; ++part) {
            const std::size_t slash = rest.find('/');
            const std::string_view word = rest.substr(0, slash);
            int index = 0;
            const bool mayLack = part == 1 && slash != std::string_view::npos;
            if (!(word.empty() && mayLack) && (!isNumber(word, index) || index == 0)) break;
            if (slash == std::string_view::npos) return;
            rest.remove_prefix(slash + 1);
        }
        refuse(number, "\"" + printable(corner) + "\" is no corner of a face");
    }

    std::string normalized;
    std::vector<int> faceLines;
    bool areLinesOrPointsSeen = false;
    bool areCurvesSeen = false;
};

/// Collects what the loader calls out, with indexes from 0.
struct ObjParts {
    static constexpr int none = -1;

    struct Corner {
        int position;
        int textureCoordinate;
    };

    std::vector<Vector3<float>> positions;
    std::vector<Vector2<float>> textureCoordinates;
    std::vector<Corner> corners;
    std::vector<int> cornerCounts; // by face

    /// Negative ones count back from the last one so far. One that leads before the first stays out of range.
    static int resolve(int index, std::size_t count)
    {
        if (index > 0) return index - 1;
        const auto resolved = static_cast<std::int64_t>(count) + index;
        return resolved < 0 ? std::numeric_limits<int>::max() : static_cast<int>(resolved);
    }

    static ObjParts& of(void* parts) { return *static_cast<ObjParts*>(parts); }

    static void addPosition(void* parts, float x, float y, float z, float /*w*/)
    {
        of(parts).positions.emplace_back(x, y, z);
    }

    static void addTextureCoordinate(void* parts, float u, float v, float /*w*/)
    {
        of(parts).textureCoordinates.emplace_back(u, 1.0f - v); // v runs upwards in OBJ, downwards here
    }

    static void addFace(void* userData, tinyobj::index_t* indexes, int count)
    {
        ObjParts& parts = of(userData);
        for (int i = 0; i < count; ++i) {
            const int coordinate = indexes[i].texcoord_index;
            parts.corners.push_back({resolve(indexes[i].vertex_index, parts.positions.size()),
                                     coordinate == 0 ? none : resolve(coordinate, parts.textureCoordinates.size())});
        }
        parts.cornerCounts.push_back(count);
    }
};

/// Makes one vertex of each pair of a position and a texture coordinate, in the order in which faces name them.
class ObjFaces {
public:
    ObjFaces(const ObjParts& parts, const std::vector<int>& lines, Model& out) : parts(parts), lines(lines), out(out) {}

    void add()
    {
        std::size_t first = 0;
        int smallFaces = 0;
        for (std::size_t face = 0; face < parts.cornerCounts.size(); ++face) {
            const auto count = static_cast<std::size_t>(parts.cornerCounts[face]);
            check(first, count, lines.at(face));
            if (count < 3)
                ++smallFaces;
            else
                addFace(first, count);
            first += count;
        }
        if (smallFaces != 0) out.note("faces with fewer than 3 corners are left out: " + std::to_string(smallFaces));
    }

private:
    void check(std::size_t first, std::size_t count, int line) const
    {
        for (std::size_t i = first; i < first + count; ++i) {
            const ObjParts::Corner& corner = parts.corners[i];
            if (static_cast<std::size_t>(corner.position) >= parts.positions.size())
                refuse(line, "a corner has a position that is not there");
            if (corner.textureCoordinate != ObjParts::none &&
                static_cast<std::size_t>(corner.textureCoordinate) >= parts.textureCoordinates.size())
                refuse(line, "a corner has a texture coordinate that is not there");
        }
    }

    void addFace(std::size_t first, std::size_t count)
    {
        std::vector<Vector3<float>> places;
        std::vector<int> vertices;
        for (std::size_t i = first; i < first + count; ++i) {
            places.push_back(parts.positions[static_cast<std::size_t>(parts.corners[i].position)]);
            vertices.push_back(findOrAdd(parts.corners[i]));
        }
        const auto vertex = [&vertices](int corner) { return vertices[static_cast<std::size_t>(corner)]; };
        for (const auto& [a, b, c] : triangulate(places)) out.addTriangle(vertex(a), vertex(b), vertex(c));
    }

    int findOrAdd(const ObjParts::Corner& corner)
    {
        const auto key = static_cast<std::uint64_t>(static_cast<std::uint32_t>(corner.position)) << 32 |
                         static_cast<std::uint32_t>(corner.textureCoordinate);
        const auto found = vertices.find(key);
        if (found != vertices.end()) return found->second;
        const Vector2<float>* coordinate =
            corner.textureCoordinate == ObjParts::none
                ? nullptr
                : &parts.textureCoordinates[static_cast<std::size_t>(corner.textureCoordinate)];
        const int vertex = out.addVertex(parts.positions[static_cast<std::size_t>(corner.position)], coordinate);
        vertices.emplace(key, vertex);
        return vertex;
    }

    const ObjParts& parts;
    const std::vector<int>& lines;
    Model& out;
    std::unordered_map<std::uint64_t, int> vertices;
};

} // namespace

void readObjModel(const std::string& text, Model& out)
{
    const ObjText checked(text);
    ObjParts parts;
    tinyobj::callback_t callbacks;
    callbacks.vertex_cb = ObjParts::addPosition;
    callbacks.texcoord_cb = ObjParts::addTextureCoordinate;
    callbacks.index_cb = ObjParts::addFace;
    std::istringstream in(checked.getText());
    std::string problem;
    if (!tinyobj::LoadObjWithCallback(in, callbacks, &parts, nullptr, nullptr, &problem))
        throw ModelProblem("cannot be read: " + problem);
    ObjFaces(parts, checked.getFaceLines(), out).add();
    if (checked.hasLinesOrPoints()) out.note("lines and points are left out");
    if (checked.hasCurves()) out.note("curves and curved surfaces are left out");
}
