// What the system lends: directories, lists of files, and the clipboard, which gets the list.
//
//     clipboard_and_files [DIRECTORY [FILTER]]
#include <xum/xum.h>

#include <cstdlib>
#include <iostream>

namespace {

bool writeFile(const std::string& name, const std::string& text)
{
    OutputFile file(name);
    return file.write(text.data(), static_cast<unsigned>(text.size())) && file.flush();
}

// Something to list, for who names no directory.
bool makeNotes(SystemDevice* system)
{
    system->createDirectory("notes");     // one level; false when it is there already, which is fine
    system->createDirectory("notes/old"); // so a path is made from its beginning
    return writeFile("notes/tuesday.txt", "rain") && writeFile("notes/monday.txt", "some sun") &&
           writeFile("notes/picture.bmp", "") && writeFile("notes/old/sunday.txt", "wind");
}

} // namespace

int main(int argc, char** argv)
{
    Engine* engine = initEngine(false);         // the clipboard belongs to the window system, which the engine starts
    if (engine == nullptr) return EXIT_FAILURE; // log.txt says why
    SystemDevice* system = engine->createSystemDevice();

    const std::string directory = argc > 1 ? argv[1] : "notes/";
    const std::string filter = argc > 2 ? argv[2] : argc > 1 ? "" : ".txt"; // anywhere in the name
    if (argc == 1 && !makeNotes(system)) {
        std::cerr << "Cannot write the notes\n";
        return EXIT_FAILURE;
    }

    std::string list;
    const auto add = [&list](const std::string& place, const std::string& fileName) {
        InputFile file(place + fileName);
        list += place + fileName + ", " + std::to_string(file.getSize()) + " bytes\n";
    };
    system->listFiles(directory, filter, true, add); // with all directories below, by the bytes of the names

    system->setClipboardText(list); // UTF-8
    std::cout << (system->hasClipboardText() ? system->getClipboardText() : "nothing\n");
    engine->destroySystemDevice(system);
    shutdownEngine(engine);
}
