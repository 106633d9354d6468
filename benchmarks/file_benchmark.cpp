#include "headless.h"

#include <xum/devices/audio_device.h>
#include <xum/engine/engine.h>
#include <xum/files/cache.h>
#include <xum/files/config_file.h>
#include <xum/files/resource_manager.h>

#include <SDL.h>
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

// Configuration, archives, plain files and the cache, beside the same work done with standard containers and the C
// library's files: no message for what is wrong, no rules but those that the measured data need.

namespace {

Engine* engine = nullptr;

class Random {
public:
    unsigned below(unsigned limit)
    {
        state = state * 6364136223846793005U + 1442695040888963407U;
        return static_cast<unsigned>(state >> 33) % limit;
    }

private:
    std::uint64_t state = 12345;
};

/// The files of this program, in a directory of their own.
class Scratch {
public:
    Scratch() { std::filesystem::create_directories(directory); }
    ~Scratch() { std::filesystem::remove_all(directory); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    std::string getPath(const char* name) const { return (directory / name).string(); }

    std::string write(const char* name, std::string_view bytes) const
    {
        std::string path = getPath(name);
        std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return path;
    }

private:
    std::filesystem::path directory =
        std::filesystem::temp_directory_path() / ("xum-file-benchmark-" + std::to_string(std::random_device()()));
};

std::vector<char> readWhole(const std::string& fileName)
{
    const int file = open(fileName.c_str(), O_RDONLY);
    struct stat status = {};
    if (file < 0 || fstat(file, &status) != 0) std::abort();
    std::vector<char> bytes(static_cast<std::size_t>(status.st_size));
    if (read(file, bytes.data(), bytes.size()) != status.st_size) std::abort();
    close(file);
    return bytes;
}

template <class Plain, class Engine>
void registerPair(const std::string& name, Plain plain, Engine engine, benchmark::TimeUnit unit)
{
    benchmark::RegisterBenchmark((name + "/plain").c_str(), plain)->Unit(unit);
    benchmark::RegisterBenchmark((name + "/engine").c_str(), engine)->Unit(unit);
}

// Configuration: 276,000 entries in 15,180 sections, three levels deep, 9.3 MB.

constexpr unsigned topSections = 1380;
constexpr unsigned groupsEach = 10;
constexpr unsigned entriesEach = 20;
constexpr std::size_t entryCount = std::size_t(topSections) * groupsEach * entriesEach;

std::string makeConfigText()
{
    constexpr std::array<const char*, 6> words = {"stone", "wall", "lamp", "door", "river", "gate"};
    Random random;
    const auto word = [&] { return words[random.below(static_cast<unsigned>(words.size()))]; };
    std::string text = "<config>\r\n";
    for (unsigned i = 0; i < topSections; ++i) {
        const std::string section = "section" + std::to_string(i);
        text.append("   <").append(section).append(">\r\n");
        for (unsigned j = 0; j < groupsEach; ++j) {
            const std::string group = "group" + std::to_string(j);
            text.append("      <").append(group).append(">\r\n");
            for (unsigned k = 0; k < entriesEach; ++k) {
                text.append("         <entry").append(std::to_string(k)).append(" ");
                if (k % 2 == 1) {
                    text.append(std::to_string(random.below(100000)));
                } else {
                    text.append("\"").append(word()).append(" ").append(word()).append(" ");
                    text.append(std::to_string(random.below(1000))).append("\"");
                }
                text.append("/>\r\n");
            }
            text.append("      </").append(group).append(">\r\n");
        }
        text.append("   </").append(section).append(">\r\n");
    }
    return text.append("</config>\r\n");
}

/// A section as standard containers have it.
struct PlainSection {
    std::vector<std::pair<std::string, std::unique_ptr<PlainSection>>> inOrder;
    std::unordered_map<std::string, PlainSection*> sections;
    std::unordered_map<std::string, std::string> entries;
};

std::unique_ptr<PlainSection> readPlainConfig(std::string_view text)
{
    PlainSection top; // holds the root section
    std::vector<PlainSection*> path = {&top};
    for (std::size_t start = text.find('<'); start != std::string_view::npos;) {
        const std::size_t end = text.find('>', start);
        const std::string_view tag = text.substr(start + 1, end - start - 1);
        if (tag.front() == '/') {
            path.pop_back();
        } else if (tag.back() == '/') {
            const std::size_t space = tag.find(' ');
            std::string_view value = tag.substr(space + 1, tag.size() - space - 2);
            if (value.size() >= 2 && value.front() == '"') value = value.substr(1, value.size() - 2);
            path.back()->entries.insert_or_assign(std::string(tag.substr(0, space)), std::string(value));
        } else {
            auto section = std::make_unique<PlainSection>();
            PlainSection* const opened = section.get();
            PlainSection& parent = *path.back();
            parent.sections.emplace(tag, opened);
            parent.inOrder.emplace_back(tag, std::move(section));
            path.push_back(opened);
        }
        start = text.find('<', end);
    }
    return std::move(top.inOrder.front().second);
}

std::unique_ptr<PlainSection> readPlainConfigFile(const std::string& fileName)
{
    const std::vector<char> text = readWhole(fileName);
    return readPlainConfig({text.data(), text.size()});
}

std::unique_ptr<ConfigFile> readConfigFile(const std::string& fileName)
{
    return std::make_unique<ConfigFile>(fileName);
}

template <class Read>
void measureRead(benchmark::State& state, const std::string& fileName, Read readTree)
{
    for (auto _ : state) {
        auto tree = readTree(fileName);
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
}

template <class Read>
void measureDestruction(benchmark::State& state, const std::string& fileName, Read readTree)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto tree = readTree(fileName);
        state.ResumeTiming();
        tree.reset();
    }
}

std::vector<std::string> makePaths()
{
    Random random;
    std::vector<std::string> paths(4096);
    for (std::string& path : paths)
        path = "section" + std::to_string(random.below(topSections)) + "/group" +
               std::to_string(random.below(groupsEach)) + "/entry" + std::to_string(random.below(entriesEach));
    return paths;
}

const std::string& findPlain(const PlainSection& root, const std::string& path)
{
    const std::size_t first = path.find('/');
    const std::size_t second = path.find('/', first + 1);
    const PlainSection* section = root.sections.find(path.substr(0, first))->second;
    const PlainSection* group = section->sections.find(path.substr(first + 1, second - first - 1))->second;
    return group->entries.find(path.substr(second + 1))->second;
}

const std::string& findInConfig(const ConfigFile& config, const std::string& path)
{
    return config.getEntry(path, true)->getValue();
}

/// Both trees must agree on every path first.
template <class Tree>
void measureLookup(benchmark::State& state, const std::string& fileName, const Tree& tree,
                   const std::string& (*find)(const Tree&, const std::string&))
{
    const std::vector<std::string> paths = makePaths();
    const std::unique_ptr<PlainSection> expected = readPlainConfigFile(fileName);
    for (const std::string& path : paths)
        if (find(tree, path) != findPlain(*expected, path)) state.SkipWithError("another value");
    std::size_t next = 0;
    for (auto _ : state) benchmark::DoNotOptimize(find(tree, paths[next++ % paths.size()]).data());
}

/// The text is there already: what remains is handing it over.
bool writePlain(const std::string& text, const std::string& fileName)
{
    std::FILE* const file = std::fopen(fileName.c_str(), "wb");
    if (file == nullptr) return false;
    const bool isWritten = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    return std::fclose(file) == 0 && isWritten;
}

template <class Write>
void measureWrite(benchmark::State& state, const std::string& text, const std::string& fileName, Write write)
{
    for (auto _ : state)
        if (!write(fileName)) state.SkipWithError("not written");
    const std::vector<char> written = readWhole(fileName);
    if (std::string_view(written.data(), written.size()) != text) state.SkipWithError("another text");
}

void registerConfiguration(const Scratch& scratch)
{
    const std::string text = makeConfigText();
    const std::string file = scratch.write("source.cfg", text);
    const std::string target = scratch.getPath("written.cfg");
    registerPair(
        "config_read", [file](benchmark::State& state) { measureRead(state, file, readPlainConfigFile); },
        [file](benchmark::State& state) { measureRead(state, file, readConfigFile); }, benchmark::kMillisecond);
    registerPair(
        "config_destroy", [file](benchmark::State& state) { measureDestruction(state, file, readPlainConfigFile); },
        [file](benchmark::State& state) { measureDestruction(state, file, readConfigFile); }, benchmark::kMillisecond);
    registerPair(
        "config_lookup",
        [file](benchmark::State& state) { measureLookup(state, file, *readPlainConfigFile(file), findPlain); },
        [file](benchmark::State& state) { measureLookup(state, file, ConfigFile(file), findInConfig); },
        benchmark::kNanosecond);
    registerPair(
        "config_write",
        [text, target](benchmark::State& state) {
            measureWrite(state, text, target, [&](const std::string& name) { return writePlain(text, name); });
        },
        [text, file, target](benchmark::State& state) {
            const ConfigFile config(file);
            measureWrite(state, text, target, [&](const std::string& name) { return config.write(name); });
        },
        benchmark::kMillisecond);
}

// Archives: 10,000 files of 1 KiB.

constexpr unsigned fileCount = 10000;
constexpr unsigned fileSize = 1024;
constexpr std::size_t headerSize = 16;

struct ArchiveEntry {
    std::array<char, 128> name;
    std::uint64_t offset;
    std::uint32_t size;
    std::uint32_t unused;
};
static_assert(sizeof(ArchiveEntry) == 144);

std::string nameOf(unsigned index)
{
    return "textures/area" + std::to_string(index / 100) + "/wall" + std::to_string(index) + ".png";
}

/// Every file begins with its number.
std::string makeArchive()
{
    const std::size_t dataStart = headerSize + sizeof(ArchiveEntry) * fileCount;
    std::string archive(dataStart + std::size_t(fileSize) * fileCount, 'x');
    archive.replace(0, headerSize, std::string("!XumRes").append(headerSize - 7, '\0'));
    std::memcpy(&archive[11], &fileCount, 4);
    for (unsigned i = 0; i < fileCount; ++i) {
        ArchiveEntry entry = {};
        nameOf(i).copy(entry.name.data(), entry.name.size() - 1);
        entry.offset = dataStart + std::size_t(i) * fileSize;
        entry.size = fileSize;
        std::memcpy(&archive[headerSize + i * sizeof(entry)], &entry, sizeof(entry));
        std::memcpy(&archive[entry.offset], &i, sizeof(i));
    }
    return archive;
}

/// The directory in one read and a table.
class PlainArchive {
public:
    explicit PlainArchive(const std::string& fileName) : file(open(fileName.c_str(), O_RDONLY))
    {
        std::uint32_t count = 0;
        if (pread(file, &count, sizeof(count), 11) != sizeof(count)) std::abort();
        std::vector<ArchiveEntry> directory(count);
        const std::size_t size = count * sizeof(ArchiveEntry);
        if (pread(file, directory.data(), size, headerSize) != static_cast<ssize_t>(size)) std::abort();
        entries.reserve(count);
        for (const ArchiveEntry& entry : directory) entries.insert_or_assign(entry.name.data(), entry);
    }
    ~PlainArchive() { close(file); }
    PlainArchive(const PlainArchive&) = delete;
    PlainArchive& operator=(const PlainArchive&) = delete;

