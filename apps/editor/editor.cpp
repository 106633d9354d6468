#include "editor.h"

#include "map_files.h"

#include <filesystem>
#include <system_error>

Editor::Editor() : document(makeEmptyDocument()), saved(document), autosaved(document)
{
    say("A new map");
}

void Editor::noteChange()
{
    ++version;
    const std::size_t count = hasBrush()    ? document.brushes.size()
                              : hasEntity() ? document.entities.size()
                                            : 0;
    if (selection.number >= count) selectNothing();
}

void Editor::undo()
{
    say(history.undo(document) ? "Undone" : "There is nothing to undo");
    noteChange();
}

void Editor::redo()
{
    say(history.redo(document) ? "Done again" : "There is nothing to do again");
    noteChange();
}

void Editor::replaceDocument(MapDocument newDocument)
{
    document = std::move(newDocument);
    history.clear();
    selectNothing();
    noteChange();
}

void Editor::newMap()
{
    replaceDocument(makeEmptyDocument());
    saved = document;
    autosaved = document;
    fileName.clear();
    say("A new map");
}

bool Editor::open(const std::string& name)
{
    std::string problem;
    std::optional<MapDocument> loaded = loadMap(name, problem);
    if (!loaded) {
        say(problem);
        return false;
    }
    replaceDocument(std::move(*loaded));
    saved = document;
    autosaved = document;
    fileName = name;
    say("Opened " + name);
    return true;
}

bool Editor::openAutosave(const std::string& name)
{
    std::string problem;
    std::optional<MapDocument> loaded = loadMap(autosaveNameOf(name), problem);
    if (!loaded) {
        say(problem);
        return false;
    }
    replaceDocument(std::move(*loaded));
    saved = makeEmptyDocument();
    autosaved = document;
    fileName = name;
    say("Opened what was not saved of " + name);
    return true;
}

bool Editor::saveAs(const std::string& newName)
{
    if (newName.empty()) {
        say("The map has no name yet");
        return false;
    }
    std::string problem;
    if (!saveMap(document, newName, problem)) {
        say(problem);
        return false;
    }
    fileName = newName;
    saved = document;
    autosaved = document;
    std::error_code ignored;
    std::filesystem::remove(autosaveNameOf(fileName), ignored);
    say("Saved " + fileName);
    return true;
}

void Editor::autosave(const std::string& directory)
{
    if (!hasUnsavedChanges() || isSameState(document, autosaved)) return;
    const std::string name = fileName.empty() ? directory + "unnamed.cfg" : fileName;
    std::string problem;
    if (saveMap(document, autosaveNameOf(name), problem))
        autosaved = document;
    else
        say("No autosave: " + problem);
}

bool Editor::compile(std::string& outFileName)
{
    if (fileName.empty()) {
        say("The map has no name yet: save it first");
        return false;
    }
    outFileName = std::filesystem::path(fileName).replace_extension(".map").generic_string();
    std::string problem;
    if (!compileMapFile(document, outFileName, problem)) {
        say(problem);
        return false;
    }
    say("Compiled " + outFileName);
    return true;
}

void Editor::select(const Hit& hit)
{
    selection = hit.kind == Hit::Kind::Brush || hit.kind == Hit::Kind::Entity ? hit : Hit();
}

Bounds Editor::getSelectionBounds() const
{
    if (hasBrush()) return getBounds(document, *document.brushes[selection.number]);
    if (!hasEntity()) return {};
    const Vector3<double> middle = getPosition(document, *document.entities[selection.number]);
    const Vector3<double> half = {entityHalfSize, entityHalfSize, entityHalfSize};
    return {middle - half, middle + half};
}

void Editor::deleteSelection()
{
    const Hit chosen = selection;
    edit([&](MapDocument& changed) {
        if (chosen.kind == Hit::Kind::Brush) removeBrush(changed, chosen.number);
        if (chosen.kind == Hit::Kind::Entity) removeEntity(changed, chosen.number);
    });
    selectNothing();
}

void Editor::duplicateSelection()
{
    paste(copySelection());
}

void Editor::moveSelection(const Vector3<double>& by, int tag)
{
    const auto change = [&](MapDocument& changed) {
        if (hasBrush()) moveBrush(changed, selection.number, by);
        if (hasEntity()) moveEntity(changed, selection.number, by);
    };
    edit(change, tag);
}

std::string Editor::copySelection() const
{
    MapSource part;
    if (hasBrush()) {
        const PlacedBrush& placed = *document.brushes[selection.number];
        part.meshes.push_back({document.meshOrigins[placed.mesh], {placed.brush}});
    } else if (hasEntity()) {
        part.entities.push_back(*document.entities[selection.number]);
    } else {
        return {};
    }
    return formatMap(part);
}

bool Editor::paste(const std::string& text)
{
    std::string problem;
    const std::optional<MapSource> part = readMap(text, problem);
    if (!part) {
        say("Nothing that was copied from a map: " + problem);
        return false;
    }
    const double step = grid > 0 ? grid : 0.5;
    Hit added;
    edit([&](MapDocument& changed) {
        for (const MeshSource& mesh : part->meshes) {
            for (const BrushSource& brush : mesh.brushes) {
                // Into the first mesh, at its place in the world.
                const Vector3<double> shift = Vector3<double>(mesh.origin.x, mesh.origin.y, mesh.origin.z) -
                                              changed.getOrigin(0) + Vector3<double>(step, step, 0);
                changed.brushes.push_back(std::make_shared<const PlacedBrush>(PlacedBrush{brush, 0}));
                added = {Hit::Kind::Brush, changed.brushes.size() - 1, 0, 0, {}, {}};
                if (!moveBrush(changed, added.number, shift)) changed.brushes.pop_back();
            }
        }
        for (const EntitySource& entity : part->entities) {
            changed.entities.push_back(std::make_shared<const EntitySource>(entity));
            added = {Hit::Kind::Entity, changed.entities.size() - 1, 0, 0, {}, {}};
            moveEntity(changed, added.number, {step, step, 0});
        }
    });
    select(added);
    noteChange();
    return true;
}
