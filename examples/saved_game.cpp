// A saved game: objects that write themselves to a file and read themselves from it, byte by byte the same on every
// machine. The random table makes the same game in every run.
//
//     saved_game [FILE]
#include <xum/xum.h>

#include <cstdlib>
#include <iostream>

namespace {

constexpr int magic = 0x45564153; // "SAVE"
constexpr int largestCount = 1000;

struct Monster {
    Position place; // on a grid, in whole numbers
    Fixed health;   // the last 8 bits are fraction

    void write(Serializer& out) const
    {
        for (const std::int32_t value : {place.x, place.y, place.z, health.raw})
            out.write(reinterpret_cast<const char*>(&value), 4); // as it lies in memory: little-endian
    }

    void read(Deserializer& in)
    {
        for (std::int32_t* value : {&place.x, &place.y, &place.z, &health.raw})
            in.read(reinterpret_cast<char*>(value), 4);
    }
};

std::vector<Monster> makeMonsters()
{
    std::vector<Monster> monsters(3);
    for (Monster& monster : monsters) {
        const int x = randomByte() % 32;
        const int y = randomByte() % 32;
        monster.place = Position(x, y, 0);
        monster.health = Fixed(static_cast<std::int32_t>(randomFloat() * 100 * 256)); // up to 100
    }
    return monsters;
}

bool save(const std::string& name, const std::vector<Monster>& monsters)
{
    FileSerializer file(name);
    const int header[] = {magic, static_cast<int>(monsters.size())};
    file.write(reinterpret_cast<const char*>(header), sizeof header);
    for (const Monster& monster : monsters) monster.write(file);
    file.flush(); // a full disk may show only now
    return !file.failed();
}

// False for what is no saved game. Reading past the end is no failure and leaves values as they were: the header says
// how much there must be.
bool load(const std::string& name, std::vector<Monster>& monsters)
{
    FileDeserializer file(name);
    int header[] = {0, -1};
    file.read(reinterpret_cast<char*>(header), sizeof header);
    if (header[0] != magic || header[1] < 0 || header[1] > largestCount) return false;
    if (file.getRemaining() != static_cast<std::uint64_t>(header[1]) * 16) return false;
    monsters.resize(static_cast<std::size_t>(header[1]));
    for (Monster& monster : monsters) monster.read(file);
    return !file.failed();
}

} // namespace

// Files need no engine.
int main(int argc, char** argv)
{
    const std::string name = argc > 1 ? argv[1] : "game.save";
    std::vector<Monster> monsters;
    if (argc > 1 && !load(name, monsters)) { // somebody's own file is never written over
        std::cerr << "There is no saved game in " << name << '\n';
        return EXIT_FAILURE;
    }
    if (argc == 1 && (!save(name, makeMonsters()) || !load(name, monsters))) {
        std::cerr << "Cannot save to " << name << '\n';
        return EXIT_FAILURE;
    }
    for (const Monster& monster : monsters) std::cout << monster.place << monster.health; // each ends its line
}
