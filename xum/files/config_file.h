#pragma once

#include <xum/engine/export.h>
#include <xum/files/config_section.h>

#include <list>
#include <memory>
#include <string>

class InputFile;
class OutputFile;
class ResourceManager;

/// A configuration file: one root section in a text of tags.
///
///     <config>
///        <window>
///           <width 1024/>
///           <title "My window"/>
///        </window>
///        <renderer OpenGL/>
///     </config>
///
/// A value with a space stands in double quotes; there is no escape character and no comment. docs/file_formats.md
/// has every rule. A file that cannot be read, and one that breaks a rule, is a fatal error: what was loaded is always
/// whole. (`xum config check` tells the line and the column of what is wrong.) An empty file is only logged, and has no
/// root section.
class XUM_API ConfigFile {
public:
    /// Reads a plain file. Names are as for File.
    /// @{
    explicit ConfigFile(const std::string& fileName);
    explicit ConfigFile(const std::wstring& fileName);
    /// @}

    /// Reads through a resource manager, from a plain file or an archive.
    ConfigFile(ResourceManager* resources, const std::string& name);

    /// Makes a file of a tree, to write it; takes ownership. Without a root section for null, and for a section that
    /// belongs to another section or file.
    explicit ConfigFile(ConfigSection* root);

    /// Copies the whole tree.
    /// @{
    ConfigFile(const ConfigFile& other);
    ConfigFile& operator=(const ConfigFile& other);
    /// @}

    virtual ~ConfigFile();

    /// Owned by the file for good. Without one it is a fatal error, here and in the look-ups:
    /// "ConfigFile::getRootSection() -> config file has no root section!".
    ConfigSection* getRootSection() const;

    /// Paths start below the root section: see ConfigSection.
    /// @{
    std::list<ConfigSection*> getSections(const std::string& path) const;
    ConfigEntry* getEntry(const std::string& path, bool required) const;
    /// @}

    /// Writes the tree, in each section first the sections, then the entries. False when that fails. Without a root
    /// section the file becomes empty.
    /// @{
    bool write(const std::string& fileName) const;
    bool write(const std::wstring& fileName) const;
    /// @}

private:
    void initialize(InputFile& file, const std::string& name);
    void initialize(std::string_view text, const std::string& name);
    bool writeToFile(OutputFile& file) const;
    void setRoot(std::unique_ptr<ConfigSection> section);

    std::unique_ptr<ConfigSection> root;
};