    /// Asks the disk first, as the engine must.
    bool load(std::vector<unsigned char>& data, const std::string& name) const
    {
        struct stat status = {};
        if (stat(name.c_str(), &status) == 0) return false;
        const auto found = entries.find(name);
        if (found == entries.end()) return false;
        data.resize(found->second.size);
        return pread(file, data.data(), data.size(), static_cast<off_t>(found->second.offset)) ==
               static_cast<ssize_t>(data.size());
    }

private:
    int file;
    std::unordered_map<std::string, ArchiveEntry> entries;
};

bool loadPlainFile(std::vector<unsigned char>& data, const std::string& name)
{
    const int file = open(name.c_str(), O_RDONLY);
    struct stat status = {};
    if (file < 0 || fstat(file, &status) != 0) return false;
    data.resize(static_cast<std::size_t>(status.st_size));
    const bool isRead = read(file, data.data(), data.size()) == status.st_size;
    close(file);
    return isRead;
}

struct DestroyResources {
    void operator()(ResourceManager* resources) const { engine->destroyResourceManager(resources); }
};
using Resources = std::unique_ptr<ResourceManager, DestroyResources>;

Resources openArchive(const std::string& fileName)
{
    Resources resources(engine->createResourceManager());
    resources->addResourceFile(fileName);
    return resources;
}

template <class Load>
void measureLoads(benchmark::State& state, Load load)
{
    Random random;
    std::vector<std::pair<unsigned, std::string>> files;
    for (int i = 0; i < 4096; ++i) {
        const unsigned index = random.below(fileCount);
        files.emplace_back(index, nameOf(index));
    }
    std::size_t next = 0;
    std::vector<unsigned char> data;
    for (auto _ : state) {
        const auto& [index, name] = files[next++ % files.size()];
        if (!load(data, name) || data.size() != fileSize || std::memcmp(data.data(), &index, sizeof(index)) != 0)
            state.SkipWithError("other data");
    }
}

template <class Load>
void measurePlainFile(benchmark::State& state, const std::string& name, Load load)
{
    std::vector<unsigned char> data;
    for (auto _ : state)
        if (!load(data, name) || data.size() != fileSize) state.SkipWithError("other data");
}

void registerFiles(const Scratch& scratch)
{
    const std::string archive = scratch.write("files.xum", makeArchive());
    registerPair(
        "archive_open_10000",
        [archive](benchmark::State& state) {
            for (auto _ : state) PlainArchive{archive};
        },
        [archive](benchmark::State& state) {
            for (auto _ : state) openArchive(archive);
        },
        benchmark::kMicrosecond);
    registerPair(
        "archive_load_1k",
        [archive](benchmark::State& state) {
            const PlainArchive opened(archive);
            measureLoads(state, [&](auto& data, const std::string& name) { return opened.load(data, name); });
        },
        [archive](benchmark::State& state) {
            const Resources resources = openArchive(archive);
            measureLoads(state, [&](auto& data, const std::string& name) { return resources->load(data, name); });
        },
        benchmark::kNanosecond);
    const std::string plain = scratch.write("plain", std::string(fileSize, 'x'));
    registerPair(
        "plain_file_load_1k", [plain](benchmark::State& state) { measurePlainFile(state, plain, loadPlainFile); },
        [plain](benchmark::State& state) {
            const Resources resources(engine->createResourceManager());
            measurePlainFile(state, plain,
                             [&](auto& data, const std::string& name) { return resources->load(data, name); });
        },
        benchmark::kNanosecond);
}

// The cache: an item that is loaded, by its name.

constexpr unsigned sampleCount = 64;

/// Eight frames of silence: 44100 hertz, 16 bits, stereo.
std::string makeSound()
{
    static constexpr char header[] =
        "RIFF\x44\0\0\0WAVEfmt \x10\0\0\0\1\0\2\0\x44\xAC\0\0\x10\xB1\2\0\4\0\x10\0data\x20\0\0";
    return std::string(header, sizeof(header)).append(32, '\0');
}

template <class Get>
void measureHits(benchmark::State& state, const std::vector<std::string>& names, Get get)
{
    std::size_t next = 0;
    for (auto _ : state)
        if (get(names[next++ % names.size()]) == nullptr) state.SkipWithError("not loaded");
}

void measurePlainHits(benchmark::State& state, const std::vector<std::string>& names)
{
    std::unordered_map<std::string, const std::string*> items;
    for (const std::string& name : names) items.emplace(name, &name);
    measureHits(state, names, [&](const std::string& name) { return items.find(name)->second; });
}

void measureCacheHits(benchmark::State& state, const std::vector<std::string>& names)
{
    const Resources resources(engine->createResourceManager());
    AudioDevice* const audio = engine->createAudioDevice();
    Cache* const cache = engine->createCache(resources.get());
    cache->setDataRoot("");
    cache->setSampleDirectory("");
    measureHits(state, names,
                [&](const std::string& name) { return cache->getSample(audio, cache->getId(name), false); });
    engine->destroyCache(cache);
    engine->destroyAudioDevice(audio);
}

void registerCache(const Scratch& scratch)
{
    std::vector<std::string> names;
    for (unsigned i = 0; i < sampleCount; ++i)
        names.push_back(scratch.write(("sound" + std::to_string(i) + ".wav").c_str(), makeSound()));
    registerPair(
        "cache_hit", [names](benchmark::State& state) { measurePlainHits(state, names); },
        [names](benchmark::State& state) { measureCacheHits(state, names); }, benchmark::kNanosecond);
}

} // namespace

int main(int argc, char** argv)
{
    prepareMeasurement();
    engine = initEngine(false);
    if (engine == nullptr) {
        std::fprintf(stderr, "The engine does not start: %s\n", SDL_GetError());
        return EXIT_FAILURE;
    }
    {
        const Scratch scratch;
        registerConfiguration(scratch);
        registerFiles(scratch);
        registerCache(scratch);
        benchmark::Initialize(&argc, argv);
        benchmark::RunSpecifiedBenchmarks();
    }
    shutdownEngine(engine);
}
