#include <xum/files/config_file.h>

#include <xum/engine/log.h>
#include <xum/files/config_reader.h>
#include <xum/files/config_writer.h>
#include <xum/files/file.h>
#include <xum/files/file_opening.h>
#include <xum/files/read_file.h>
#include <xum/files/resource_manager.h>

#include <new>
#include <utility>
#include <vector>

namespace {

[[noreturn]] void failToOpen(const std::string& name)
{
    error("ConfigFile::ConfigFile() -> could not open config file (" + name + ")!");
}

[[noreturn]] void failToRead(const std::string& name)
{
    error("ConfigFile::ConfigFile() -> could not read config file (" + name + ")!");
}

} // namespace

ConfigFile::ConfigFile(const std::string& fileName)
{
    try {
        InputFile file(fileName);
        initialize(file, fileName);
    } catch (const std::bad_alloc&) {
        failToRead(fileName);
    }
}

ConfigFile::ConfigFile(const std::wstring& fileName)
{
    std::string name;
    try {
        wideToUtf8(fileName, name); // as far as it can be written
        InputFile file(fileName);
        initialize(file, name);
    } catch (const std::bad_alloc&) {
        failToRead(name);
    }
}

ConfigFile::ConfigFile(ResourceManager* resources, const std::string& name)
{
    std::vector<unsigned char> data;
    if (resources == nullptr || !resources->load(data, name)) failToOpen(name);
    try {
        initialize(std::string_view(reinterpret_cast<const char*>(data.data()), data.size()), name);
    } catch (const std::bad_alloc&) {
        failToRead(name);
    }
}

ConfigFile::ConfigFile(ConfigSection* root)
{
    if (root != nullptr && !root->isOwned()) setRoot(std::unique_ptr<ConfigSection>(root));
}

ConfigFile::ConfigFile(const ConfigFile& other)
{
    if (other.root) setRoot(std::make_unique<ConfigSection>(*other.root));
}

ConfigFile& ConfigFile::operator=(const ConfigFile& other)
{
    if (this != &other) setRoot(other.root ? std::make_unique<ConfigSection>(*other.root) : nullptr);
    return *this;
}

ConfigFile::~ConfigFile() = default;

ConfigSection* ConfigFile::getRootSection() const
{
    if (!root) error("ConfigFile::getRootSection() -> config file has no root section!");
    return root.get();
}

std::list<ConfigSection*> ConfigFile::getSections(const std::string& path) const
{
    if (!root) error("ConfigFile::getSections() -> config file has no root section!");
    return root->getSections(path);
}

ConfigEntry* ConfigFile::getEntry(const std::string& path, bool required) const
{
    if (!root) error("ConfigFile::getEntry() -> config file has no root section!");
    return root->getEntry(path, required);
}

bool ConfigFile::write(const std::string& fileName) const
{
    try {
        OutputFile file(fileName);
        return file.isOpen() && writeToFile(file);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool ConfigFile::write(const std::wstring& fileName) const
{
    try {
        OutputFile file(fileName);
        return file.isOpen() && writeToFile(file);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

void ConfigFile::initialize(InputFile& file, const std::string& name)
{
    if (!file.isOpen()) failToOpen(name);
    const std::uint64_t size = file.getSize();
    if (size > std::vector<char>().max_size()) failToRead(name);
    const std::unique_ptr<char[]> text(new char[static_cast<std::size_t>(size)]); // not cleared first
    if (!readBytes(file, text.get(), size)) failToRead(name);
    initialize(std::string_view(text.get(), static_cast<std::size_t>(size)), name);
}

void ConfigFile::initialize(std::string_view text, const std::string& name)
{
    if (text.empty()) {
        getLog() << "WARNING: empty config file (" << name << ")!" << std::endl;
        return;
    }
    try {
        setRoot(ConfigReader(text).read());
    } catch (const ConfigSyntaxError& problem) {
        error(problem.message);
    }
}

bool ConfigFile::writeToFile(OutputFile& file) const
{
    return root ? ConfigWriter(file).write(*root) : file.flush();
}

void ConfigFile::setRoot(std::unique_ptr<ConfigSection> section)
{
    if (section) section->belongsToFile = true;
    root = std::move(section);
}
