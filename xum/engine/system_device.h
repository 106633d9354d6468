#pragma once

/// @file
/// Directories and the clipboard.

#include <xum/engine/export.h>

#include <functional>
#include <string>

/// Told of one file: the directory that is being listed, with its trailing '/', and the bare file name.
using FileListingCallback = std::function<void(const std::string& directory, const std::string& fileName)>;

/// Directories and the clipboard. Made by Engine::createSystemDevice, given back to Engine::destroySystemDevice.
/// File names are the platform's narrow strings: UTF-8 on POSIX, the process's code page on Windows.
/// Slot order is ABI.
class XUM_API SystemDevice {
public:
    /// Makes one directory level. False when it exists already or cannot be made, a missing parent included.
    virtual bool createDirectory(const std::string& path) = 0;

    /// Calls back for every regular file in the directory whose name contains the filter anywhere (not only at its end;
    /// an empty filter matches all; case matters), in the byte order of the names. With recursive, sub-directories are
    /// walked where their names fall in that order; a directory itself is never reported. A directory that is reached a
    /// second time through a link above itself is not entered again. What cannot be searched reports nothing.
    /// The directory ends with '/' (one is added where it is missing); empty means the working directory. What the
    /// callback throws passes through. The callback may create and delete files.
    virtual void listFiles(const std::string& directory, const std::string& filter, bool recursive,
                           FileListingCallback callback) = 0;

    /// Whether getClipboardText would give more than an empty text.
    virtual bool hasClipboardText() = 0;

    /// UTF-8; empty when there is none.
    virtual std::string getClipboardText() = 0;

    /// UTF-8, up to the first NUL.
    virtual void setClipboardText(const std::string& text) = 0;

protected:
    ~SystemDevice() = default;
};
